#!/usr/bin/perl
# Random sequences of calls, done by msxrun and on the emulated MSX with our disk ROM. Both must give the same results and leave
# the same files; the image must be sound for fsck.fat and for our own checker.
#   calls.pl FOLDER FIRST COUNT    works in FOLDER, which machine.sh has prepared; prints "ok NUMBER" or "FAIL NUMBER: why"
# From the environment: TAVREL_BIN (tp3's folder), TAVREL_CALLS (calls.asm, assembled), TAVREL_RUN (a script that runs jobs),
# TAVREL_STEPS, 30 when it is not given; TAVREL_KEEP, to keep the files of what fails.
use strict;
use warnings;
use FindBin;
use lib $FindBin::Bin;
use Disk;
use Sequence;
use File::Path qw(make_path remove_tree);

my ($work, $first, $count) = @ARGV;
my $bin = $ENV{TAVREL_BIN};
my $steps = $ENV{TAVREL_STEPS} // 30;
$ENV{TZ} = 'UTC';
chdir $work or die "$work: $!\n";

sub content { my ($path) = @_; open my $file, '<:raw', $path or return ''; local $/; return <$file> // '' }
sub put { my ($path, $bytes) = @_; open my $file, '>:raw', $path or die "$path: $!\n"; print $file $bytes; close $file or die "$path: $!\n" }
sub run_quietly { my ($log, @command) = @_; system("@command > $log 2>&1 < /dev/null") }

my $interpreter = content($ENV{TAVREL_CALLS});
my %start = ('A' => '', 'B.TXT' => "line of text\r\n" x 80, 'C.DAT' => join('', map { chr $_ * 7 % 256 } 1 .. 5000),
    'LONGNAME.EXT' => 'x' x 384);

# prepare NUMBER: folder and disk, both with the same files; what msxrun makes of them. Gives back the sequence.
sub prepare {
    my ($number) = @_;
    my $sequence = Sequence->new($number, $steps);
    my $script = $sequence->script;
    die "the script of $number is too long\n" if length $script > 0x1800;
    my %files = (%start, 'T.COM' => $interpreter . $script, 'AUTOEXEC.BAT' => join(' ', 'T', split ' ', $sequence->{arguments}) . "\r\n");
    make_path("$number.dir");
    put("$number.dir/$_", $files{$_}) for keys %files;
    # Returns at the end: a line is then never waited for without end, and what the end of the keys is need not agree.
    put("$number.keys", $sequence->{keys} . "\r" x 100);
    unlink "$number.dsk";
    run_quietly("$number.dsktool", "$bin/dsktool", 'A', "$number.dsk", map { "$number.dir/$_" } sort keys %files) == 0
        or die content("$number.dsktool");
    my $arguments = join ' ', map { "'$_'" } split ' ', $sequence->{arguments};
    system("$bin/msxrun --disk $number.dir --tpa-top D000 --limit 200M --printer $number.lst $number.dir/T.COM $arguments"
        . " < $number.keys > $number.out 2> $number.err");
    return $sequence;
}

# The names and lengths of what differs.
sub different_files {
    my ($number, $disk) = @_;
    my %there = %{$disk->files};
    my @faults;
    for my $path (glob "$number.dir/*") {
        my ($name) = $path =~ m{([^/]*)$};
        my $wanted = content($path);
        my $found = delete $there{$name};
        if (!defined $found) { push @faults, "$name is missing" }
        elsif ($found ne $wanted) {
            my $place = 0;
            ++$place while substr($found, $place, 1) eq substr($wanted, $place, 1) && $place < length $wanted;
            push @faults, "$name: " . length($found) . ' bytes instead of ' . length($wanted) . ", from $place on";
        }
    }
    push @faults, map { "$_ should not be there" } sort keys %there;
    return @faults;
}

# What fsck.fat finds. Where later disks have a label and a mark for one that was not unmounted, these have their boot program.
sub fsck_faults {
    my ($number) = @_;
    run_quietly("$number.fsck", '/sbin/fsck.fat -n', "$number.dsk");
    my @lines = split /\n/, content("$number.fsck");
    return 'fsck.fat did not run' if !grep { /: \d+ files, \d+\/\d+ clusters$/ } @lines;
    my $boot = qr/label|Dirty bit|dirty bit|^fsck\.fat |^Leaving filesystem unchanged|: \d+ files, |^\s*$/i;
    return map { "fsck.fat: $_" } grep { !/$boot/ } @lines;
}

sub faults_of {
    my ($number, $sequence) = @_;
    my $end = content("$number.end");
    return "ended so: $end" if $end ne 'ended';
    my $printed = content("$number.lst");
    my $mark = rindex $printed, 'LOG:';
    return 'msxrun did not come to the end: ' . content("$number.err") if $mark < 0;
    my $difference = $sequence->first_difference(substr($printed, $mark + 4), content("$number.log"));
    return "the calls differ (msxrun, then the ROM):\n$difference" if $difference;
    my @faults;
    push @faults, 'the console differs' if content("$number.out") ne content("$number.text");
    push @faults, 'the printer differs' if substr($printed, 0, $mark) ne content("$number.printer");
    my $disk = Disk->open("$number.dsk");
    push @faults, $disk->problems, different_files($number, $disk);
    push @faults, 'the FATs differ' if $disk->copies_differ;
    my $open = content("$number.err") =~ /was written but not closed/;
    push @faults, $disk->lost . ' clusters are lost' if $disk->lost && !$open;
    push @faults, 'too many clusters: ' . join ' ', $disk->unclosed if $disk->unclosed && !$open;
    push @faults, fsck_faults($number) if !$open;
    return join '; ', @faults;
}

my (%sequences, $jobs);
for my $number ($first .. $first + $count - 1) {
    $sequences{$number} = prepare($number);
    $jobs .= "image $number.dsk base $number seconds 300 keys $number.keys dump $number.log\n";
}
put('jobs', $jobs);
system($ENV{TAVREL_RUN}, 'jobs');
for my $number ($first .. $first + $count - 1) {
    my $faults = faults_of($number, $sequences{$number});
    print $faults ? "FAIL $number: $faults\n" : "ok $number\n";
    next if $faults && $ENV{TAVREL_KEEP};
    remove_tree("$number.dir");
    unlink glob "$number.*";
}
