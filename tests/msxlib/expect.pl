#!/usr/bin/perl
# What the test programs must have left behind, worked out by means of its own, compared with what they did.
#   expect.pl NAME RESULT    RESULT: beginning of the names of the files that msx.tcl wrote
# Prints a line for each thing that differs; nothing when all is as it must be.
use strict;
use warnings;
use FindBin;
use lib $FindBin::Bin;
use Canvas;
use Result qw(bytes_of same font marks);

my ($name, $result) = @ARGV;
Result::open_result($result);

sub check_draw {
    my ($mode) = @_;
    my $c = Canvas->new($mode, 1);
    my $width = $c->{width};
    my $shades = 1 << $c->{bits};
    my $font = font();
    $c->set(2 * $_ + 1, int($_ / 3), ($_ + 2) % $shades) for 0 .. 99;
    for my $i (0 .. 6) {
        $c->line(60, 80, 30 + 10 * $i, 50, 2);
        $c->line(60, 80, 30 + 10 * $i, 110, 3);
        $c->line(60, 80, 30, 50 + 10 * $i, 2);
        $c->line(60, 80, 90, 50 + 10 * $i, 3);
    }
    $c->set(5, 200, 2);
    $c->fill(100, 40, 119, 59, 2);
    $c->fill(123, 41, 139, 55, 3);
    $c->fill(141, 40, 160, 58, 0);
    $c->fill(-20, 120, 10, 125, 3);
    $c->fill($width - 9, 120, $width + 9, 125, 3);
    $c->fill(20, -5, 22, 2, 3);
    $c->frame(100, 64, 119, 75, 3);
    $c->frame(125, 64, 135, 75, 2);
    $c->frame(140, 64, 140, 70, 3);
    $c->frame(145, 64, 155, 64, 3);
    $c->fill(105, 45, 130, 70, 3, 3);
    $c->frame(150, 66, 160, 75, 2, 3);
    $c->disc(190, 60, 17, 2, 3);
    $c->circle(190, 60, 20, 3);
    $c->circle(0, 160, 30, 2);
    $c->circle(230, 60, 0, 3);
    $c->circle(235, 60, 1, 3);
    $c->circle(242, 60, 2, 3);
    $c->disc($width - 5, 180, 12, 3);
    $c->copy(0, 0, 61, 20, 101, 130, 0);
    $c->copy(0, 0, 61, 20, 101, 140, 3);
    $c->copy(1, 0, 60, 20, 165, 140, 8);
    $c->copy(100, 40, 40, 20, 4, 130);
    $c->copy(4, 130, 40, 20, 8, 136);
    $c->copy(8, 136, 40, 20, 4, 132);
    $c->text($font, 0, 190, 'The quick brown fox', 3, -1);
    $c->text($font, 161, 201, 'jumps', 0, 2);
    $c->text($font, $width - 20, 100, 'wide', 2, -1);
    $c->copy(100, 40, 16, 16, 200, 20);
    $c->copy(100, 40, 16, 16, 216, 24);
    same("screen $mode", '', $c->differences(Canvas->from_vram($mode, bytes_of('vram'))));
    same('Point', join(' ', map { $c->dot(@$_) } [1, 0], [3, 0], [100, 40], [250, 3]) . "\r\n", bytes_of('text'));
}

