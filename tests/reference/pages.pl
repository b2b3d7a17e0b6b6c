#!/usr/bin/perl
# pages.pl ROOT FOLDER: checks what make_reference.pl wrote into FOLDER against the sources below ROOT, by its own reading of both.
# Prints a line for each check, "ok name" or "FAIL name: what is wrong".
use strict;
use warnings;
use File::Find;

my ($root, $folder) = @ARGV;

sub text_of {
    my ($path) = @_;
    open(my $file, '<:raw', $path) or die "$path: $!\n";
    local $/ = undef;
    return scalar <$file>;
}

sub report {    # name, what is wrong
    my ($name, @wrong) = @_;
    print @wrong ? "FAIL $name: @wrong\n" : "ok $name\n";
}

my %pages;      # relative name => text
find({no_chdir => 1, wanted => sub { $pages{substr $_, length($folder) + 1} = text_of($_) if /\.htm$/ }}, $folder);
my $contents = text_of("$folder/tp3reference.hhc");
my $index = text_of("$folder/tp3reference.hhk");
my $list = text_of("$folder/autocomplete.txt");
my %contents_place = map { $_ => 1 } $contents =~ /name="Local" value="([^"]+)"/g;
my %index_of;   # keyword in small letters => [addresses]
push @{$index_of{lc $1}}, $2 while $index =~ /name="Name" value="([^"]+)"><param name="Local" value="([^"]+)"/g;

sub leads_nowhere {    # page that the address stands in, address
    my ($page, $address) = @_;
    return 0 if $address =~ /^https?:/;
    my ($name, $anchor) = split /#/, $address, 2;
    $name = $page if $name eq '';
    if ($page =~ m{/} && $name ne $page) { $name = $name =~ s{^\.\./}{} ? $name : "lib/$name" }
    return 1 unless -f "$folder/$name";
    return defined $anchor && $pages{$name} !~ /(?:name|id)="\Q$anchor\E"/;
}

my @nowhere;
for my $page (sort keys %pages) {
    push @nowhere, "$page: $_" for grep { leads_nowhere($page, $_) } $pages{$page} =~ /(?:href|src)="([^"]+)"/g;
}
report('every link leads somewhere', @nowhere);
report('every entry of the contents leads somewhere', grep { leads_nowhere('index.htm', $_) } sort keys %contents_place);
report('every entry of the index leads somewhere', grep { leads_nowhere('index.htm', $_) } map { @$_ } values %index_of);
report('no keyword of the index stands there twice', grep { @{$index_of{$_}} > 1 } sort keys %index_of);
report('every page is in the contents', grep { !$contents_place{$_} } sort keys %pages);
report('the names of the pages fit DOS', grep { !m{^(?:lib/)?[a-z0-9_]{1,8}\.htm$} } sort keys %pages);
report('the pages are ASCII', grep { $pages{$_} =~ /[^\n\x20-\x7E]/ } sort keys %pages);
report('no shorthand is left in the pages', grep { $pages{$_} =~ /\[\[|^\@\w/m } sort keys %pages);
report('every page has a heading and some text', grep { $pages{$_} !~ m{<h1>[^<]+</h1>.{80}}s } sort keys %pages);

# The tags of a page close in the order in which they were opened.
sub unbalanced {
    my ($text) = @_;
    my @open;
    while ($text =~ m{<(/?)([a-z]\w*)[^>]*>}g) {
        my ($closes, $tag) = ($1, $2);
        next if $tag =~ /^(?:br|meta|link|img|hr)$/;
        if (!$closes) { push @open, $tag }
        elsif (!@open || pop @open ne $tag) { return 1 }
    }
    return @open > 0;
}
report('the tags of the pages close', grep { unbalanced($pages{$_}) } sort keys %pages);

# ---- the names of the compiler

my $names = text_of("$root/kit/compiler/standard_names.cpp");
my @routines = $names =~ /\{"(\w+)", Shape::/g;
my @variables = $names =~ /\{"(\w+)", TypeKind::/g;
my @others = qw(TRUE FALSE MAXINT PI INTEGER BYTE REAL CHAR BOOLEAN TEXT);
report('the compiler has names', @routines > 80 && @variables > 20 ? () : scalar @routines);
report('every standard name is in the index', grep { !$index_of{lc $_} } @routines, @variables, @others);
report('and has a page that begins with it or lists it',
    grep { my $name = $_; !grep { $pages{s/#.*//r} =~ m{<h1>[^<]*\b$name\b|<td>[^<]*\b$name\b|<code>$name\b}i } @{$index_of{lc $name}} }
    @routines, @variables, @others);
report('every page of a routine has an example',
    grep { my ($page) = map { s/#.*//r } @{$index_of{lc $_}}; $pages{$page} !~ /<pre class="example">/ } @routines);

my @lines = split /\r\n/, $list, -1;
report('the signatures end in CR LF', pop(@lines) eq '' && "@lines" !~ /[\r\n]/ ? () : 'they do not');
report('a signature is a line of ASCII', grep { !/^[A-Za-z_]\w*(?:[(\[:;{ ]|$)[\x20-\x7E]*$/ } @lines);
my %signed = map { /^(\w+)/ ? (uc $1 => 1) : () } @lines;
report('every standard routine has a signature', grep { !$signed{$_} } @routines);
# The editor shows the first line that begins with the name that was typed.
report('the editor finds each signature by its name', grep {
    my ($name) = /^(\w+)/;
    my ($first) = grep { uc(substr $_, 0, length $name) eq uc $name } @lines;
    $first !~ /^\Q$name\E\b/i;
} @lines);
for my $line (@lines) { $line =~ s/^(\w+).*$/$1/ }

# ---- the library

my (@library, %shown);
find({no_chdir => 1, wanted => sub { push @library, $_ if /\.LIB$/ }}, "$root/share/program/library");
for my $path (sort @library) {
    my ($name) = $path =~ m{([^/]+)\.LIB$};
    my $text = text_of($path) =~ s/\r//gr;
    my $page = $pages{'lib/' . lc($name) . '.htm'} // '';
    my @headings = $text =~ /^\{(?!\$)[^}]*\}\n(?:procedure|function) +(\w+)/gim;
    push @headings, $text =~ /[^;]\}\n(?:procedure|function) +(\w+)/gi;
    my %heading = map { $_ => 1 } @headings;
    report("$name.LIB has routines", %heading ? () : 'none');
    report("the page of $name.LIB has an example", $page =~ /<pre class="example">/ ? () : 'none');
    report("the page of $name.LIB shows each routine", grep { $page !~ m{(?:procedure|function) \Q$_\E\b} } sort keys %heading);
    report("the index knows those of $name.LIB", grep { !$index_of{lc $_} } sort keys %heading);
    report("the editor knows those of $name.LIB", grep { !$signed{uc $_} } sort keys %heading);
}

# ---- the menus

# Captions and keys of the window's own table of commands.
my @commands = text_of("$root/app/command_table.cpp") =~ /^\s+(\{"(?:mnu|key)\w+",.*\}),$/gm;
my $menus = $pages{'menus.htm'} =~ s/<[^>]+>/ /gr =~ s/&gt;/>/gr;
my @unexplained;
for my $command (@commands) {
    next if $command =~ /, menu, / || $command =~ /Recent opened/;
    my ($caption) = $command =~ /^\{"\w+", \w+, "([^"]+)"/;
    my ($key) = $command =~ /\{[^{}]*"([^"]+)"[^{}"]*\}/;
    push @unexplained, $caption if $menus !~ /\b\Q$caption\E\b/i;
    push @unexplained, $key if defined $key && $menus !~ /\b\Q$key\E\b/;
}
report('every command and key of the menus is explained', @commands > 30 ? () : 'too few', @unexplained);

my @templates = map { m{([^/]+)/?$} } grep { -d } glob "$root/share/program/projects/*";
report('every template is explained', @templates ? () : 'none', grep { $pages{'project.htm'} !~ m{<td>\Q$_\E</td>} } @templates);

# ---- errors

my $header = text_of("$root/kit/compiler/errors.h");
my @numbers = grep { $_ } $header =~ /^\s+\w+ = (\d+),/gm;
report('every compiler error is explained', @numbers > 60 ? () : 'too few',
    grep { $pages{'errors.htm'} !~ m{name="e$_"></a>$_</td><td><b>[^<]+</b><br>\S} } @numbers);
my %result = map { uc($_) => 1 } map { text_of($_) =~ /^io[A-Z]\w+\s+equ\s+0?([0-9A-Fa-f]{2})h/gm } glob "$root/kit/runtime/*.asm";
report('every I/O error of the run-time library is listed', keys %result > 10 ? () : 'too few',
    grep { $pages{'ioerr.htm'} !~ m{<td>$_</td>} } sort keys %result);
my %stop = map { uc($_) => 1 }
    map { text_of($_) =~ /^[ \t]+ld[ \t]+a,0?([0-9A-Fa-f]{2})h[^\n]*\n[ \t]+j[pr][ \t]+\@?runError/gm } glob "$root/kit/runtime/*.asm";
report('every run-time error of the library is listed', keys %stop > 3 ? () : 'too few',
    grep { $pages{'rterr.htm'} !~ m{<td>$_</td>} } sort keys %stop);
