# What msx.tcl wrote about a program, and the count of what is wrong with it.
package Result;
use strict;
use warnings;
use Exporter 'import';
our @EXPORT_OK = qw(bytes_of same font marks);

my $result;
my $wrong = 0;

# The beginning of the names of the files.
sub open_result { ($result) = @_; }
sub wrong { return $wrong; }

sub bytes_of {
    my ($file) = @_;
    open(my $handle, '<:raw', "$result.$file") or die "$result.$file: $!\n";
    local $/;
    my $bytes = <$handle>;
    return defined $bytes ? $bytes : '';
}

sub same {
    my ($what, $expected, $found) = @_;
    return if $expected eq $found;
    print "$what: expected <$expected>, found <$found>\n";
    ++$wrong;
}

# Pairs of what was written to port 2Fh and when.
sub marks { return map { [split / /] } split /\n/, bytes_of('times'); }

# The letters of the machine, from its ROM: the address stands at 4.
sub font {
    open(my $rom, '<:raw', '/usr/share/cbios/cbios_main_msx2.rom') or die "the ROM: $!\n";
    local $/;
    my $bytes = <$rom>;
    return substr($bytes, unpack('v', substr($bytes, 4, 2)), 2048);
}

1;