sub check_vram {
    my @data = map { ($_ * 7 + int($_ / 256)) & 255 } 0 .. 599;
    my $bank = "\0" x 0xFA00 . "\0" x 0x600;
    substr($bank, 0x4000 + $_, $_) = pack('C*', @data[0 .. $_ - 1]) for 1, 255, 256, 257, 599;
    substr($bank, 0x100, 1) = "\1";
    substr($bank, 0x200, 256) = "\2" x 256;
    substr($bank, 0x400, 257) = "\3" x 257;
    substr($bank, 0x8000, 599) = "\4" x 599;
    substr($bank, 0xF123, 1) = "\x5A";
    my $upper = "\x77" x 0x8000;
    substr($upper, 0x3F00, 600) = pack('C*', @data);
    my $vram = bytes_of('vram');
    # The tables of sprites lie behind FA00h.
    same('the lower 64 kB', '', first_difference($bank, $vram, 0, 0xFA00));
    same('the upper 64 kB', '', first_difference($upper, substr($vram, 0x10000), 0, 0x8000));
    same('a byte of the upper 64 kB', 0xA5, ord(substr($vram, 0x1F123, 1)));
    my $palette = join(' ', (map { pack_color($_, 7 - $_, $_ >> 1) } 0 .. 7), (map { pack_color(7, $_, 0) } 0 .. 7));
    same('the palette', $palette, join(' ', unpack('(H4)*', bytes_of('palette'))));
    my @registers = unpack('C*', bytes_of('vdp'));
    same('the registers', '0 200 17 63', join(' ', $registers[1] & 0x40, @registers[7, 23, 2]));
    same('the console', "0 90 165 0\r\n256 63 0 50\r\n0 17 200\r\n", bytes_of('text'));
}

sub pack_color { my ($red, $green, $blue) = @_; return sprintf('%x%x0%x', $red, $blue, $green); }

sub first_difference {
    my ($expected, $found, $from, $to) = @_;
    for my $i ($from .. $to - 1) {
        my ($a, $b) = (substr($expected, $i, 1), substr($found, $i, 1));
        return sprintf('%04X: %02X, found %02X', $i, ord($a), ord($b)) if $a ne $b;
    }
    return '';
}

sub check_timing {
    my @marks = marks();
    same('marks', join(' ', 1 .. 15), join(' ', map { $_->[0] } @marks));
    # A frame of 50 Hz: 313 lines of 1368 clocks at 21.48 MHz.
    my $frame = 313 * 1368 / 21477270;
    for my $i (1 .. 9, 11 .. 13) {
        my $length = ($marks[$i]->[1] - $marks[$i - 1]->[1]) / $frame;
        my $expected = $i < 10 ? 3 : 1;
        same("frames before mark $i", 'right', abs($length - $expected) < 0.05 ? 'right' : $length) if $i != 11;
    }
}

# How long each routine may take, in microseconds of the MSX: what was measured and a tenth more.
my @speeds = (
    ['an empty round', 1000, 13.7], ['PSet', 1000, 210], ['Line of 256 dots', 100, 2130], ['FillBox 256 x 212, whole bytes', 1, 84000],
    ['FillBox 255 x 212', 1, 337000], ['Circle of radius 50', 10, 68000], ['FillCircle of radius 50', 10, 80200],
    ['DrawText of 32 letters', 10, 84600], ['CopyBlock 256 x 212', 1, 165000], ['CopyDots 256 x 212', 1, 402000],
    ['CopyDots 16 x 16, transparent', 100, 2180], ['WriteVram of 4096 bytes', 1, 37300], ['ReadVram of 4096 bytes', 1, 38900],
    ['FillVram of 4096 bytes', 1, 39800], ['VPoke', 100, 137], ['MoveSprite', 100, 254], ['PutSprite', 100, 920],
    ['SetPalette', 100, 138], ['FillBox 1 x 1', 1000, 667]);

sub check_speed {
    my @marks = marks();
    for my $i (0 .. $#speeds) {
        my ($what, $times, $limit) = @{$speeds[$i]};
        my $each = ($marks[$i + 1]->[1] - $marks[$i]->[1]) * 1e6 / $times;
        printf STDERR "%-34s %9.1f us\n", $what, $each if $ENV{TAVREL_SPEEDS};
        same("$what (microseconds)", "at most $limit", $each <= $limit ? "at most $limit" : sprintf('%.1f', $each));
    }
}

