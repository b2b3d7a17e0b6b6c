# coverage.pl GCOV ROOT RESULTS GOAL: adds up the counters of all objects, whose .gcno files come from stdin with a NUL behind
# each. Prints the table, writes RESULTS/files.txt and RESULTS/uncovered.txt, and RESULTS/reached when GOAL percent of all
# lines ran.
use strict;
use warnings;
use JSON::PP;

my ($gcov, $root, $results, $goal) = @ARGV;
my %lines;    # file, relative to the root => line => how often it ran

# What is delivered or made with the product; not its tests, and not what comes from elsewhere.
sub relative {
    my ($file) = @_;
    return $file =~ s{^\Q$root\E/}{} && $file !~ m{^(?:tests|out|bench|docs)/} ? $file : undef;
}

sub add_object {
    my ($object) = @_;
    for my $file (@{ $object->{files} }) {
        my $name = relative($file->{file}) // next;
        $lines{$name}{ $_->{line_number} } += $_->{count} for @{ $file->{lines} };
    }
}

sub read_objects {
    my @notes = split /\0/, do { local $/; <STDIN> };
    my $json = JSON::PP->new;
    while (my @some = splice @notes, 0, 50) {
        open my $output, '-|', $gcov, qw(--json-format --stdout --relative-only --source-prefix), $root, @some
            or die "coverage: $gcov: $!\n";
        while (my $line = <$output>) {
            add_object($json->decode($line)) if $line =~ /^\{/;
        }
        close $output;
    }
}

sub write_file {
    my ($name, @texts) = @_;
    open my $file, '>', "$results/$name" or die "coverage: $results/$name: $!\n";
    print $file @texts;
    close $file or die "coverage: $results/$name: $!\n";
}

# The lines that never ran, as "file:line: text".
sub uncovered {
    my ($name) = @_;
    open my $file, '<', "$root/$name" or die "coverage: $name: $!\n";
    my @text = <$file>;
    return map { "$name:$_: $text[$_ - 1]" }
        sort { $a <=> $b } grep { $lines{$name}{$_} == 0 } keys %{ $lines{$name} };
}

sub row { return sprintf "%-24s %7d lines %7d ran  %6.2f %%\n", @_[0 .. 2], 100 * $_[2] / $_[1] }

read_objects();
die "coverage: no object has counters\n" unless %lines;
my (%all, %ran, @files, @uncovered);
for my $name (sort keys %lines) {
    my $folder = $name =~ m{^(kit/[^/]+|[^/]+)/} ? $1 : '.';
    my $count = keys %{ $lines{$name} };
    my $executed = grep { $_ > 0 } values %{ $lines{$name} };
    for my $sum ($folder, 'total') {
        $all{$sum} += $count;
        $ran{$sum} += $executed;
    }
    push @files, row($name, $count, $executed);
    push @uncovered, uncovered($name);
}
write_file('files.txt', @files);
write_file('uncovered.txt', @uncovered);
print row($_, $all{$_}, $ran{$_}) for (sort grep { $_ ne 'total' } keys %all), 'total';
write_file('reached', '') if 100 * $ran{total} >= $goal * $all{total};
