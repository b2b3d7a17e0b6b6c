# Pages of the guide as topics of the Pascal Reference. The guide is Markdown of a few forms: headings, paragraphs, lists,
# tables, code that is set in by four blanks, and pictures, which the help file does without.
package GuidePages;
use strict;
use warnings;
use Exporter 'import';
use ReferenceSources qw(read_file);
our @EXPORT_OK = qw(guide_topic);

sub escaped { return $_[0] =~ s/&/&amp;/gr =~ s/</&lt;/gr =~ s/>/&gt;/gr }

# Code, emphasis and links within a line. $stem_of tells the topic of a guide's file; other files are not in the help.
sub inline {
    my ($text, $stem_of) = @_;
    my @code;
    $text =~ s{`([^`]+)`}{push @code, $1; "\x01$#code\x01"}ge;
    $text = escaped($text);
    $text =~ s{\*\*([^*]+)\*\*}{<b>$1</b>}g;
    $text =~ s{\[([^\]]+)\]\(([^)]+)\)}{exists $stem_of->{$2} ? "[[$stem_of->{$2}|$1]]" : $1}ge;
    $text =~ s{\x01(\d+)\x01}{'<code>' . escaped($code[$1]) . '</code>'}ge;
    return $text;
}

# The HTML of one part: what stands between blank lines.
sub part {
    my ($text, $stem_of) = @_;
    my $in = sub { inline($_[0] =~ s/\s+/ /gr =~ s/^ | $//gr, $stem_of) };
    return '' if $text =~ /^!\[/;
    return '<pre>' . escaped($text =~ s/^ {4,7}//gmr) . "</pre>\n" if $text =~ /^    /;
    return '<h2>' . $in->($1) . "</h2>\n" if $text =~ /^## (.*)/;
    if ($text =~ /^\|/) {
        my @rows = grep { !/^[|\s-]+$/ } split /\n/, $text;
        my @cells = map { [map { $in->($_) } split /\s*\|\s*/, s/^\|\s*|\s*\|$//gr, -1] } @rows;
        my $row = sub { my ($tag, $row) = @_; return '<tr>' . join('', map { "<$tag>$_</$tag>" } @$row) . "</tr>\n" };
        my $head = $row->('th', shift @cells);
        return "<table>\n$head" . join('', map { $row->('td', $_) } @cells) . "</table>\n";
    }
    if ($text =~ /^(-|\d+\.) /) {
        my $tag = $1 eq '-' ? 'ul' : 'ol';
        my $start = $tag eq 'ol' && $1 ne '1.' ? ' start="' . ($1 =~ s/\.//r) . '"' : '';
        my @items = grep { $_ ne '' } split /^(?:-|\d+\.) /m, $text;
        return "<$tag$start>\n" . join('', map { '<li>' . $in->($_) . "</li>\n" } @items) . "</$tag>\n";
    }
    return '<p>' . $in->($text) . "</p>\n";
}

# guide_topic(PATH, STEM, STEM_OF): the topic STEM, as read_topic gives it, from a page of the guide. STEM_OF: the guide's
# files that are in the help, and their topics.
sub guide_topic {
    my ($path, $stem, $stem_of) = @_;
    my $text = read_file($path);
    die "$path: only ASCII, please\n" if $text =~ /[^\n\x20-\x7E]/;
    $text =~ s/^# (.*)\n// or die "$path: no title\n";
    my $title = $1;
    $text =~ s/^( {3}\S.*)\n(?=\d+\. )/$1\n\n/gm;    # a list goes on behind the paragraphs of an item
    my $body = join '', map { part($_, $stem_of) } grep { /\S/ } split /\n(?:[ ]*\n)+/, $text =~ s/^\n+|\s+$//gr;
    return {stem => $stem, title => $title, body => $body, signatures => [], names => [], keywords => [lc $title], see => []};
}

1;