sub check_clocks {
    my ($now, @lines) = split /\r\n/, bytes_of('text');
    my ($second, $minute, $hour, $day, $month, $year) = localtime;
    same('the date at first', sprintf('%d-%d-%d', $year + 1900, $month + 1, $day), $now =~ /^(\S+)/) if $hour > 0;
    # A second may end between two steps of the program.
    my @expected = (['1999-12-31 23:59:58', '1999-12-31 23:59:59'], ['2000-1-1 0:0:2', '2000-1-1 0:0:3'],
        ['2024-2-29 0:0:1', '2024-2-29 0:0:0'], ['2023-2-28 13:7:9', '2023-2-28 13:7:10']);
    for my $i (0 .. 3) {
        my ($line) = grep { $_ eq $lines[$i] } @{$expected[$i]};
        same('the clock', $expected[$i][0], defined $line ? $expected[$i][0] : $lines[$i]);
    }
}

sub check_textmode {
    my ($mode) = @_;
    my $columns = $mode == 1 ? 32 : $mode;
    my $names = $mode == 1 ? 0x1800 : 0;
    my $vram = bytes_of('vram');
    # MSX-DOS leaves a margin in the lines: it is taken from where the first letter is.
    my $margin = index(substr($vram, $names, $columns), 'Line 1');
    same('the first line is seen', 1, $margin >= 0 ? 1 : 0);
    same('the fifth line', 'at 3, 5', substr($vram, $names + 4 * $columns + 2 + $margin, 7));
    my @registers = unpack('C*', bytes_of('vdp'));
    same('the mode', $mode == 1 ? '0 0' : $mode == 40 ? '0 16' : '4 16', join(' ', $registers[0] & 0x0E, $registers[1] & 0x18));
    same('the colours', $mode == 1 ? 7 : 0xF4, $mode == 1 ? $registers[7] & 15 : $registers[7]);
    same('the colours of the letters', 'f4' x 32, unpack('H*', substr($vram, 0x2000, 32))) if $mode == 1;
}

sub check_sprites {
    my ($mode) = @_;
    my ($attributes, $colors, $patterns) = @{{2 => [0x1B00, 0, 0x3800], 5 => [0x7600, 0x7400, 0x7800], 8 => [0xFA00, 0xF800, 0xF000]}->{$mode}};
    my $vram = bytes_of('vram');
    my $four = sub { join(' ', unpack('C4', substr($vram, $attributes + 4 * $_[0], 4))) };
    my $second = $mode == 2 ? 6 : 8;
    same('sprite 0', "49 100 8 $second", $four->(0));
    same('sprite 1', '59 22 8 137', $four->(1));
    same('sprite 2', '99 108 8 7', $four->(2));
    same('sprite 3', '255 200 8 2', $four->(3));
    same('sprite 4', '217 1 4 1', $four->(4));
    same('sprite 5', 217, ord(substr($vram, $attributes + 20, 1)));
    same('sprite 31', '252 20 200 15', $four->(31));
    my @rows = map { 0xFFFF >> $_ } 0 .. 15;
    same('the large pattern', unpack('H*', pack('C*', (map { $_ >> 8 } @rows), map { $_ & 255 } @rows)),
        unpack('H*', substr($vram, $patterns + 64, 32)));
    same('the small pattern', '80c0e0f0f8fcfeff', unpack('H*', substr($vram, $patterns + 1600, 8)));
    my @registers = unpack('C*', bytes_of('vdp'));
    same('the size', 2, $registers[1] & 3);
    my $table = ($registers[11] & 3) << 15 | $registers[5] << 7;
    same('the table of the attributes', $attributes, $mode == 2 ? $table : $table & ~0x3FF | $attributes & 0x3FF);
    same('the table of the patterns', $patterns, ($registers[6] & 0x3F) << 11);
    if ($colors) {
        same('the colours', '06' x 16 . '89' x 16 . '07' x 16 . join('', map { sprintf '%02x', $_ } 0 .. 15),
            unpack('H*', substr($vram, $colors, 64)));
    }
    same('sprites touch', 'TRUE FALSE', bytes_of('text'));
    # Of sprite 0: its uppermost line, and where it is empty.
    my $top = $mode == 2 ? 48 : 28;
    same('a dot of sprite 0', 'seen', seen(64 + 2 * 114, $top + 2 * 50) ? 'seen' : 'not seen');
    same('a dot beside it', 'not seen', seen(64 + 2 * 100, $top + 2 * 65) ? 'seen' : 'not seen');
    same('a dot of sprite 1', 'seen', seen(64 + 2 * 4, $top + 2 * 61) ? 'seen' : 'not seen');
}

