#!/usr/bin/perl
# What WRITES.PAS has said against what the disk holds: every file that it has closed is there with its whole content, unless
# the program was about to write or erase it again. And the disk is sound but for lost clusters.
#   written.pl IMAGE TEXT...    pairs of an image and what was on the console; prints what is wrong
use strict;
use warnings;
use FindBin;
use lib $FindBin::Bin;
use Disk;

my $bad = 0;
while (my ($image, $text) = splice @ARGV, 0, 2) {
    my $disk = Disk->open($image);
    my @faults = $disk->problems;
    open my $file, '<', $text or die "$text: $!\n";
    my (%made, $turn);
    $turn = 0;
    while (<$file>) {
        if (/^made (\d) (\d+)\r$/) { $made{$1} = $turn = $2 }
        if (/^erasing (\d)\r$/) { delete $made{$1} }
    }
    # The one that is being written.
    delete $made{($turn + 1) % 9};
    for my $number (sort keys %made) {
        my $records = $made{$number} * 7 % 23 + 1;
        my $wanted = '';
        for (my $i = 0; $i < $records; $i += 4) {
            my $block = chr(($made{$number} + $i) % 256) x 512;
            substr $block, 1, 1, chr($made{$number} % 256);
            $wanted .= substr $block, 0, ($records - $i > 4 ? 4 : $records - $i) * 128;
        }
        my $found = $disk->files->{"W$number.DAT"};
        push @faults, "W$number.DAT of turn $made{$number} is lost" if !defined $found;
        push @faults, "W$number.DAT of turn $made{$number} is not what was written" if defined $found && $found ne $wanted;
    }
    print "$image: $_\n" for @faults;
    $bad ||= @faults > 0;
}
exit $bad;
