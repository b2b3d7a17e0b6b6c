#!/usr/bin/perl
# screen.pl: reads what a program sends to the console and prints what stands on an MSX text screen then: 24 rows of 80,
# without blanks at the ends of lines and empty lines at the end. Knows the control codes and ESC sequences of the MSX.
use strict;
use warnings;

my ($columns, $rows) = (80, 24);
my @screen = map { ' ' x $columns } 1 .. $rows;
my ($row, $column) = (0, 0);

sub line_feed {
    if ($row < $rows - 1) { ++$row; return }
    shift @screen;
    push @screen, ' ' x $columns;
}

my %escape = (
    E => \&clear,
    J => sub { substr($screen[$row], $column) = ' ' x ($columns - $column); $screen[$_] = ' ' x $columns for $row + 1 .. $rows - 1 },
    K => sub { substr($screen[$row], $column) = ' ' x ($columns - $column) },
    L => sub { splice @screen, $row, 0, ' ' x $columns; pop @screen; $column = 0 },
    M => sub { splice @screen, $row, 1; push @screen, ' ' x $columns; $column = 0 },
);
sub clear { @screen = map { ' ' x $columns } 1 .. $rows; ($row, $column) = (0, 0) }

binmode STDIN;
local $/ = undef;
my $text = <STDIN> // '';
while ($text =~ /\G(?:\x1BY(.)(.)|\x1B(.)|([\x00-\x1F\x7F])|(.))/gcs) {
    if (defined $1) { ($row, $column) = (ord($1) - 32, ord($2) - 32) }
    elsif (defined $3) { ($escape{$3} // die "ESC $3 is not known here\n")->() }
    elsif (defined $4) {
        if ($4 eq "\r") { $column = 0 }
        elsif ($4 eq "\n") { line_feed() }
        elsif ($4 eq "\f") { clear() }
        elsif ($4 eq "\b") { --$column if $column > 0 }
        else { die sprintf "code %d is not known here\n", ord $4 }
    } else {
        substr($screen[$row], $column, 1) = $5;
        if (++$column == $columns) { $column = 0; line_feed() }
    }
}
my $shown = join "\n", map { s/ +$//r } @screen;
print $shown =~ s/\n+$//r, "\n";
