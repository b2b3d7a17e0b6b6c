# A drawn page as expect.pl expects it: an array of colours, drawn on by definitions instead of the library's algorithms.
package Canvas;
use strict;
use warnings;

# The bits of a dot, of the screens 5 to 8.
my %bits = (5 => 4, 6 => 2, 7 => 4, 8 => 8);
my %width = (5 => 256, 6 => 512, 7 => 512, 8 => 256);

sub new {
    my ($class, $mode, $color) = @_;
    my $self = bless {mode => $mode, width => $width{$mode}, bits => $bits{$mode}}, $class;
    $self->{dots} = [map { [($color) x $width{$mode}] } 0 .. 255];
    return $self;
}

# The page that a VRAM holds: page 0 of the mode.
sub from_vram {
    my ($class, $mode, $vram) = @_;
    my $self = $class->new($mode, 0);
    my $per_byte = 8 / $self->{bits};
    my $per_line = $self->{width} / $per_byte;
    for my $y (0 .. 255) {
        my @bytes = unpack('C*', substr($vram, $y * $per_line, $per_line));
        for my $x (0 .. $self->{width} - 1) {
            my $shift = 8 - $self->{bits} * (1 + $x % $per_byte);
            $self->{dots}[$y][$x] = $bytes[$x / $per_byte] >> $shift & (1 << $self->{bits}) - 1;
        }
    }
    return $self;
}

sub dot { my ($self, $x, $y) = @_; return $self->{dots}[$y][$x]; }

# Operations: 0 set, 1 and, 2 or, 3 xor; 8 leaves out colour 0.
sub set {
    my ($self, $x, $y, $color, $operation) = @_;
    return if $x < 0 || $x >= $self->{width} || $y < 0 || $y > 255;
    $operation ||= 0;
    return if $operation & 8 && $color == 0;
    my $old = $self->{dots}[$y][$x];
    $color &= (1 << $self->{bits}) - 1;
    $self->{dots}[$y][$x] = (sub { $color }, sub { $old & $color }, sub { $old | $color }, sub { $old ^ $color })[$operation & 7]->();
}

sub fill {
    my ($self, $x1, $y1, $x2, $y2, $color, $operation) = @_;
    ($x1, $x2) = ($x2, $x1) if $x1 > $x2;
    ($y1, $y2) = ($y2, $y1) if $y1 > $y2;
    for my $y ($y1 .. $y2) {
        $self->set($_, $y, $color, $operation) for $x1 .. $x2;
    }
}

sub frame {
    my ($self, $x1, $y1, $x2, $y2, $color, $operation) = @_;
    my %drawn;
    for my $x ($x1 < $x2 ? ($x1 .. $x2) : ($x2 .. $x1)) { $drawn{"$x $_"} = 1 for $y1, $y2; }
    for my $y ($y1 < $y2 ? ($y1 .. $y2) : ($y2 .. $y1)) { $drawn{"$_ $y"} = 1 for $x1, $x2; }
    $self->set(split(/ /), $color, $operation) for keys %drawn;
}

# The dots of a line: in each column (or row, when it is steep) the one that lies nearest. Where two are as near, the
# video processor takes the one that is nearer to the beginning.
sub line {
    my ($self, $x1, $y1, $x2, $y2, $color) = @_;
    my ($dx, $dy) = (abs($x2 - $x1), abs($y2 - $y1));
    my ($sx, $sy) = ($x2 < $x1 ? -1 : 1, $y2 < $y1 ? -1 : 1);
    my $steep = $dy > $dx;
    my ($long, $short) = $steep ? ($dy, $dx) : ($dx, $dy);
    for my $i (0 .. $long) {
        my $exact = $long ? $i * $short / $long : 0;
        my $across = int($exact + 0.5);
        --$across if $across - $exact == 0.5;
        $self->set($steep ? ($x1 + $sx * $across, $y1 + $sy * $i) : ($x1 + $sx * $i, $y1 + $sy * $across), $color);
    }
}

# The dots of a circle's eighth: in each column the one nearest to the circle, then the other seven by symmetry.
sub circle_dots {
    my ($radius) = @_;
    my %dots;
    for (my $b = 0; $b <= $radius; ++$b) {
        my $a = int(sqrt($radius * $radius - $b * $b) + 0.5);
        last if $a < $b;
        for my $p ([$a, $b], [$b, $a]) {
            for my $sx (-1, 1) { $dots{$sx * $p->[0] . ' ' . $_ * $p->[1]} = 1 for -1, 1; }
        }
    }
    return map { [split / /] } keys %dots;
}

sub circle {
    my ($self, $x, $y, $radius, $color) = @_;
    $self->set($x + $_->[0], $y + $_->[1], $color) for circle_dots($radius);
}

# Everything between the leftmost and the rightmost dot of each of the circle's lines.
sub disc {
    my ($self, $x, $y, $radius, $color, $operation) = @_;
    my %reach;
    for (circle_dots($radius)) {
        $reach{$_->[1]} = $_->[0] if !defined $reach{$_->[1]} || $_->[0] > $reach{$_->[1]};
    }
    for my $line (keys %reach) {
        $self->set($x + $_, $y + $line, $color, $operation) for -$reach{$line} .. $reach{$line};
    }
}

sub copy {
    my ($self, $x, $y, $width, $height, $to_x, $to_y, $operation) = @_;
    my @from = map { my $row = $_; [map { $self->dot($_, $row) } $x .. $x + $width - 1] } $y .. $y + $height - 1;
    for my $row (0 .. $height - 1) {
        $self->set($to_x + $_, $to_y + $row, $from[$row][$_], $operation) for 0 .. $width - 1;
    }
}

# font: 2048 bytes, eight for each letter. paper: -1 leaves the background.
sub text {
    my ($self, $font, $x, $y, $text, $color, $paper) = @_;
    for my $letter (split //, $text) {
        last if $x + 7 >= $self->{width};
        for my $row (0 .. 7) {
            my $bits = ord(substr($font, ord($letter) * 8 + $row, 1));
            for my $column (0 .. 7) {
                if ($bits >> (7 - $column) & 1) { $self->set($x + $column, $y + $row, $color); }
                elsif ($paper >= 0) { $self->set($x + $column, $y + $row, $paper); }
            }
        }
        $x += 8;
    }
}

# The first places where two pages differ in their first 212 lines, and how many there are.
sub differences {
    my ($self, $other) = @_;
    my ($count, @places) = (0);
    for my $y (0 .. 211) {
        for my $x (0 .. $self->{width} - 1) {
            my ($mine, $its) = ($self->dot($x, $y), $other->dot($x, $y));
            next if $mine == $its;
            ++$count;
            push @places, "($x,$y): $mine, found $its" if @places < 5;
        }
    }
    return $count ? "$count dots differ: " . join('; ', @places) : '';
}

1;
