# A random sequence of calls of the disk system, as a script for calls.asm: the same number makes the same sequence.
package Sequence;
use strict;
use warnings;

# Memory of the program: control blocks and what calls.asm and its log leave free for transfers. The disk ROM lies at 4000h to
# 7FFFh while it works, so blocks and transfers lie on both sides, inside and across. A search's block may not lie there.
my @slots = (0x2000, 0x2040, 0x7A00, 0x7A40, 0x9F00, 0x9F40);
my $scratch = 0x2080;
my $text = 0x2100;
my @transfer_areas = ([0x2800, 0x7A00], [0x7C00, 0x9F00], [0x3F00, 0x4200], [0x7C00, 0x8100]);

my @names = ('A', 'B.TXT', 'C.DAT', 'LONGNAME.EXT', 'D1.DAT', 'D2.DAT', 'E.X', 'F');
my @patterns = ('????????.???', '????????.DAT', 'D?.DAT', '?', '?.???', 'NONE.XYZ', 'LONGNA??.E?T', @names);
my @bad_names = (' A', 'A*', 'A.B.', 'A B.C', '<>', 'A/B');
my @devices = ('CON', 'PRN', 'LST', 'NUL', 'AUX');

# Sequence->new(NUMBER, STEPS)
sub new {
    my ($class, $number, $steps) = @_;
    my $self = bless {state => ($number * 2654435761 + 12345) & 0xFFFFFFFF, items => [], keys => '', bound => [], dma => 0x80}, $class;
    $self->random(2) for 1 .. 8;
    $self->{stack} = [$self->{items}];
    $self->{arguments} = join ' ', map { $self->pick('a', 'bx.y', '*.c?', '1', 'A.') } 1 .. $self->random(4);
    $self->begin;
    $self->one_step for 1 .. $steps;
    $self->end;
    return $self;
}

sub random {
    my ($self, $below) = @_;
    $self->{state} ^= $self->{state} << 13 & 0xFFFFFFFF;
    $self->{state} ^= $self->{state} >> 17;
    $self->{state} ^= $self->{state} << 5 & 0xFFFFFFFF;
    return int($self->{state} / 4294967296 * $below);
}
sub pick { my ($self, @list) = @_; $list[$self->random(scalar @list)] }
sub chance { my ($self, $percent) = @_; $self->random(100) < $percent }

