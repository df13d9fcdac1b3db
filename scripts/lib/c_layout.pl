# Writes a C program that prints the size of each struct of teskorient.h, the offset, size and name of each of
# its fields, and the value of each of its constants.
use strict;
use warnings;

local $/;
my $header = <STDIN>;
$header =~ s{/\*.*?\*/}{}gs;

print "#include <stddef.h>\n#include <stdio.h>\n#include \"teskorient.h\"\n\nint main(void) {\n";
while ($header =~ /typedef struct (\w+) \{(.*?)\} \1;/gs) {
    my ($struct, $fields) = ($1, $2);
    print "    printf(\"$struct %zu\\n\", sizeof($struct));\n";
    for my $field (split /;/, $fields) {
        next unless $field =~ /(\w+)\s*((\[\w+\])*)\s*$/;
        print "    printf(\"    %3zu %3zu $1\\n\", offsetof($struct, $1), sizeof((($struct*)0)->$1));\n";
    }
}
while ($header =~ /enum \{(.*?)\};/gs) {
    for my $constant (split /,/, $1) {
        next unless $constant =~ /(\w+)/;
        print "    printf(\"$1 %d\\n\", (int)$1);\n";
    }
}
while ($header =~ /^#define (TESK_\w+) \d+$/gm) {
    print "    printf(\"$1 %d\\n\", (int)$1);\n";
}
print "    return 0;\n}\n";
