#!/usr/bin/perl
# Makes an image that has faults as a real disk has them, with tracks as the controller sees them, from a plain one of 720 kB.
#   dmk.pl IMAGE DMK [bad SECTOR]... [missing SECTOR]...
# A bad sector has a wrong check sum in its data; a missing one has no address. Sectors are numbered from 0.
use strict;
use warnings;

my ($image, $dmk, %fault) = (shift, shift);
while (my ($kind, $sector) = splice @ARGV, 0, 2) { $fault{$sector} = $kind }
open my $in, '<:raw', $image or die "$image: $!\n";
my $bytes = do { local $/; <$in> };
my $track_length = 6250;

# CRC-CCITT over the three A1 bytes, the mark and what follows.
sub crc {
    my $crc = 0xFFFF;
    for my $byte (unpack 'C*', $_[0]) {
        $crc ^= $byte << 8;
        $crc = ($crc & 0x8000 ? $crc << 1 ^ 0x1021 : $crc << 1) & 0xFFFF for 1 .. 8;
    }
    return pack 'n', $crc;
}

my $out = pack 'C C v C x11', 0, 80, $track_length + 128, 0;
for my $track (0 .. 79) {
    for my $side (0, 1) {
        my $data = "\x4E" x 80 . "\x00" x 12 . "\xC2\xC2\xC2\xFC" . "\x4E" x 50;
        my @marks;
        for my $number (1 .. 9) {
            my $sector = ($track * 2 + $side) * 9 + $number - 1;
            my $kind = $fault{$sector} // '';
            $data .= "\x00" x 12 . "\xA1\xA1\xA1";
            push @marks, (length($data) + 128) | 0x8000 if $kind ne 'missing';
            my $address = "\xA1\xA1\xA1\xFE" . pack 'C4', $track, $side, $number, 2;
            $data .= substr($address, 3) . crc($address) . "\x4E" x 22 . "\x00" x 12;
            my $content = "\xA1\xA1\xA1\xFB" . substr $bytes, $sector * 512, 512;
            $data .= $content . ($kind eq 'bad' ? crc($content) ^ "\x55\xAA" : crc($content)) . "\x4E" x 40;
        }
        $data .= "\x4E" x ($track_length - length $data);
        $out .= pack('v64', @marks, (0) x (64 - @marks)) . $data;
    }
}
open my $file, '>:raw', $dmk or die "$dmk: $!\n";
print $file $out;
close $file or die "$dmk: $!\n";
