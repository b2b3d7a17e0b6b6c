# An image of an MSX disk, as the tests see it: what is wrong with it, and the files on it. Written from the format alone and
# without dsktool, so that neither can hide what the other one does wrong.
package Disk;
use strict;
use warnings;

use constant SECTOR => 512;
use constant ENTRY => 32;

# Disk->open(PATH): the whole image, of which nothing is believed yet.
sub open {
    my ($class, $path) = @_;
    CORE::open(my $file, '<:raw', $path) or die "$path: $!\n";
    my $bytes = do { local $/; <$file> };
    my $self = bless {bytes => $bytes, problems => [], files => {}, order => [], lost => 0, unclosed => []}, $class;
    $self->survey;
    return $self;
}

# problems: texts; nothing else may be wrong. unclosed: names of files with more clusters than their length needs, as a file has
# that was written and never closed. lost: the number of clusters that are taken and belong to no file.
sub problems { @{$_[0]{problems}} }
sub unclosed { @{$_[0]{unclosed}} }
sub lost { $_[0]{lost} }
# copies_differ: the copies of the FAT are not the same; the first one is what counts here.
sub copies_differ { $_[0]{copies_differ} }
# files: a hash of name and content; order: the names as the directory has them.
sub files { $_[0]{files} }
sub order { @{$_[0]{order}} }
sub free { $_[0]{free} }

sub complain { my ($self, $text) = @_; push @{$self->{problems}}, $text }
sub bytes_at { my ($self, $place, $count) = @_; substr $self->{bytes}, $place, $count }

sub survey {
    my ($self) = @_;
    if (length $self->{bytes} < 2 * SECTOR) { $self->complain('no disk at all'); return }
    my ($sector, $per_cluster, $reserved, $fats, $roots, $sectors, $media, $per_fat) =
        unpack 'v C v C v v C v', $self->bytes_at(11, 13);
    if ($sector != SECTOR || !$per_cluster || !$reserved || !$fats || !$per_fat || $sectors * SECTOR != length $self->{bytes}) {
        $self->complain('the boot sector describes no disk of this size');
        return;
    }
    my @fats = map { $self->bytes_at(($reserved + $_ * $per_fat) * SECTOR, $per_fat * SECTOR) } 0 .. $fats - 1;
    $self->{copies_differ} = grep { $_ ne $fats[0] } @fats;
    my $root = ($reserved + $fats * $per_fat) * SECTOR;
    @$self{qw(data cluster)} = ($root + $roots * ENTRY, $per_cluster * SECTOR);
    $self->{end} = 2 + int((length($self->{bytes}) - $self->{data}) / $self->{cluster});
    $self->{fat} = $fats[0];
    $self->complain('the FAT does not begin with its media byte') if ord $fats[0] != $media;
    $self->{owner} = {};
    my $over = 0;
    for my $number (0 .. $roots - 1) {
        my $entry = $self->bytes_at($root + $number * ENTRY, ENTRY);
        if ($over) { $self->complain("entry $number stands after the end") if ord $entry; next }
        if (!ord $entry) { $over = 1; next }
        $self->entry($entry) if ord $entry != 0xE5;
    }
    $self->count_clusters;
}

sub next_cluster {
    my ($self, $cluster) = @_;
    my $word = unpack 'v', substr $self->{fat}, int($cluster * 3 / 2), 2;
    return $cluster % 2 ? $word >> 4 : $word & 0xFFF;
}

sub entry {
    my ($self, $entry) = @_;
    my ($stem, $type, $attributes, $first, $size) = unpack 'A8 A3 C x14 v V', $entry;
    my $name = length $type ? "$stem.$type" : $stem;
    return if $attributes & 0x08;
    $self->complain("$name: a name of two files") if exists $self->{files}{$name};
    $self->complain("$name: not a name") if $name !~ /^[^\x00-\x20.:;,=+"\/\\\[\]|<>*?\x7F a-z]+(\.[^\x00-\x20.:;,=+"\/\\\[\]|<>*?\x7F a-z]+)?$/;
    my ($content, $count, $cluster) = ('', 0, $first);
    while ($cluster && $cluster < 0xFF8) {
        if ($cluster < 2 || $cluster >= $self->{end}) { $self->complain("$name: cluster $cluster is none of the disk's"); last }
        if (defined $self->{owner}{$cluster}) { $self->complain("$name: shares a cluster with $self->{owner}{$cluster}"); last }
        $self->{owner}{$cluster} = $name;
        $content .= $self->bytes_at($self->{data} + ($cluster - 2) * $self->{cluster}, $self->{cluster});
        ++$count;
        $cluster = $self->next_cluster($cluster);
        if (!$cluster) { $self->complain("$name: its chain goes on with a free cluster"); last }
    }
    my $needed = int(($size + $self->{cluster} - 1) / $self->{cluster});
    $self->complain("$name: $size bytes in $count clusters") if $count < $needed;
    push @{$self->{unclosed}}, $name if $count > $needed;
    $self->{files}{$name} = substr $content, 0, $size;
    push @{$self->{order}}, $name;
}

sub count_clusters {
    my ($self) = @_;
    $self->{free} = 0;
    for my $cluster (2 .. $self->{end} - 1) {
        my $next = $self->next_cluster($cluster);
        if (!$next) { ++$self->{free} }
        elsif ($next != 0xFF7 && !defined $self->{owner}{$cluster}) { ++$self->{lost} }
    }
}

1;
