#!/usr/bin/perl
# make_icons.pl PICTURE FILE.ico: draws one of the program's icons, 16 to 64 pixels, 32 bits a pixel.
# The pictures are shapes in a square from 0 to 1, painted one over the other, so that every size is drawn
# for itself and none is a blown-up other.
use strict;
use warnings;

my @sizes = (16, 20, 24, 32, 40, 48, 64);
my $samples = 6;    # in each direction of a pixel

sub rounded {    # left, top, right, bottom, radius
    my ($left, $top, $right, $bottom, $radius) = @_;
    return sub {
        my ($x, $y) = @_;
        return 0 if $x < $left || $x > $right || $y < $top || $y > $bottom;
        my $dx = $x < $left + $radius ? $left + $radius - $x : $x > $right - $radius ? $x - $right + $radius : 0;
        my $dy = $y < $top + $radius ? $top + $radius - $y : $y > $bottom - $radius ? $y - $bottom + $radius : 0;
        return $dx * $dx + $dy * $dy <= $radius * $radius;
    };
}

sub polygon {    # x, y of each corner
    my @corners = @_;
    return sub {
        my ($x, $y) = @_;
        my $inside = 0;
        for (my $i = 0; $i < @corners; $i += 2) {
            my ($x1, $y1, $x2, $y2) = @corners[$i, $i + 1, ($i + 2) % @corners, ($i + 3) % @corners];
            next if ($y1 > $y) == ($y2 > $y);
            $inside = !$inside if $x < ($x2 - $x1) * ($y - $y1) / ($y2 - $y1) + $x1;
        }
        return $inside;
    };
}

# [shape, red, green, blue]
my %pictures = (
    # The letter of the name on a screen's blue, and the cursor block behind it.
    tavrel => [
        [rounded(0.02, 0.02, 0.98, 0.98, 0.18), 24, 32, 84],
        [rounded(0.07, 0.07, 0.93, 0.93, 0.13), 48, 84, 196],
        [rounded(0.17, 0.20, 0.67, 0.34, 0.03), 255, 255, 255],
        [rounded(0.35, 0.20, 0.49, 0.80, 0.03), 255, 255, 255],
        [rounded(0.59, 0.56, 0.83, 0.80, 0.03), 255, 206, 84],
    ],
    # A sheet of source text.
    template => [
        [polygon(0.15, 0.03, 0.65, 0.03, 0.87, 0.25, 0.87, 0.97, 0.15, 0.97), 96, 108, 130],
        [polygon(0.19, 0.07, 0.63, 0.07, 0.83, 0.27, 0.83, 0.93, 0.19, 0.93), 255, 255, 255],
        [polygon(0.61, 0.03, 0.87, 0.27, 0.61, 0.27), 96, 108, 130],
        [polygon(0.65, 0.11, 0.79, 0.24, 0.65, 0.24), 206, 218, 240],
        [rounded(0.27, 0.20, 0.52, 0.26, 0.01), 48, 84, 196],
        [rounded(0.27, 0.38, 0.47, 0.44, 0.01), 48, 84, 196],
        [rounded(0.35, 0.50, 0.74, 0.56, 0.01), 140, 150, 168],
        [rounded(0.35, 0.62, 0.66, 0.68, 0.01), 140, 150, 168],
        [rounded(0.27, 0.76, 0.45, 0.82, 0.01), 48, 84, 196],
        [rounded(0.52, 0.74, 0.62, 0.84, 0.01), 255, 190, 50],
    ],
);

sub pixel {    # its four bytes
    my ($shapes, $size, $column, $row) = @_;
    my @sum = (0, 0, 0);
    my $covered = 0;
    for my $i (0 .. $samples * $samples - 1) {
        my $x = ($column + ($i % $samples + 0.5) / $samples) / $size;
        my $y = ($row + (int($i / $samples) + 0.5) / $samples) / $size;
        for my $shape (reverse @$shapes) {
            next unless $shape->[0]->($x, $y);
            $sum[$_] += $shape->[$_ + 1] for 0 .. 2;
            ++$covered;
            last;
        }
    }
    return "\0\0\0\0" unless $covered;
    my ($red, $green, $blue) = map { int($_ / $covered + 0.5) } @sum;
    return pack('C4', $blue, $green, $red, int(255 * $covered / ($samples * $samples) + 0.5));
}

sub image {    # header, pixels from the bottom row up, and an empty mask: the fourth byte of a pixel says it all
    my ($shapes, $size) = @_;
    my $pixels = '';
    for my $row (reverse 0 .. $size - 1) {
        $pixels .= pixel($shapes, $size, $_, $row) for 0 .. $size - 1;
    }
    my $mask = "\0" x (int(($size + 31) / 32) * 4 * $size);
    return pack('V3 v2 V6', 40, $size, 2 * $size, 1, 32, 0, length($pixels) + length($mask), 0, 0, 0, 0) . $pixels . $mask;
}

my ($picture, $path) = @ARGV;
die "usage: make_icons.pl tavrel|template FILE.ico\n" unless defined $path && $pictures{$picture};
my $directory = pack('v3', 0, 1, scalar @sizes);
my $images = '';
for my $size (@sizes) {
    my $image = image($pictures{$picture}, $size);
    $directory .= pack('C4 v2 V2', $size, $size, 0, 0, 1, 32, length $image, 6 + 16 * @sizes + length $images);
    $images .= $image;
}
open(my $file, '>:raw', $path) or die "$path: $!\n";
print {$file} $directory, $images or die "$path: $!\n";
close($file) or die "$path: $!\n";
