# Shows a converted picture on an MSX2+ and writes what the video processor makes of it. From the environment:
#   TAVREL_SCREEN   screen mode     TAVREL_PICTURE  picture file     TAVREL_SHOT  PNG file to write
#   TAVREL_PALETTE  palette file, or nothing        TAVREL_LOG   file for what went wrong
source [file join [file dirname [info script]] .. support openmsx.tcl]

# The bytes of a file written by BSAVE, without its header of 7 bytes.
proc content {path} {
    set file [open $path rb]
    set bytes [read $file]
    close $file
    binary scan $bytes cususu mark start end
    if {$mark != 0xFE || $start > $end || [string length $bytes] != 7 + $end - $start + 1} {
        error "$path: the header is wrong"
    }
    return [list $start [string range $bytes 7 end]]
}

proc register {number value} { debug write "VDP regs" $number $value }

# As SCREEN sets them, the border in colour 0.
proc set_mode {screen} {
    set modes {2 0x02 5 0x06 6 0x08 7 0x0A 8 0x0E 12 0x0E}
    register 0 [dict get $modes $screen]
    register 1 0x40
    register 7 0x00
    register 8 0x08
    register 23 0
    register 25 [expr {$screen == 12 ? 0x08 : 0}]
    if {$screen == 2} {
        foreach {number value} {2 0x06 3 0xFF 10 0 4 0x03 5 0x36 11 0 6 0x07 9 0x00} { register $number $value }
    } else {
        register 2 0x1F
        register 9 0x80
        if {$screen <= 6} {
            register 5 0xEF
            register 11 0
        } else {
            register 5 0xF7
            register 11 1
        }
    }
    # Their pictures hold nothing about sprites.
    if {$screen == 8 || $screen == 12} { register 8 0x0A }
}

proc show {} {
    # The processor must not disturb: DI, and a jump to itself.
    debug write_block memory 0xC000 "\xF3\x18\xFE"
    reg PC 0xC000
    set_mode $::env(TAVREL_SCREEN)
    # The mode counts from the next line of the screen on, and with it the order of the memory.
    after time 0.1 { guarded { load } }
}

proc load {} {
    lassign [content $::env(TAVREL_PICTURE)] start bytes
    debug write_block VRAM $start $bytes
    if {$::env(TAVREL_PALETTE) ne ""} {
        lassign [content $::env(TAVREL_PALETTE)] start bytes
        debug write_block "VDP palette" 0 $bytes
    }
    take_picture $::env(TAVREL_SHOT) exit
}

after time 3 { guarded { show } }
