#!/usr/bin/perl
# make_reference.pl ROOT FOLDER [LIBRARY.LIB...]: writes the Pascal Reference into FOLDER, which must exist:
#   *.htm, lib/*.htm, style.css    the topics, a web site as they are
#   tp3reference.hhp, .hhc, .hhk   project, contents and index for the help compiler; text ones inside the help file, too:
#                                  its binary index would hold a word that was never set
#   autocomplete.txt               a signature a line, for the editor's status line
# The sources are docs/reference/topics/*.htm, pages of docs/guide and contents.txt below ROOT (README.md beside them describes their form), the
# texts of the compiler's errors and the comments of the library files. Whatever does not fit ends the program with a
# message: a link to nowhere, a topic that is not in the contents, an error number without an explanation.
use strict;
use warnings;
use FindBin qw($Bin);
use lib $Bin;
use ReferenceSources qw(read_file read_topic read_errors read_library);
use GuidePages qw(guide_topic);

my $title = 'Tavrel Pascal Reference';
my ($root, $folder, @libraries) = @ARGV;
die "usage: make_reference.pl ROOT FOLDER [LIBRARY.LIB...]\n" unless defined $folder && -d $folder;
my $sources = "$root/docs/reference";

my %topics;         # stem => topic
my %place_of;       # what may stand in [[...]], in small letters => address
my @order;          # stems in the order of the contents
my @contents;       # [depth, text, address or undef]
my @index;          # [keyword, address, title of the page when the keyword is not its name]
my @signatures;

sub escaped {
    my ($text) = @_;
    $text =~ s/&/&amp;/g;
    $text =~ s/</&lt;/g;
    $text =~ s/>/&gt;/g;
    $text =~ s/"/&quot;/g;
    return $text;
}

sub write_file {
    my ($name, $text) = @_;
    open(my $file, '>:raw', "$folder/$name") or die "$folder/$name: $!\n";
    print {$file} $text or die "$folder/$name: $!\n";
    close($file) or die "$folder/$name: $!\n";
}

# Programs and what they print stand in the sources as they are. They are kept apart, escaped, while the rest of a page is
# worked on.
my @kept;
sub keep_programs {
    my ($body) = @_;
    $body =~ s{(<pre class="(?:example|output|screen|input|syntax|source)"(?: id="[\w.]+")?>)\n?(.*?)\n?</pre>}{
        push @kept, $1 . escaped($2) . '</pre>';
        "\0$#kept\0"
    }gse;
    return $body;
}

# ---- what there is

sub add_place {
    my ($name, $address) = @_;
    my $key = lc $name;
    die "two topics for $name: $place_of{$key} and $address\n" if exists $place_of{$key} && $place_of{$key} ne $address;
    $place_of{$key} = $address;
}

# Pages of the guide that the help has too. The first one is not among them: the topic "quick" is its short form.
my %guide = ('emulators.md' => 'emulator', 'real-machine.md' => 'realmsx', 'old-sources.md' => 'oldsrc', 'what-to-know.md' => 'know');

