# Prints the structs of a C# source in the form of tests/c/golden/layout.txt, as LayoutKind.Sequential lays them out on
# a 64-bit machine: the name from the comment above each, then offset, size and name of each field.
use strict;
use warnings;

my %size_of = (uint => 4, int => 4, float => 4, double => 8, long => 8, IntPtr => 8);
local $/;
my $source = <STDIN>;
while ($source =~ m{// (tesk_\w+)\s*\[StructLayout\(LayoutKind\.Sequential\)\]\s*public (?:unsafe )?struct \w+\s*\{(.*?)\}}gs) {
    my ($name, $fields) = ($1, $2);
    my ($end, $largest, @lines) = (0, 1);
    for my $field (split /;/, $fields) {
        next unless $field =~ /public (?:fixed )?(\w+) (\w+)(?:\[(\d+)\])?/;
        my ($type, $field_name, $count) = ($1, $2, $3 // 1);
        my $size = $size_of{$type} or die "no size of $type in $name\n";
        my $offset = int(($end + $size - 1) / $size) * $size;
        $field_name =~ s/(?<!^)([A-Z])/_\l$1/g;
        push @lines, sprintf "    %3d %3d %s\n", $offset, $size * $count, lcfirst $field_name;
        $end = $offset + $size * $count;
        $largest = $size if $size > $largest;
    }
    printf "%s %d\n", $name, int(($end + $largest - 1) / $largest) * $largest;
    print @lines;
}
