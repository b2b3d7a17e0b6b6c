#!/usr/bin/perl
# Checks images of disks: prints a line for each fault. Lost clusters, files that were never closed and a second FAT that
# lags the first are no faults here, since a machine may be switched off at any time; --whole makes them faults.
#   check-disk.pl [--whole] IMAGE...     exit code 0 when all are sound
use strict;
use warnings;
use FindBin;
use lib $FindBin::Bin;
use Disk;

my $whole = @ARGV && $ARGV[0] eq '--whole' ? shift @ARGV : '';
my $bad = 0;
for my $path (@ARGV) {
    my $disk = Disk->open($path);
    my @problems = $disk->problems;
    if ($whole) {
        push @problems, $disk->lost . ' clusters are lost' if $disk->lost;
        push @problems, 'the FATs differ' if $disk->copies_differ;
        push @problems, map { "$_: more clusters than its length needs" } $disk->unclosed;
    }
    print "$path: $_\n" for @problems;
    $bad ||= @problems > 0;
}
exit $bad;
