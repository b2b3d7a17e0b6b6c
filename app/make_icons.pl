#!/usr/bin/perl
# make_icons.pl PICTURE.svg FILE.ico: draws an icon of 16 to 256 pixels, 32 bits a pixel, from a vector picture. Each size is
# drawn for itself, none is a blown-up other. Of SVG it knows a square viewBox, <rect> with x, y, width, height, rx, and <polygon>, each
# with a fill of the form #rrggbb; anything else is an error. Later shapes cover earlier ones.
use strict;
use warnings;
use Compress::Zlib qw(compress crc32);

my @sizes = (16, 20, 24, 32, 40, 48, 64, 96, 128, 256);
my $png_from = 256;    # stored as PNG from here on, as Windows wants it since Vista

sub rounded {    # left, top, width, height, radius
    my ($left, $top, $width, $height, $radius) = @_;
    my ($right, $bottom) = ($left + $width, $top + $height);
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
    my ($left, $right) = (sort { $a <=> $b } @corners[map { 2 * $_ } 0 .. $#corners / 2])[0, -1];
    my ($top, $bottom) = (sort { $a <=> $b } @corners[map { 2 * $_ + 1 } 0 .. $#corners / 2])[0, -1];
    return sub {
        my ($x, $y) = @_;
        return 0 if $x < $left || $x > $right || $y < $top || $y > $bottom;
        my $inside = 0;
        for (my $i = 0; $i < @corners; $i += 2) {
            my ($x1, $y1, $x2, $y2) = @corners[$i, $i + 1, ($i + 2) % @corners, ($i + 3) % @corners];
            next if ($y1 > $y) == ($y2 > $y);
            $inside = !$inside if $x < ($x2 - $x1) * ($y - $y1) / ($y2 - $y1) + $x1;
        }
        return $inside;
    };
}

sub read_picture {    # path; gives the side of the square, then [shape, red, green, blue] each
    my ($path) = @_;
    open(my $file, '<', $path) or die "$path: $!\n";
    my $text = do { local $/ = undef; <$file> };
    $text =~ s/<!--.*?-->//gs;
    my ($side) = $text =~ s/<svg [^>]*viewBox="0 0 (\d+) \1"[^>]*>(.*)<\/svg>/$2/s ? $1 : die "$path: no square viewBox\n";
    my @shapes;
    while ($text =~ s/<(\w+)\s+([^>]*?)\/>//) {
        my ($element, $attributes) = ($1, $2);
        my %value = $attributes =~ /([\w-]+)="([^"]*)"/g;
        my @colour = map { hex } (delete($value{fill}) // '') =~ /^#(..)(..)(..)$/ or die "$path: a fill is missing\n";
        my $shape;
        if ($element eq 'rect') { $shape = rounded((map { delete $value{$_} } qw(x y width height)), delete $value{rx} // 0) }
        elsif ($element eq 'polygon') { $shape = polygon(split /[\s,]+/, delete $value{points}) }
        else { die "$path: <$element> is not known here\n" }
        die "$path: $element: ", join(', ', sort keys %value), " is not known here\n" if %value;
        push @shapes, [$shape, @colour];
    }
    die "$path: what is this: $text\n" if $text =~ /\S/;
    return ($side, @shapes);
}

my $side;
my @shapes;

sub shape_at {    # place in the picture; gives the uppermost shape there, or 0
    my ($x, $y) = @_;
    for my $shape (@shapes) { return $shape if $shape->[0]->($x, $y) }
    return 0;
}

# The shapes at the corners of a row of pixels; the last row's lower corners are the next one's upper ones.
my %corners;
sub corners {    # size, line from 0 to size
    my ($size, $line) = @_;
    return $corners{"$size $line"} //= [map { shape_at($_ * $side / $size, $line * $side / $size) } 0 .. $size];
}

sub pixel {    # its four bytes: blue, green, red, cover
    my ($size, $column, $row) = @_;
    my $samples = 4;    # in each direction of a pixel
    # In the larger sizes no shape is so thin that it lies between a pixel's corners: when these agree all of it does.
    if ($size >= 48) {
        my ($upper, $lower) = (corners($size, $row), corners($size, $row + 1));
        my $shape = $upper->[$column];
        if ($shape == $upper->[$column + 1] && $shape == $lower->[$column] && $shape == $lower->[$column + 1]) {
            return $shape ? pack('C4', @$shape[3, 2, 1], 255) : "\0\0\0\0";
        }
    }
    my @sum = (0, 0, 0);
    my $covered = 0;
    for my $i (0 .. $samples * $samples - 1) {
        my $shape = shape_at(($column + ($i % $samples + 0.5) / $samples) * $side / $size,
            ($row + (int($i / $samples) + 0.5) / $samples) * $side / $size) or next;
        $sum[$_] += $shape->[$_ + 1] for 0 .. 2;
        ++$covered;
    }
    return "\0\0\0\0" unless $covered;
    my ($red, $green, $blue) = map { int($_ / $covered + 0.5) } @sum;
    return pack('C4', $blue, $green, $red, int(255 * $covered / ($samples * $samples) + 0.5));
}

sub bitmap {    # header, pixels from the bottom row up, and an empty mask: the fourth byte of a pixel says it all
    my ($size, @rows) = @_;
    my $pixels = join '', reverse @rows;
    my $mask = "\0" x (int(($size + 31) / 32) * 4 * $size);
    return pack('V3 v2 V6', 40, $size, 2 * $size, 1, 32, 0, length($pixels) + length($mask), 0, 0, 0, 0) . $pixels . $mask;
}

sub png {
    my ($size, @rows) = @_;
    my $chunk = sub { pack('N', length $_[1]) . $_[0] . $_[1] . pack('N', crc32($_[0] . $_[1])) };
    s/(.)(.)(.)(.)/$3$2$1$4/gs for @rows;
    return "\x89PNG\r\n\x1A\n" . $chunk->('IHDR', pack('N2 C5', $size, $size, 8, 6, 0, 0, 0))
        . $chunk->('IDAT', compress(join('', map { "\0$_" } @rows), 9)) . $chunk->('IEND', '');
}

my ($picture, $path) = @ARGV;
die "usage: make_icons.pl PICTURE.svg FILE.ico\n" unless defined $path;
($side, @shapes) = read_picture($picture);
@shapes = reverse @shapes;
my $directory = pack('v3', 0, 1, scalar @sizes);
my $images = '';
for my $size (@sizes) {
    my @rows;
    for my $row (0 .. $size - 1) { push @rows, join '', map { pixel($size, $_, $row) } 0 .. $size - 1 }
    my $image = $size >= $png_from ? png($size, @rows) : bitmap($size, @rows);
    # A byte holds no 256; 0 stands for it.
    $directory .= pack('C4 v2 V2', $size % 256, $size % 256, 0, 0, 1, 32, length $image, 6 + 16 * @sizes + length $images);
    $images .= $image;
}
open(my $file, '>:raw', $path) or die "$path: $!\n";
print {$file} $directory, $images or die "$path: $!\n";
close($file) or die "$path: $!\n";
