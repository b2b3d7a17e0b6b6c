# Runs an MSX-DOS program on an emulated MSX2 and writes down what it left behind. The machine has no disk; with TAVREL_BOOT=disk
# it has one that starts the program. From the environment:
#   TAVREL_PROGRAM  .COM file                      TAVREL_DOS      dos.asm, assembled
#   TAVREL_FOLDER   folder with the files that the program reads
#   TAVREL_SECONDS  how long it runs at most, in seconds of the MSX; 20 when this is empty
#   TAVREL_SCRIPT   commands of the emulator: pairs of a time in seconds and a command
#   TAVREL_RESULT   beginning of the names of what is written: .vram .palette .psg .vdp .memory, .text for the console,
#                   .times for what the program wrote to port 2Fh and when, .sound for register, value and time of what
#                   it wrote to the sound generator, .fast for how often it gave a real video processor too little time,
#                   .end for how it ended
#   TAVREL_MOUSE    how far a mouse has moved, X and Y, whichever port it is read at
#   TAVREL_SHOT     PNG file, or nothing           TAVREL_LOG      file for what went wrong
source [file join [file dirname [info script]] .. support openmsx.tcl]

proc contents {path} {
    set file [open $path rb]
    set bytes [read $file]
    close $file
    return $bytes
}

proc put_word {address word} {
    debug write memory $address [expr {$word & 255}]
    debug write memory [expr {$address + 1}] [expr {$word >> 8 & 255}]
}
proc word {address} { expr {[debug read memory $address] + 256 * [debug read memory [expr {$address + 1}]]} }

# A jump at an address.
proc put_jump {address target} {
    debug write memory $address 0xC3
    put_word [expr {$address + 1}] $target
}

set dma 0x80
set text ""
set times ""
set sound ""
set too_fast 0
proc count_too_fast {args} { incr ::too_fast }
set finished 0
array set opened {}
array set changed {}

# The name in a file control block, and the path of the file of that name, or nothing.
proc dos_name {block} {
    binary scan [debug read_block memory [expr {$block + 1}] 11] a8a3 name type
    return [string trimright [string toupper [string trim $name]].[string toupper [string trim $type]] .]
}
proc host_name {block} {
    foreach path [glob -nocomplain -directory $::env(TAVREL_FOLDER) *] {
        if {[string toupper [file tail $path]] eq [dos_name $block]} { return $path }
    }
    return ""
}

# The calls for files. The result goes to A and HL.
proc file_call {} {
    set block [reg DE]
    set result 0
    switch [reg C] {
        12 { set result 0x22 }
        13 - 14 - 24 - 25 {}
        26 { set ::dma $block }
        15 {
            set path [host_name $block]
            if {$path eq ""} {
                set result 255
            } else {
                set ::opened($block) [contents $path]
                debug write_block memory [expr {$block + 16}] [binary format i [string length $::opened($block)]]
            }
        }
        44 {
            # Always the same time, so that a program which begins with Randomize does the same each time.
            reg HL 0x0C1E
            reg DE 0x0F32
            return
        }
        16 {
            if {[info exists ::changed($block)]} {
                set file [open [file join $::env(TAVREL_FOLDER) $::changed($block)] wb]
                puts -nonewline $file $::opened($block)
                close $file
            }
            unset -nocomplain ::opened($block) ::changed($block)
        }
        19 { if {[host_name $block] eq ""} { set result 255 } else { file delete [host_name $block] } }
        22 {
            set ::opened($block) ""
            set ::changed($block) [dos_name $block]
        }
        38 {
            set size [word [expr {$block + 14}]]
            set place [expr {$size * ([word [expr {$block + 33}]] + 65536 * [debug read memory [expr {$block + 35}]])}]
            set count [expr {$size * [reg HL]}]
            set bytes [debug read_block memory $::dma $count]
            set old $::opened($block)
            append old [string repeat "\0" [expr {$place - [string length $old]}]]
            set ::opened($block) [string range $old 0 $place-1]$bytes[string range $old $place+$count end]
            set ::changed($block) [dos_name $block]
            put_word [expr {$block + 33}] [expr {($place + $count) / $size}]
            debug write memory [expr {$block + 35}] [expr {($place + $count) / $size >> 16}]
            debug write_block memory [expr {$block + 16}] [binary format i [string length $::opened($block)]]
        }
        39 {
            set size [word [expr {$block + 14}]]
            set record [expr {[word [expr {$block + 33}]] + 65536 * [debug read memory [expr {$block + 35}]]}]
            set bytes [string range $::opened($block) [expr {$record * $size}] [expr {($record + [reg HL]) * $size - 1}]]
            set read [expr {([string length $bytes] + $size - 1) / $size}]
            set missing [expr {$read * $size - [string length $bytes]}]
            append bytes [string repeat "\0" $missing]
            if {$bytes ne ""} { debug write_block memory $::dma $bytes }
            set result [expr {$read < [reg HL] || $missing}]
            incr record $read
            put_word [expr {$block + 33}] $record
            debug write memory [expr {$block + 35}] [expr {$record >> 16}]
            reg HL $read
            reg A $result
            return
        }
        default { error "BDOS function [reg C] at [format %04X [word [reg SP]]]" }
    }
    reg A $result
    reg HL $result
}

