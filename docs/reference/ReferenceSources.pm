# The parsers of what the Pascal Reference is made from. Every routine dies with a message that names the file when a
# source does not have the form that it should have.
package ReferenceSources;
use strict;
use warnings;
use Exporter 'import';
our @EXPORT_OK = qw(read_file read_topic read_errors read_library);

# The text of a file with LF line ends.
sub read_file {
    my ($path) = @_;
    open(my $file, '<:raw', $path) or die "$path: $!\n";
    local $/ = undef;
    my $text = <$file> // '';
    close $file;
    $text =~ s/\r\n/\n/g;
    return $text;
}

sub listed {    # separator, text
    return grep { $_ ne '' } map { s/^\s+|\s+$//gr } split /$_[0]/, $_[1] // '';
}

# A topic: comments with title, summary, names, signature (as many as wanted), index and see, then the page's HTML.
sub read_topic {
    my ($path) = @_;
    my $text = read_file($path);
    die "$path: only ASCII, please\n" if $text =~ /[^\n\x20-\x7E]/;
    my %topic = (signatures => []);
    while ($text =~ s/^<!-- (\w+): (.*?) -->\n//) {
        my ($key, $value) = ($1, $2);
        die "$path: what is $key?\n" unless $key =~ /^(title|summary|names|signature|index|see)$/;
        if ($key eq 'signature') { push @{$topic{signatures}}, $value }
        else { $topic{$key} = $value }
    }
    die "$path: no title\n" unless defined $topic{title};
    die "$path: no summary\n" if @{$topic{signatures}} && !defined $topic{summary};
    ($topic{stem}) = $path =~ m{([^/]+)\.htm$};
    $topic{body} = $text;
    $topic{names} = [listed(',', $topic{names})];
    $topic{keywords} = [listed(';', $topic{index})];
    $topic{see} = [listed(',', $topic{see})];
    return \%topic;
}

# The compiler's errors with their numbers and texts, from its own sources, and our explanations: "NUMBER text" a
# paragraph. All numbers must be explained and no other.
sub read_errors {
    my ($root, $path) = @_;
    my (%number, %text, %explanation);
    my $header = read_file("$root/kit/compiler/errors.h");
    $number{$1} = $2 while $header =~ /^\s+(\w+) = (\d+),/gm;
    my $source = read_file("$root/kit/compiler/errors.cpp");
    $text{$1} = $2 while $source =~ /case Error::(\w+):\s*return "([^"]*)";/g;
    for my $part (split /\n\s*\n/, read_file($path)) {
        $part =~ /^\s*(\d+)\s+(.*)$/s or die "$path: no number: $part\n";
        my ($number, $words) = ($1, $2);
        die "$path: $number comes twice\n" if exists $explanation{$number};
        $explanation{$number} = $words =~ s/\s+/ /gr =~ s/\s+$//r;
    }
    my @errors;
    for my $name (sort { $number{$a} <=> $number{$b} } grep { $number{$_} } keys %number) {
        my $explanation = delete $explanation{$number{$name}} // die "$path: error $number{$name} is not explained\n";
        die "errors.cpp: no text for $name\n" unless defined $text{$name};
        push @errors, {number => $number{$name}, text => $text{$name}, explanation => $explanation};
    }
    die "$path: there is no error ", join(', ', keys %explanation), "\n" if %explanation;
    return \@errors;
}

# A library file: the comment that it begins with, and each routine whose heading stands on one line at the margin
# directly below a comment. Routines without a comment are the library's own business.
sub read_library {
    my ($path) = @_;
    my $text = read_file($path);
    my ($name) = $path =~ m{([^/]+)$};
    my ($introduction) = $text =~ /^\s*\{([^\$}][^}]*)\}/;
    die "$path: it does not begin with a comment\n" unless defined $introduction;
    # What stands before the first routine: constants, types and variables that programs may use.
    my $declarations = $text =~ s/^\s*\{[^}]*\}\s*//r;
    $declarations =~ s/(?:\{(?!\$)[^}]*\}\s*)*^(?:procedure|function)\b.*//ims;
    $declarations =~ s/\s+$//;
    my @routines;
    while ($text =~ /\{(?!\$)([^}]*)\}[ \t]*\n((?:procedure|function)[ \t]+(\w+)([^\n]*;))/gi) {
        my ($comment, $heading, $routine, $rest) = ($1, $2, $3, $4);
        $rest =~ s/\{[^}]*\}//g;
        $rest =~ s/;\s*(forward|external\s.*)?;?\s*$/;/i;
        $heading =~ s/^(\w+)\s+.*$/lc($1) . " $routine$rest"/se;
        my $signature = "$routine$rest";
        $signature =~ s/;$// if $heading =~ /^function/;
        push @routines, {name => $routine, heading => $heading, signature => $signature, comment => plain($comment)};
    }
    return {name => $name, introduction => plain($introduction), declarations => $declarations, routines => \@routines};
}

# A comment without the margin that its lines share; frames of asterisks or dashes are not text.
sub plain {
    my ($comment) = @_;
    my @lines = map { s/\s+$//r } split /\n/, $comment;
    if (@lines) { $lines[0] =~ s/^\s+// }
    my ($margin) = sort { $a <=> $b } map { /^( *)\S/ ? length $1 : () } @lines[1 .. $#lines];
    for my $line (@lines[1 .. $#lines]) { $line =~ s/^ {$margin}// if defined $margin }
    return join "\n", grep { !/^[-*=]{4,}$/ } @lines;
}

1;
