#!/usr/bin/perl
# examples.pl SITE FOLDER [TOPIC]: takes the examples out of the pages of SITE. Those of a page come to FOLDER/page, as NAME.PAS;
# what the page says that they print as NAME.expected, with NAME.screen beside it when that is what stands on the screen, what is to
# be typed as NAME.input. Prints "page NAME" for each, those first that print nothing, since others may start them.
use strict;
use warnings;

my ($site, $folder, $only) = @ARGV;

sub unescaped {
    my ($text) = @_;
    $text =~ s/&lt;/</g;
    $text =~ s/&gt;/>/g;
    $text =~ s/&quot;/"/g;
    $text =~ s/&amp;/&/g;
    return $text;
}

sub write_file {
    my ($path, $text) = @_;
    open(my $file, '>:raw', $path) or die "$path: $!\n";
    print {$file} $text;
    close $file or die "$path: $!\n";
}

mkdir $folder or die "$folder: $!\n";
my $count = 0;
for my $path (sort glob("$site/*.htm"), glob("$site/lib/*.htm")) {
    my ($topic) = $path =~ m{([^/]+)\.htm$};
    next if defined $only && $only ne '' && $only ne $topic;
    open(my $file, '<:raw', $path) or die "$path: $!\n";
    my $page = do { local $/ = undef; <$file> };
    next unless $page =~ /<pre class="example">/;
    my $place = "$folder/$topic";
    mkdir $place or die "$place: $!\n";
    my (@silent, @others, $name);
    while ($page =~ m{<pre class="(example|input|output|screen|source)"(?: id="([\w.]+)")?>(.*?)</pre>}gs) {
        my ($kind, $id, $text) = ($1, $2, unescaped($3) . "\n");
        if ($kind eq 'source') {
            write_file("$place/" . uc $id, $text) if defined $id;
        } elsif ($kind eq 'example') {
            my ($word) = $text =~ /^program (\w+);/m or die "$path: an example without a name\n";
            $name = uc substr $word, 0, 8;
            die "$path: two examples are called $name\n" if -e "$place/$name.PAS";
            write_file("$place/$name.PAS", $text);
            write_file("$place/$name.input", '');
            push @silent, $name;
            ++$count;
        } elsif ($kind eq 'input') {
            write_file("$place/$name.input", $text);
        } else {
            die "$path: nothing is expected\n" unless $text =~ /\S/;
            write_file("$place/$name.expected", $text);
            write_file("$place/$name.screen", '') if $kind eq 'screen';
            @silent = grep { $_ ne $name } @silent;
            push @others, $name;
        }
    }
    print "$topic $_\n" for @silent, @others;
}
die "there is no example\n" unless $count;