# Whether a dot of the picture is not black.
sub seen {
    my ($x, $y) = @_;
    my $colors = `convert '$result.png' -crop 1x1+$x+$y +repage -depth 8 rgb:- | od -An -tu1`;
    return $colors =~ /[1-9]/;
}

# The files that LOADING reads: a page of noise, a small one at the end of the page with a palette, one that is cut.
sub noise {
    my ($count, $seed) = @_;
    return pack('C*', map { $seed = ($seed * 1103515245 + 12345) & 0x7FFFFFFF; $seed >> 16 & 255 } 1 .. $count);
}

sub write_bsave {
    my ($path, $start, $bytes, $length) = @_;
    open(my $handle, '>:raw', $path) or die "$path: $!\n";
    print $handle pack('CvvvA*', 0xFE, $start, $start + $length - 1, 0, ''), $bytes;
    close $handle;
}

sub picture_length { return $_[0] == 5 ? 27136 : 54272; }
my @colors = map { [$_ % 8, 7 - $_ % 8, $_ >> 1] } 0 .. 15;
my $colors = join('', map { pack('CC', $_->[0] << 4 | $_->[2], $_->[1]) } @colors);

sub write_files {
    my ($mode) = @_;
    (my $folder = $result) =~ s{/[^/]*$}{};
    my $length = picture_length($mode);
    write_bsave("$folder/PICTURE.BIN", 0, noise($length, 1), $length);
    write_bsave("$folder/SHORT.BIN", 0, noise(1017, 1), $length);
    write_bsave("$folder/SMALL.BIN", 0x7600, noise(0x80, 2) . $colors, 0xA0);
    write_bsave("$folder/COLORS.PL5", 0x7680, $colors, 32);
    write_bsave("$folder/BIG.BIN", 0x0123, noise(333, 3), 333);
}

sub check_loading {
    my ($mode) = @_;
    my $vram = bytes_of('vram');
    my $length = picture_length($mode);
    my $page = noise($length, 1);
    substr($page, 0x123, 333) = noise(333, 3) if $mode == 8;
    same('the picture', '', first_difference($page, $vram, 0, $length));
    if ($mode == 5) {
        same('the small one on page 1', unpack('H*', noise(0x80, 2) . $colors), unpack('H*', substr($vram, 0xF600, 0xA0)));
        same('the third on page 1', unpack('H*', noise(333, 3)), unpack('H*', substr($vram, 0x8123, 333)));
    }
    same('the palette', unpack('H*', $colors), unpack('H*', bytes_of('palette')));
    same('results', 'FALSE FALSE FALSE TRUE FALSE TRUE TRUE TRUE', bytes_of('text'));
    # What was saved, without what fills the last block.
    (my $folder = $result) =~ s{/[^/]*$}{};
    open(my $handle, '<:raw', "$folder/SAVED.BIN") or die "SAVED.BIN: $!\n";
    my $saved = do { local $/; <$handle> };
    same('the header of what was saved', unpack('H*', pack('Cvvv', 0xFE, 0, $length - 1, 0)), unpack('H14', $saved));
    same('what was saved', '', first_difference($page, substr($saved, 7), 0, $length));
    same('its length', 128 * int(($length + 7 + 127) / 128), length $saved);
}