# A mouse: at each change of pin 8 it shows the next four bits, and it counts to the left and upwards. `nibbles` is what is
# still to be shown, `strobe` the level that pin 8 must have then.
set nibbles {}
proc mouse_read {} {
    set output [debug read "PSG regs" 15]
    set strobe [expr {$output & 0x40 ? $output >> 5 & 1 : $output >> 4 & 1}]
    if {![llength $::nibbles]} {
        lassign $::env(TAVREL_MOUSE) x y
        set ::nibbles [list [expr {-$x >> 4 & 15}] [expr {-$x & 15}] [expr {-$y >> 4 & 15}] [expr {-$y & 15}]]
        set ::strobe 1
    }
    if {$strobe != $::strobe} { error "pin 8 of the mouse has the wrong level" }
    set ::strobe [expr {!$strobe}]
    reg A [expr {[reg A] & 0xF0 | [lindex $::nibbles 0]}]
    set ::nibbles [lrange $::nibbles 1 end]
}

# Puts the program into memory, the stand-in for MSX-DOS around it, and starts it.
proc load_without_disk {} {
    # RAM in every page: slot 3-2 of this machine.
    debug write ioports 0xA8 0xFF
    debug write memory 0xFFFF 0xAA
    set dos [contents $::env(TAVREL_DOS)]
    debug write_block memory 0 [string repeat "\0" 256]
    debug write_block memory 0xE000 $dos
    debug write_block memory 0x100 [contents $::env(TAVREL_PROGRAM)]
    put_jump 0 0
    put_jump 5 0xD606
    put_jump 0xD606 0xE000
    put_jump 0x1C 0xE003
    put_jump 0x0C 0xE006
    put_jump 0x38 0xE009
    put_word 0xD600 0
    reg SP 0xD600
    reg PC 0xE00F
    debug set_bp 0 {} { guarded { finish ended } }
    debug set_bp 0xE00C {} { guarded file_call }
    debug set_bp 0xE000 {[reg C] == 2 || [reg C] == 6 && [reg E] < 255} { append ::text [format %c [reg E]] }
    observe
}

# The disk ROM has started the program: it is at its first instruction. Only the time of day is told from here, always the
# same, as without a disk.
proc started_from_disk {} {
    if {$::started || [pc_in_slot 0 0]} return
    set ::started 1
    debug set_bp 0 {![pc_in_slot 0 0]} { guarded { finish ended } }
    debug set_bp 0x00A2 {[pc_in_slot 0 0]} { append ::text [format %c [reg A]] }
    debug set_bp 5 {[reg C] == 44 && ![pc_in_slot 0 0]} {
        reg HL 0x0C1E
        reg DE 0x0F32
        reg PC [word [reg SP]]
        reg SP [expr {[reg SP] + 2}]
    }
    observe
}

proc observe {} {
    set ::VDP.too_fast_vram_access_callback count_too_fast
    debug set_watchpoint write_io 0x2F {} { append ::times "$::wp_last_value [machine_info time]\n" }
    debug set_watchpoint write_io 0xA0 {} { set ::psg_register $::wp_last_value }
    debug set_watchpoint write_io 0xA1 {} { append ::sound "$::psg_register $::wp_last_value [machine_info time]\n" }
    if {$::env(TAVREL_MOUSE) ne ""} {
        # Behind the read of the port in ReadMouse: IN A,(A2h); AND 0Fh; LD (HL),A; INC HL.
        set place [string first "\xDB\xA2\xE6\x0F\x77\x23" [contents $::env(TAVREL_PROGRAM)]]
        debug set_bp [expr {0x100 + $place + 2}] {} { guarded mouse_read }
    }
    set seconds $::env(TAVREL_SECONDS)
    if {$seconds eq ""} { set seconds [expr {$::started ? 60 : 20}] }   ;# real files take their time
    after time $seconds { guarded { finish stopped } }
    foreach {time command} $::env(TAVREL_SCRIPT) { after time $time $command }
}

proc write_result {name bytes} {
    set file [open $::env(TAVREL_RESULT).$name wb]
    puts -nonewline $file $bytes
    close $file
}

proc finish {how} {
    if {$::finished} return
    set ::finished 1
    if {$how eq "ended"} {
        # The last command of the video processor may still be at work: it is given time, by a jump to itself.
        debug write_block memory 0xC000 "\xFB\x18\xFE"
        reg PC 0xC000
    }
    after time 0.2 [list guarded [list write_results $how]]
}

proc write_results {how} {
    foreach {name debuggable} {vram VRAM palette "VDP palette" psg "PSG regs" vdp "VDP regs" memory memory} {
        write_result $name [debug read_block $debuggable 0 [debug size $debuggable]]
    }
    write_result text $::text
    write_result times $::times
    write_result sound $::sound
    write_result fast $::too_fast
    write_result end $how
    if {$::env(TAVREL_SHOT) eq ""} exit
    take_picture $::env(TAVREL_SHOT) exit
}

set started 0
if {[info exists env(TAVREL_BOOT)] && $env(TAVREL_BOOT) eq "disk"} {
    debug set_bp 0x0100 {} { guarded started_from_disk }
    after time 30 { if {!$::started} { guarded { error "the disk did not start the program" } } }
} else {
    after time 3 { guarded load_without_disk }
}
