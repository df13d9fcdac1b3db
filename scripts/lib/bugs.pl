# Reads the mistakes of tests/bugs, whose README.md explains the form, and puts them into the code.
# Run it at the top of a tree. Perl, as the texts span lines; it is part of every Debian.
#
#     perl bugs.pl list [NAME|FILE]...   one a line: name, test program, filter; all without arguments
#     perl bugs.pl fits                  checks that every entry applies
#     perl bugs.pl put NAME TREE         writes the files that the entry changes into another tree of
#                                        the same code, and prints their paths
use strict;
use warnings;

my $problems = 0;

sub complain {
    chomp(my $message = shift);
    print STDERR "$message\n";
    $problems++;
}

# An entry: {name, path of its file, about, program, filter, changes}; a change: {in, find, put}.
sub read_entries {
    my ($path) = @_;
    my (@entries, $entry, $in, $change);
    open my $lines, '<', $path or die "$path: $!\n";
    while (my $line = <$lines>) {
        chomp $line;
        if ($line =~ /^\[([\w-]+)\]$/) {
            $entry = {name => $1, path => $path, changes => []};
            push @entries, $entry;
            ($in, $change) = ();
        } elsif ($line =~ /^(#|\s*$)/) {
            undef $change;
        } elsif (!$entry) {
            complain("$path:$.: text before the first entry: $line");
        } elsif ($line =~ /^Noticed by: (\S+) (\S+)$/) {
            @$entry{'program', 'filter'} = ($1, $2);
        } elsif ($line =~ /^In: (\S+)$/) {
            ($in, $change) = ($1);
        } elsif ($line =~ /^-(.*)/) {
            if (!$change || $change->{put}) {
                $change = {in => $in, find => '', put => ''};
                push @{$entry->{changes}}, $change;
            }
            $change->{find} .= "$1\n";
        } elsif ($line =~ /^\+ ?(.*)/ && $change) {
            $change->{put} .= "$1\n";
        } elsif (!$entry->{about} && $line =~ /^\w.*\.$/) {
            $entry->{about} = $line;
        } else {
            complain("$path:$.: [$entry->{name}]: not understood: $line");
        }
    }
    return @entries;
}

sub read_all {
    my %seen;
    my @entries = map { read_entries($_) } sort glob 'tests/bugs/*.bugs';
    for my $entry (@entries) {
        my $where = "$entry->{path}: [$entry->{name}]";
        complain("$where: the name is taken") if $seen{$entry->{name}}++;
        complain("$where: lacks its description") if !$entry->{about};
        complain("$where: lacks 'Noticed by: PROGRAM FILTER'") if !$entry->{filter};
        complain("$where: changes nothing") if !@{$entry->{changes}};
        complain("$where: lacks 'In: FILE'") if grep { !$_->{in} } @{$entry->{changes}};
    }
    complain('found no entries in tests/bugs') if !@entries;
    exit 1 if $problems;
    return @entries;
}

my @sources;

# The one file of a name, wherever it lies.
sub find_file {
    my ($name) = @_;
    @sources = split /\n/, `find src platform include files apps -type f 2>/dev/null` if !@sources;
    my @found = grep { "/$_" =~ m{/\Q$name\E$} } @sources;
    return @found == 1 ? $found[0] : undef;
}

sub read_file {
    my ($path) = @_;
    open my $file, '<', $path or die "$path: $!\n";
    local $/;
    return scalar <$file>;
}

# Matches a text whatever its white space, so that another layout of the code does not matter, but not
# a part of a longer word.
sub pattern_of {
    my ($text) = @_;
    my $pattern = join '\s*', map { quotemeta } $text =~ /\S/g;
    $pattern = '(?<!\w)' . $pattern if $text =~ /^\s*\w/;
    $pattern .= '(?!\w)' if $text =~ /\w\s*$/;
    return $pattern;
}

sub without_space { return shift =~ s/\s+//gr }

# The texts of the files that the entry changes, by path. Dies where it does not fit.
sub changed_texts {
    my ($entry) = @_;
    my $where = "$entry->{path}: [$entry->{name}]";
    my (%texts, %originals);
    for my $change (@{$entry->{changes}}) {
        my $path = find_file($change->{in})
            // die "$where: there is not exactly one file $change->{in}\n";
        $texts{$path} //= $originals{$path} = read_file($path);
        my $pattern = pattern_of($change->{find});
        my $count = () = $texts{$path} =~ /$pattern/g;
        die "$where: $path has this $count times, not once:\n$change->{find}" if $count != 1;
        chomp(my $put = $change->{put});
        $texts{$path} =~ s/$pattern/$put/;
    }
    for my $path (keys %texts) {
        die "$where: leaves $path as it is\n"
            if without_space($texts{$path}) eq without_space($originals{$path});
    }
    return %texts;
}

sub list {
    my (@wanted) = @_;
    my @entries = read_all();
    for my $wanted (@wanted) {
        next if grep { $wanted eq $_->{name} || $wanted eq $_->{path} } @entries;
        complain("tests/bugs has no entry or file $wanted");
    }
    for my $entry (@entries) {
        next if @wanted && !grep { $_ eq $entry->{name} || $_ eq $entry->{path} } @wanted;
        print "$entry->{name} $entry->{program} $entry->{filter}\n";
    }
}

sub fits {
    my @entries = read_all();
    for my $entry (@entries) {
        eval { changed_texts($entry) } or complain($@);
    }
    print scalar @entries, " mistakes fit the code.\n" if !$problems;
}

sub put {
    my ($name, $tree) = @_;
    my ($entry) = grep { $_->{name} eq $name } read_all() or die "no entry is named $name\n";
    my %texts = changed_texts($entry);
    for my $path (sort keys %texts) {
        open my $file, '>', "$tree/$path" or die "$tree/$path: $!\n";
        print $file $texts{$path};
        close $file or die "$tree/$path: $!\n";
        print "$path\n";
    }
}

my %commands = (list => \&list, fits => \&fits, put => \&put);
my $command = $commands{shift // ''} or die "usage: bugs.pl list|fits|put ...\n";
$command->(@ARGV);
exit($problems ? 1 : 0);