# Steps of the script: what they are called, their bytes, the number of bytes that they log.
sub add { my ($self, $text, $bytes, $log) = @_; push @{$self->{stack}[-1]}, {text => $text, bytes => $bytes, log => $log}; return }
my %width = (1 => 1, 2 => 2, 4 => 2, 8 => 2);
sub call {
    my ($self, $function, $de, $hl, $results, $about) = @_;
    my $log = 0;
    $log += $results & $_ ? $width{$_} : 0 for 1, 2, 4, 8;
    $self->add(sprintf('%02Xh DE=%04X HL=%04X %s', $function, $de, $hl, $about // ''), pack('C C v v C', 1, $function, $de, $hl, $results), $log);
}
sub poke { my ($self, $address, $bytes, $about) = @_; $self->add("poke $about", pack('C v C', 2, $address, length $bytes) . $bytes, 0) }
sub memory { my ($self, $address, $length, $about) = @_; $self->add("memory $about", pack('C v v', 3, $address, $length), $length) }
sub hash { my ($self, $address, $length) = @_; $self->add(sprintf('hash of %04X+%X', $address, $length), pack('C v v', 4, $address, $length), 2) }
sub fill { my ($self, $address, $length) = @_; $self->add('fill', pack('C v v C', 5, $address, $length, $self->random(256)), 0) }
sub place {
    my ($self, $block, $size, $way, $number) = @_;
    $self->add(sprintf('position %04X size %d way %02X number %d', $block, $size, $way, $number), pack('C v v C V', 6, $block, $size, $way, $number), 0);
}
sub block { my ($self, $block) = @_; $self->add(sprintf('block %04X', $block), pack('C v', 7, $block), 26) }
sub found { my ($self) = @_; $self->add('found', pack('C v', 8, $self->{dma}), 27) }
sub mark_valid { my ($self, $slot) = @_; $self->add("slot $slot is open if", pack('C C', 9, $slot), 0) }
sub invalidate { my ($self, $slot) = @_; $self->add("slot $slot is closed", pack('C C', 11, $slot), 0) }
sub guarded {
    my ($self, $slot, $code) = @_;
    my $inner = [];
    push @{$self->{stack}}, $inner;
    $code->();
    pop @{$self->{stack}};
    my $body = script_of($inner);
    push @{$self->{stack}[-1]}, {text => "if slot $slot is open", bytes => pack('C C v', 10, $slot, length $body), log => 1, inner => $inner};
}
sub script_of { join '', map { $_->{bytes} . (exists $_->{inner} ? script_of($_->{inner}) : '') } @{$_[0]} }
sub script { script_of($_[0]{items}) . "\0" }

sub field {
    my ($name) = @_;
    return sprintf '%-8.8s%-3.3s', $name =~ /^([^.]*)\.(.*)$/ ? ($1, $2) : ($name, '');
}
sub fits {
    my ($pattern, $name) = map { field($_) } @_;
    for (0 .. 10) {
        my $want = substr $pattern, $_, 1;
        return 0 if $want ne '?' && $want ne substr $name, $_, 1;
    }
    return 1;
}
# The name for a control block, sometimes in small letters.
sub block_name { my ($self, $name) = @_; $self->chance(10) ? lc field($name) : field($name) }
sub noise { my ($self, $count) = @_; join '', map { chr $self->random(256) } 1 .. $count }
sub drive { chr($_[0]->chance(30)) }

sub begin {
    my ($self) = @_;
    $self->memory(0x5C, 12, 'first name');
    $self->memory(0x6C, 12, 'second name');
    $self->memory(0x80, 1, 'length of the arguments');
    $self->set_dma;
}

sub set_dma {
    my ($self) = @_;
    my ($from, $to) = @{$self->pick(@transfer_areas)};
    $self->{room} = 0;
    while ($self->{room} < 200) {
        $self->{dma} = $from + $self->random($to - $from);
        $self->{room} = $to - $self->{dma};
    }
    $self->call(0x1A, $self->{dma}, 0, 0);
}

# Whatever else is open under one of these names is so no longer.
sub forget {
    my ($self, $pattern, $but, $close) = @_;
    for my $slot (0 .. $#slots) {
        next if defined $but && $slot == $but || !defined $self->{bound}[$slot] || !fits($pattern, $self->{bound}[$slot]);
        if ($close) { $self->guarded($slot, sub { $self->call(0x10, $slots[$slot], 0, 1, 'before another opens it') }) }
        $self->invalidate($slot);
        $self->{bound}[$slot] = undef;
    }
}

sub open_or_create {
    my ($self) = @_;
    my $slot = $self->random(scalar @slots);
    my $function = $self->pick(0x0F, 0x0F, 0x16);
    my $bad = $self->chance(4);
    my $name = $bad ? $self->pick(@bad_names) : $self->pick(@names);
    $self->forget($name, $slot, 1);
    $self->guarded($slot, sub { $self->call(0x10, $slots[$slot], 0, 1, 'before the slot is used again') });
    $self->poke($slots[$slot], $self->drive . $self->block_name($name) . $self->noise(25), $name);
    $self->call($function, $slots[$slot], 0, 1, $name);
    $self->mark_valid($slot);
    $self->{bound}[$slot] = $bad ? undef : $name;
    $self->guarded($slot, sub { $self->block($slots[$slot]) });
}

sub with_slot {
    my ($self, $code) = @_;
    my @bound = grep { defined $self->{bound}[$_] } 0 .. $#slots;
    return $self->open_or_create if !@bound;
    my $slot = $self->pick(@bound);
    $self->guarded($slot, sub { $code->($slots[$slot]); $self->block($slots[$slot]) });
}

sub close_one { my ($self) = @_; $self->with_slot(sub { $self->call(0x10, $_[0], 0, 1) }) }

sub sequential {
    my ($self) = @_;
    $self->with_slot(sub {
        my ($block) = @_;
        my $writes = $self->chance(50);
        $self->place($block, 128, 0x80 | ($writes ? $self->pick(1, 1, 2) : $self->pick(0, 2, 2)), $self->random(60));
        for (1 .. 1 + $self->random(3)) {
            $self->fill($self->{dma}, 130);
            $self->call($writes ? 0x15 : 0x14, $block, 0, 1);
            $self->hash($self->{dma}, 130) if !$writes;
        }
    });
}

sub random_record {
    my ($self) = @_;
    $self->with_slot(sub {
        my ($block) = @_;
        my $function = $self->pick(0x21, 0x21, 0x22, 0x28);
        $self->place($block, 128, $function == 0x22 ? $self->pick(1, 2) : $self->pick(0, 1, 2), $self->random(60));
        $self->fill($self->{dma}, 130);
        $self->call($function, $block, 0, 1);
        $self->hash($self->{dma}, 130) if $function == 0x21;
    });
}

sub random_block {
    my ($self) = @_;
    $self->with_slot(sub {
        my ($block) = @_;
        my $writes = $self->chance(50);
        my $size = $self->pick(1, 1, 2, 7, 63, 64, 100, 128, 128, 512, 1000);
        my $most = int(($self->{room} - 2) / $size);
        $most = 4000 / $size if $most > 4000 / $size;
        return if $most < 1;
        my $count = $self->random($most + 1);
        my $way = $writes ? ($count ? $self->pick(1, 2) : 2) : $self->pick(0, 2, 2);
        $self->poke($block + 14, pack('v', $size), "record size $size");
        $self->place($block, $size, $way, $self->random(8000) % (1 + int(8000 / $size)));
        $self->fill($self->{dma}, $count * $size + 2);
        $self->call($writes ? 0x26 : 0x27, $block, $count, $writes ? 1 : 3, "size $size");
        $self->hash($self->{dma}, $count * $size + 2) if !$writes;
    });
}

sub set_random { my ($self) = @_; $self->with_slot(sub { $self->call(0x24, $_[0], 0, 0) }) }

sub file_size {
    my ($self) = @_;
    my $name = $self->pick(@names, 'NONE.XYZ');
    $self->forget($name, undef, 1);
    $self->poke($scratch, $self->drive . $self->block_name($name) . "\0" x 25, $name);
    $self->call(0x23, $scratch, 0, 1, $name);
    $self->memory($scratch + 33, 3, 'size in records');
}

sub search {
    my ($self, $pattern, $count) = @_;
    $pattern //= $self->pick(@patterns);
    $self->poke($scratch, $self->drive . $self->block_name($pattern) . $self->noise(25), $pattern);
    $self->fill($self->{dma}, 33);
    $self->call(0x11, $scratch, 0, 1, $pattern);
    $self->found;
    for (1 .. $count // $self->random(6)) {
        $self->call(0x12, $scratch, 0, 1);
        $self->found;
    }
}

sub delete_files {
    my ($self) = @_;
    my $pattern = $self->pick(@names, @names, 'D?.DAT', 'NONE.XYZ', 'E.?');
    $self->forget($pattern, undef, 0);
    $self->poke($scratch, $self->drive . $self->block_name($pattern) . $self->noise(25), $pattern);
    $self->call(0x13, $scratch, 0, 1, $pattern);
}

sub rename_files {
    my ($self) = @_;
    my $from = $self->pick(@names, @names, 'D?.DAT', '?');
    my $to = $self->pick(@names, @names, 'D?.DAT', '????????.DAT', 'E.?', $self->chance(10) ? $self->pick(@bad_names) : 'F');
    $self->forget($_, undef, 1) for $from, $to, '????????.???';
    $self->poke($scratch, $self->drive . $self->block_name($from) . $self->noise(4) . $self->block_name($to) . $self->noise(9), "$from to $to");
    $self->call(0x17, $scratch, 0, 1, "$from to $to");
}

sub system_calls {
    my ($self) = @_;
    my $function = $self->pick(0x0C, 0x0D, 0x0E, 0x18, 0x19, 0x1B, 0x1C, 0x1D, 0x1E, 0x1F, 0x20, 0x25, 0x29, 0x2E);
    my %results = (0x0C => 2, 0x0D => 0, 0x0E => 0, 0x18 => 0, 0x1B => 13, 0x2E => 0);
    my $de = $function == 0x1B ? $self->pick(0, 1) : $function == 0x0E || $function == 0x2E ? 0 : $self->random(65536);
    $self->call($function, $de, 0, $results{$function} // 1);
    $self->set_dma if $function == 0x0D;
}

sub clock {
    my ($self) = @_;
    if ($self->chance(50)) {
        my $year = $self->pick(1979, 1980, 1984, 1988, 1999, 2000, 2026, 2079, 2080);
        my $month = $self->random(14);
        $self->call(0x2B, $month << 8 | $self->pick($self->random(33), 28 + $self->random(4)), $year, 1, 'date');
        $self->call(0x2A, 0, 0, 7) if $self->{dated};
        $self->call(0x2B, 0x021D, 2024, 1, 'a good date') if !$self->{dated};
        $self->{dated} = 1;
        $self->call(0x2A, 0, 0, 7);
    } else {
        $self->call(0x2D, $self->pick(60, 99, 255) << 8, $self->random(24) << 8 | $self->random(60), 1, 'bad seconds') if $self->chance(20);
        $self->call(0x2D, 0, $self->pick(0x1800, 0x003C, 0xFFFF), 1, 'bad time') if $self->chance(20);
        $self->call(0x2D, $self->random(30) << 8, $self->random(22) << 8 | $self->random(60), 1, 'time');
        $self->call(0x2C, 0, 0, 2);
    }
}

sub console {
    my ($self) = @_;
    my $function = $self->pick(0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B);
    if ($function == 0x09) { $self->poke($text, join('', map { chr 35 + $self->random(88) } 1 .. $self->random(30)) . "\r\n\$", 'text') }
    if ($function == 0x0A) {
        $self->poke($text, pack('C', $self->random(20)) . "\xAA" x 24, 'line');
        $self->{keys} .= join '', map { $self->pick('a' .. 'f', 'X', ' ', "\b", "\x7F", "\t", "\e", "\x18", "\x05") } 1 .. $self->random(25);
        $self->{keys} .= "\r";
    } elsif ($function == 0x01 || $function == 0x07 || $function == 0x08 || $function == 0x0B) {
        $self->{keys} .= $self->pick('a' .. 'z', "\r", "\t", "\e");
    }
    my $character = 33 + $self->random(90);
    my $de = $function == 0x09 || $function == 0x0A ? $text : $function == 0x06 && $self->chance(50) ? 255 : $character;
    my $results = $function == 0x06 ? ($de == 255 ? 1 : 0) : {map { $_ => 1 } 1, 3, 7, 8, 0x0B}->{$function} // 0;
    $self->call($function, $de, 0, $results);
    $self->memory($text, 25, 'line') if $function == 0x0A;
    $self->call(0x07, 0, 0, 1, 'the key') if $function == 0x0B;
}

sub device {
    my ($self) = @_;
    my $name = $self->pick(@devices);
    $self->poke($scratch, "\0" . field($name . ($self->chance(20) ? '.TXT' : '')) . "\0" x 25, $name);
    $self->call($self->pick(0x0F, 0x16), $scratch, 0, 1, $name);
    if ($name ne 'CON' && $self->chance(50)) {
        $self->call(0x14, $scratch, 0, 1, "from $name") if $name eq 'NUL' || $name eq 'AUX';
    } else {
        $self->poke($scratch + 14, pack('v', 1), 'records of one byte');
        $self->poke($self->{dma}, join('', map { chr 33 + $self->random(90) } 1 .. 20), 'text');
        $self->call(0x26, $scratch, 1 + $self->random(20), 1, "to $name");
    }
    $self->call(0x10, $scratch, 0, 1, $name);
}

sub one_step {
    my ($self) = @_;
    my @kinds = (open_or_create => 20, close_one => 6, sequential => 14, random_record => 10, random_block => 18, set_random => 2,
        file_size => 3, search => 8, delete_files => 5, rename_files => 5, system_calls => 6, clock => 2, console => 8, device => 4, set_dma => 4);
    my $total = 0;
    $total += $kinds[$_ * 2 + 1] for 0 .. $#kinds / 2;
    my $chosen = $self->random($total);
    while (my ($kind, $weight) = splice @kinds, 0, 2) {
        if ($chosen < $weight) { return $self->$kind }
        $chosen -= $weight;
    }
}

sub end {
    my ($self) = @_;
    for my $slot (0 .. $#slots) {
        next if !defined $self->{bound}[$slot] || $self->chance(5);
        $self->guarded($slot, sub { $self->call(0x10, $slots[$slot], 0, 1, 'at the end') });
    }
    $self->search('????????.???', 12);
}

# first_difference(LOG, OTHER): a text with the first step that gave something else, or nothing.
sub first_difference {
    my ($self, $one, $other) = @_;
    return '' if $one eq $other;
    my ($place, @past) = (0);
    my $walk;
    $walk = sub {
        for my $item (@{$_[0]}) {
            my ($left, $right) = map { length > $place ? substr $_, $place, $item->{log} : '' } $one, $other;
            push @past, $item->{text} . ($item->{log} ? ' -> ' . unpack 'H*', $left : '');
            return join "\n", @past > 12 ? @past[-12 .. -1] : @past, '   other: ' . unpack 'H*', $right if $left ne $right;
            $place += $item->{log};
            if (exists $item->{inner} && ord $left) {
                my $found = $walk->($item->{inner});
                return $found if $found;
            }
        }
        return '';
    };
    return $walk->($self->{items}) || 'the logs have different lengths';
}

1;