sub check_sounds {
    my @writes = map { [split / /] } split /\n/, bytes_of('sound');
    my @marks = marks();
    my %first;
    $first{$_->[0]} = $_->[1] for grep { $_->[2] < $marks[0]->[1] && $_->[0] < 14 && !($_->[0] > 6 && $_->[0] < 11 && $_->[1] % 16 == 0 && $_->[1] != 16) && $_->[1] != 0xBF } @writes;
    same('registers', '0:232 1:3 4:255 5:15 6:17 7:148 8:12 10:16 11:79 12:27 13:10',
        join(' ', map { "$_:$first{$_}" } sort { $a <=> $b } keys %first));
    same('what was read back', "232 3 148 3420 254 14\r\n", bytes_of('text'));
    # The notes of channel 0: when they begin, in seconds from the first on, and their frequency. A quarter is 0.4 s.
    my (@notes, %registers);
    for (@writes) {
        my ($register, $value, $time) = @$_;
        next if $time < $marks[0]->[1] || $time > $marks[1]->[1];
        $registers{$register} = $value;
        push @notes, [$time, $value ? 1789772.5 / 16 / ($registers{0} + 256 * $registers{1}) : 0] if $register == 8;
    }
    shift @notes;    # StartMusic itself makes the channel silent
    my @expected = map { $_->[1] = $_->[1] eq '' ? 0 : 440 * 2 ** (($_->[1] - 45) / 12); $_ }
        ([0, 36], [0.2, 38], [0.4, 40], [1.0, ''], [1.2, 49], [1.4, 49], [1.6, 47], [1.7, 48], [2.5, '']);
    same('how many notes', scalar(@expected), scalar(@notes));
    for my $i (0 .. $#notes) {
        my ($time, $pitch) = ($notes[$i]->[0] - $notes[0]->[0], $notes[$i]->[1]);
        same("when note $i begins", 'right', abs($time - $expected[$i]->[0]) < 0.025 ? 'right' : $time);
        same("the pitch of note $i", 'right', abs($pitch - $expected[$i]->[1]) <= 0.004 * $pitch ? 'right' : $pitch);
    }
    # Channel 1 fades by one every two frames.
    my @levels = map { $_->[1] } grep { $_->[0] == 9 && $_->[2] > $marks[0]->[1] && $_->[2] < $marks[1]->[1] } @writes;
    same('it fades', '0 15 14 13 12 11 10 9 8 7 6 5 4 3 2 1 0 0', join(' ', @levels));
    my @left = unpack('C*', bytes_of('psg'));
    same('what is left', '191 0 5 0', join(' ', @left[7 .. 10]));
}

sub check_keys {
    my @lines = split /\r\n/, bytes_of('text');
    my $seen = join("\n", @lines[0 .. 9]);
    same('keys', join("\n",
        '0 FALSE FALSEFALSEFALSEFALSE 0',
        '0 FALSE FALSEFALSEFALSEFALSE 0',
        '1 FALSE FALSEFALSEFALSEFALSE 0',
        '2 FALSE FALSEFALSEFALSEFALSE 0',
        '3 FALSE FALSEFALSEFALSEFALSE 0',
        '4 TRUE FALSEFALSEFALSEFALSE 0',
        '7 FALSE TRUEFALSEFALSEFALSE 0',
        '0 FALSE FALSETRUETRUEFALSE 0',
        '0 FALSE FALSEFALSEFALSETRUE 3',
        '0 FALSE FALSEFALSEFALSETRUE 3'), $seen);
    same('the buffer of the keys', 'TRUE FALSE', join(' ', @lines[10, 11]));
    # A magic key holds up and down of port 1 closed.
    same('joysticks', '3 0 00 FALSEFALSE', $lines[12]);
    same('the mouse at port 1', '-100 27', $lines[13]);
    same('the mouse at port 2', '-100 27', $lines[14]);
}

my %checks = (DRAW => \&check_draw, VRAM => \&check_vram, TIMING => \&check_timing, SPEED => \&check_speed, CLOCKS => \&check_clocks,
    TEXTMODE => \&check_textmode, SPRITES => \&check_sprites, FILES => \&write_files, LOADING => \&check_loading,
    SOUNDS => \&check_sounds, KEYS => \&check_keys);
my ($program, $mode) = $name =~ /^([A-Z]+)(\d*)$/ or die "expect.pl: no program is called $name\n";
($checks{$program} or die "expect.pl: nothing is known about $name\n")->($mode);
same('accesses of the video memory that were too fast', 0, bytes_of('fast')) if $program ne 'FILES';
exit(Result::wrong() != 0);
