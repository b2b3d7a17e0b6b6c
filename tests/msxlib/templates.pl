#!/usr/bin/perl
# What a template must have left behind at a moment of its run.
#   templates.pl MOMENT RESULT    RESULT: beginning of the names of the files that msx.tcl wrote
# Prints a line for each thing that differs; nothing when all is as it must be.
use strict;
use warnings;
use FindBin;
use lib $FindBin::Bin;
use Canvas;
use Result qw(bytes_of same font);

my ($moment, $result) = @ARGV;
Result::open_result($result);

# The letters that stand at a place of the screen in a colour, each found by its dots.
sub read_text {
    my ($page, $x, $y, $count, $color) = @_;
    my $font = font();
    my $text = '';
    for my $place (0 .. $count - 1) {
        my $dots = '';
        for my $row (0 .. 7) {
            $dots .= pack('B8', join('', map { $page->dot($x + 8 * $place + $_, $y + $row) == $color ? 1 : 0 } 0 .. 7));
        }
        my ($letter) = grep { substr($font, 8 * $_, 8) eq $dots } 32 .. 126;
        $text .= defined $letter ? chr($letter) : '?';
    }
    return $text;
}

sub page { return Canvas->from_vram(5, bytes_of('vram')); }
sub register { return ord(substr(bytes_of('vdp'), $_[0], 1)); }
sub sprite { return unpack('C4', substr(bytes_of('vram'), 0x7600 + 4 * $_[0], 4)); }
sub volumes { return join(' ', unpack('C3', substr(bytes_of('psg'), 8, 3))); }
# The colours that stand in the picture, with how many dots there are of each.
sub shades {
    my ($page) = @_;
    my %count;
    for my $y (0 .. 211) { ++$count{$page->dot($_, $y)} for 0 .. 255; }
    return %count;
}

sub text_screen {
    same('the program is back in the text screen', '0 16', join(' ', register(0) & 14, register(1) & 0x18));
    same('the palette is the usual one', '00000000110633071701270351012706710173036106640611', unpack('H50', bytes_of('palette')));
    same('it is silent', 'yes', volumes() =~ /^(0|16) (0|16) (0|16)$/ ? 'yes' : volumes());
}

my %moments = (
    TEXTMODE => sub {
        same('its text', 1, bytes_of('vram') =~ /Hello, MSX!/ ? 1 : 0);
    },
    GRAPHICS => sub {
        my $page = page();
        my %count = shades($page);
        same('the headline', 'Screen 5, 16 colours', read_text($page, 8, 8, 20, 15));
        same('the last line', ' Press a key ', read_text($page, 8, 200, 13, 15));
        same('the sky above', 1, $page->dot(255, 0));
        for my $color (1 .. 11) { same("colour $color is seen", 'yes', ($count{$color} || 0) > 50 ? 'yes' : 'no'); }
        same('the sun is not far from yellow', '7', unpack('C', substr(bytes_of('palette'), 14, 1)) >> 4);
    },
    TITLE => sub {
        my $page = page();
        same('the title', 'METEORS', read_text($page, 100, 92, 7, 15));
        same('the best score', '00000', read_text($page, 208, 2, 5, 15));
    },
    START => sub {
        my $page = page();
        my ($y, $x, $pattern) = sprite(0);
        same('the ship is far to the right', '240 0', "$x $pattern");
        same('ships', 3, read_text($page, 152, 2, 1, 15));
        same('meteors come', 4, scalar(grep { ((sprite($_))[0] + 32 & 255) < 240 && (sprite($_))[2] == 4 } 4 .. 11));
        same('its picture is there', '0180018003c0', unpack('H*', pack('n*', map { ord(substr(bytes_of('vram'), 0x7800 + $_, 1)) << 8
            | ord(substr(bytes_of('vram'), 0x7810 + $_, 1)) } 0 .. 2)));
    },
    FIRE => sub {
        my $page = page();
        my $score = read_text($page, 48, 2, 5, 15);
        same('shots bring points', 'yes', $score =~ /^\d{4}0$/ && $score > 0 ? 'yes' : $score);
    },
    OVER => sub {
        my $page = page();
        same('the end', 'GAME OVER', read_text($page, 92, 92, 9, 15));
        same('no ship is left', '0 217', join(' ', read_text($page, 152, 2, 1, 15), (sprite(0))[0]));
    },
    MUSIC => sub {
        my @writes = map { [split / /] } split /\n/, bytes_of('sound');
        my %registers;
        my @pitches = ([], [], []);
        for (@writes) {
            my ($register, $value) = @$_;
            $registers{$register} = $value;
            next unless $register % 2 && $register < 6;
            push @{$pitches[$register >> 1]}, 12 * log(1789772.5 / 16 / ($registers{$register - 1} + 256 * $value) / 440) / log(2) + 45;
        }
        my @letters = qw(C C+ D D+ E F F+ G G+ A A+ B);
        my $names = sub { join(' ', map { $letters[int($_ + 0.5) % 12] } @{$pitches[$_[0]]}[0 .. 12]) };
        same('the melody', 'E D C E G A G E D C F E D', $names->(0));
        same('the bass', 'C G E G C G E G A E C E A', $names->(1));
        # A key that is held down begins it anew.
        same('the laser', 'heard', @{$pitches[2]} >= 30 && @{$pitches[2]} < 40 ? 'heard' : scalar(@{$pitches[2]}));
    },
    PATTERN => sub {
        my $vram = bytes_of('vram');
        my $pattern = Canvas->new(5, 0);
        for my $ring (1 .. 14) {
            $pattern->disc(@$_[0, 1], 8 * $ring, $_->[2], 3) for [70, 70, 1], [190, 60, 2], [128, 170, 4], [128, 100, 8];
        }
        same('the picture', '', $pattern->differences(Canvas->from_vram(5, $vram)));
        same('it is on both pages', 1, substr($vram, 0, 0x6A00) eq substr($vram, 0x8000, 0x6A00) ? 1 : 0);
        (my $folder = $result) =~ s{/[^/]*$}{};
        open(my $file, '<:raw', "$folder/PICTURE.SC5") or die "PICTURE.SC5: $!\n";
        my $saved = do { local $/; <$file> };
        same('it has been saved', 1, substr($saved, 7, 0x6A00) eq substr($vram, 0, 0x6A00) ? 1 : 0);
    },
    TEXT => \&text_screen,
);
($moments{$moment} or die "templates.pl: nothing is known about $moment\n")->();
same('accesses of the video memory that were too fast', 0, bytes_of('fast'));
exit(Result::wrong() != 0);