sub read_topics {
    for my $path (sort glob "$sources/topics/*.htm") {
        my $topic = read_topic($path);
        die "$path: the name does not fit DOS\n" unless $topic->{stem} =~ /^[a-z0-9_]{1,8}$/;
        die "$path: the name is a device's\n" if $topic->{stem} =~ /^(con|aux|prn|nul|clock|lpt\d|com\d)$/;
        $topics{$topic->{stem}} = $topic;
    }
    my %stem_of = (%guide, 'first-program.md' => 'quick', 'differences.md' => 'differ');
    for my $file (sort keys %guide) {
        $topics{$guide{$file}} = guide_topic("$root/docs/guide/$file", $guide{$file}, \%stem_of);
    }
    for my $stem (sort keys %topics) {
        my $topic = $topics{$stem};
        my $address = "$stem.htm";
        $topic->{body} = keep_programs($topic->{body});
        add_place($stem, $address);
        add_place($_, $address) for @{$topic->{names}};
        push @index, [$_, $address] for @{$topic->{names}};
        push @index, [$_, $address, $topic->{title}] for @{$topic->{keywords}};
        push @index, [$topic->{title}, $address] unless grep { lc $_ eq lc $topic->{title} } @{$topic->{names}};
        push @signatures, grep { /^\w+ ?[(\[;:]/ } @{$topic->{signatures}};
    }
}

# A library file becomes a topic like any other, with one section for each routine.
sub add_library {
    my ($path) = @_;
    my $library = read_library($path);
    my $stem = lc $library->{name} =~ s/\.LIB$//ir;
    my $address = "lib/$stem.htm";
    die "$path: the name does not fit DOS\n" unless $stem =~ /^[a-z0-9_]{1,8}$/;
    my $body = prose($library->{introduction});
    my $example = "$sources/library/$stem.htm";
    my $shown = -f $example ? "<h2>Example</h2>\n" . keep_programs(read_file($example)) : '';
    $body .= "<p>Include it behind the program heading:</p>\n<pre class=\"syntax\">{\$I " . uc($stem) . ".LIB}</pre>\n$shown";
    if ($library->{declarations} ne '') {
        $body .= "<h2>Constants, types and variables</h2>\n<pre>" . escaped($library->{declarations}) . "</pre>\n";
    }
    $body .= "<h2>Routines</h2>\n<ul class=\"names\">\n";
    $body .= "<li><a href=\"$stem.htm#" . lc($_->{name}) . "\">$_->{name}</a></li>\n" for @{$library->{routines}};
    $body .= "</ul>\n";
    for my $routine (@{$library->{routines}}) {
        $body .= "<h2><a name=\"" . lc($routine->{name}) . "\"></a>$routine->{name}</h2>\n";
        $body .= '<pre class="syntax">' . escaped($routine->{heading}) . "</pre>\n" . prose($routine->{comment});
        push @index, [$routine->{name}, "$address#" . lc $routine->{name}];
        push @signatures, $routine->{signature};
    }
    push @index, [uc($stem) . '.LIB', $address];
    $topics{"lib/$stem"} = {stem => "lib/$stem", title => uc($stem) . '.LIB', body => $body,
        signatures => [], see => [], names => [], keywords => []};
    return "lib/$stem";
}

# A comment as HTML: blank lines part paragraphs, lines that are set in by two blanks or more stay as they are.
sub prose {
    my ($text) = @_;
    my $html = '';
    for my $part (split /\n\s*\n/, $text) {
        $part =~ s/^\n+|\s+$//g;
        next if $part eq '';
        if ($part =~ /^  /m) { $html .= '<pre>' . escaped($part) . "</pre>\n" }
        else { $html .= '<p>' . escaped($part =~ s/\s*\n\s*/ /gr) . "</p>\n" }
    }
    return $html;
}

# ---- contents

# contents.txt: a line is a heading, or topics below it when it is set in; "@library" stands for the library's files.
sub read_contents {
    my $heading;
    for my $line (split /\n/, read_file("$sources/contents.txt")) {
        next if $line =~ /^\s*(#|$)/;
        if ($line =~ /^(\S.*)$/) {
            $heading = $1;
            push @contents, [0, $heading, undef];
            next;
        }
        for my $word (split ' ', $line) {
            my @stems = $word eq '@library' ? map { add_library($_) } @libraries : ($word);
            for my $stem (@stems) {
                my $topic = $topics{$stem} or die "contents.txt: no topic $stem\n";
                die "contents.txt: $stem comes twice\n" if $topic->{heading};
                $topic->{heading} = $heading;
                push @order, $stem;
                push @contents, [1, $topic->{title}, "$stem.htm"];
            }
        }
    }
    for my $stem (sort keys %topics) {
        die "$stem.htm is not in contents.txt\n" unless $topics{$stem}{heading} || $stem eq 'index';
    }
}

# ---- the pages

my $errors = read_errors($root, "$sources/errors.txt");

sub error_table {
    my $html = "<table>\n<tr><th>Number</th><th>Text and usual causes</th></tr>\n";
    for my $error (@$errors) {
        $html .= "<tr><td><a name=\"e$error->{number}\"></a>$error->{number}</td><td><b>" . escaped($error->{text})
            . "</b><br>$error->{explanation}</td></tr>\n";
    }
    return $html . "</table>\n";
}

sub routine_table {    # every standard name that has a topic of its own, by the alphabet
    my $html = "<table>\n";
    for my $topic (sort { lc $a->{title} cmp lc $b->{title} } grep { @{$_->{signatures}} } values %topics) {
        $html .= "<tr><td><a href=\"$topic->{stem}.htm\">$topic->{title}</a></td><td>$topic->{summary}</td></tr>\n";
    }
    return $html . "</table>\n";
}

sub contents_list {
    my $html = '';
    for my $entry (@contents) {
        my ($depth, $text, $address) = @$entry;
        $html .= $html eq '' ? '' : "</ul>\n" if $depth == 0;
        $html .= $depth == 0 ? "<h2>$text</h2>\n<ul class=\"contents\">\n" : "<li><a href=\"$address\">$text</a></li>\n";
    }
    return "$html</ul>\n";
}

# The index in its order: [keyword, address]. A keyword of several pages says which one is meant.
sub index_entries {
    my (%seen, %pages);
    my @entries = grep { !$seen{lc($_->[0]) . "\0$_->[1]"}++ } @index;
    ++$pages{lc $_->[0]} for @entries;
    @entries = map { [defined $_->[2] && $pages{lc $_->[0]} > 1 ? "$_->[0] ($_->[2])" : $_->[0], $_->[1]] } @entries;
    return sort { lc $a->[0] cmp lc $b->[0] || $a->[1] cmp $b->[1] } @entries;
}

sub keyword_list {    # the index as a page, for the web site
    my ($html, $letter) = ('', '');
    for my $entry (index_entries()) {
        my ($keyword, $address) = @$entry;
        my $first = $keyword =~ /^([A-Za-z])/ ? uc $1 : '$';
        if ($first ne $letter) {
            $html .= ($letter eq '' ? '' : "</ul>\n") . "<h2>$first</h2>\n<ul class=\"contents\">\n";
            $letter = $first;
        }
        $html .= "<li><a href=\"$address\">" . escaped($keyword) . "</a></li>\n";
    }
    return "$html</ul>\n";
}

my %generated = (errors => \&error_table, routines => \&routine_table, contents => \&contents_list,
    keywords => \&keyword_list);

sub page {
    my ($stem) = @_;
    my $topic = $topics{$stem};
    my $up = $stem =~ m{/} ? '../' : '';
    my $link = sub {
        my ($name, $text) = @_;
        my ($key, $anchor) = split /#/, lc $name, 2;
        my $address = $place_of{$key} or die "$stem.htm: nothing is called [[$name]]\n";
        $address .= "#$anchor" if defined $anchor;
        return "<a href=\"$up$address\">" . ($text // $name) . '</a>';
    };
    my $body = $topic->{body};
    $body =~ s/\[\[([^\]|]+)(?:\|([^\]]+))?\]\]/$link->($1, $2)/ge;
    $body =~ s/^\@(errors|routines|contents|keywords)$/$generated{$1}->()/gme;
    $body =~ s/\0(\d+)\0/$kept[$1]/g;
    $body =~ s{(?=<pre class="output">)}{<p class="label">prints</p>\n}g;
    $body =~ s{(?=<pre class="screen">)}{<p class="label">shows</p>\n}g;
    $body =~ s{(?=<pre class="input">)}{<p class="label">when this is typed</p>\n}g;
    my $syntax = join "\n", map { escaped($_) } @{$topic->{signatures}};
    $syntax = "<pre class=\"syntax\">$syntax</pre>\n" if $syntax ne '';
    my $see = join ' &middot; ', map { $link->($_, see_text($_)) } @{$topic->{see}};
    $see = "<p class=\"see\">See also $see</p>\n" if $see ne '';
    my $where = $topic->{heading} ? " &rsaquo; $topic->{heading}" : '';
    return <<"END";
<!DOCTYPE html>
<html lang="en">
<head>
<meta http-equiv="Content-Type" content="text/html; charset=us-ascii">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>$topic->{title}</title>
<link rel="stylesheet" type="text/css" href="${up}style.css">
</head>
<body>
<div class="where"><a href="${up}index.htm">$title</a>$where</div>
<h1>$topic->{title}</h1>
$syntax$body$see@{[neighbours($stem, $up)]}</body>
</html>
END
}

# How a topic is called where another one points to it: a standard name by itself, else its title.
sub see_text {
    my ($name) = @_;
    my $stem = ($place_of{lc $name} // '') =~ s/\.htm$//r;
    my $topic = $topics{$stem} or return $name;
    return (grep { lc $_ eq lc $name } @{$topic->{names}}) ? $name : $topic->{title};
}

sub neighbours {
    my ($stem, $up) = @_;
    my ($place) = grep { $order[$_] eq $stem } 0 .. $#order;
    return '' unless defined $place;
    my $before = $place > 0 ? $order[$place - 1] : 'index';
    my $html = "<div class=\"foot\"><a href=\"$up$before.htm\">&lsaquo; $topics{$before}{title}</a>";
    my $behind = $order[$place + 1];
    $html .= " &nbsp; <a href=\"$up$behind.htm\">$topics{$behind}{title} &rsaquo;</a>" if defined $behind;
    return "$html</div>\n";
}

# ---- what the help compiler wants

sub site_map_entry {
    my ($text, $address) = @_;
    my $html = '<LI><OBJECT type="text/sitemap"><param name="Name" value="' . escaped($text) . '">';
    $html .= "<param name=\"Local\" value=\"$address\">" if defined $address;
    return "$html</OBJECT>\n";
}

sub contents_file {
    my $html = site_map_entry($title, 'index.htm');
    my $open = 0;
    for my $entry (@contents) {
        my ($depth, $text, $address) = @$entry;
        if ($depth == 0) {
            $html .= "</UL>\n" if $open;
            $html .= site_map_entry($text) . "<UL>\n";
            $open = 1;
        } else {
            $html .= site_map_entry($text, $address);
        }
    }
    return "<HTML><BODY>\n<UL>\n$html</UL>\n</UL>\n</BODY></HTML>\n";
}

sub index_file {
    my $html = join '', map { site_map_entry(@$_) } index_entries();
    return "<HTML><BODY>\n<UL>\n$html</UL>\n</BODY></HTML>\n";
}

sub project_file {
    my $files = join "\n", 'index.htm', map { "$_.htm" } @order;
    return <<"END";
[OPTIONS]
Compatibility=1.1 or later
Compiled file=tp3reference.chm
Contents file=tp3reference.hhc
Index file=tp3reference.hhk
Default topic=index.htm
Default Window=main
Title=$title
Full-text search=Yes
Binary TOC=No
Binary Index=No
Language=0x409

[WINDOWS]
main="$title","tp3reference.hhc","tp3reference.hhk","index.htm","index.htm",,,,,0x63520,260,0x304e,[80,60,1080,760],,,,,,,0

[FILES]
$files
style.css
END
}

# By name, so that a routine comes before those whose name begins with its own: the editor shows the first that fits.
sub autocomplete_list {
    my $name = sub { $_[0] =~ /^(\w+)/; return uc $1 };
    my %seen;
    my @lines = sort { $name->($a) cmp $name->($b) } grep { !$seen{$_}++ } @signatures;
    return join '', map { "$_\r\n" } @lines;
}

read_topics();
read_contents();
$topics{index} or die "no topic index.htm\n";
push @index, ["Error $_->{number}: $_->{text}", "$place_of{errors}#e$_->{number}"] for @$errors;
mkdir "$folder/lib";
write_file("$_.htm", page($_)) for 'index', @order;
write_file('style.css', read_file("$sources/style.css"));
write_file('tp3reference.hhc', contents_file());
write_file('tp3reference.hhk', index_file());
write_file('tp3reference.hhp', project_file());
write_file('autocomplete.txt', autocomplete_list());
