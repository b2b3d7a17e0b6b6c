# Runs jobs, one after the other, on an emulated MSX whose disk ROM is ours: for each one the disk goes into drive A, the
# machine is reset, and what comes is observed from outside. The ROM is never changed or helped.
# From the environment: TAVREL_INIT, the address at which the ROM begins. TAVREL_JOBS, a file with one job in a line, as a list of names and values:
#   image    file that is put into drive A; nothing for an empty drive
#   second   file that is put into drive B
#   answer   what is typed when the system asks whether to abort, retry or ignore: one key after the other, the last one again
#            and again
#   base     beginning of the names of what is written: .text for what the program wrote on the console, .screen for all
#            that was written there since the reset, .printer, .end for how it ended, .time for seconds from the hand-over
#            by the BIOS to the program's first instruction and from there to its end
#   seconds  how long it may take at most, in seconds of the MSX from the reset on; 60 when it is not given
#   keys     file with what is typed; a line feed is the RETURN key
#   typed    `asked`: a key comes when the program asks for one, and after the last one comes ^Z, as msxrun does it.
#            `waiting`: a key comes whenever the system waits for one; the job ends when it waits for one more
#   length   of the program, if the memory from its end up to the stack is to be zero, as in msxrun: for programs that
#            read what they have never written
#   start    command of the emulator for the program's first instruction
#   also     commands of the emulator: pairs of a time in seconds since the reset and a command
#   dump     name of a file for the memory that the program shows by OUT (2Fh): length in BC, address in HL
set renderer none
set throttle off
set save_settings_on_exit off

# The work area of the BIOS: its buffer for keys.
set put_pointer 0xF3F8
set get_pointer 0xF3FA
set key_buffer 0xFBF0
set key_buffer_end 0xFC18

proc word {address} { expr {[debug read memory $address] + 256 * [debug read memory [expr {$address + 1}]]} }
proc put_word {address word} {
    debug write memory $address [expr {$word & 255}]
    debug write memory [expr {$address + 1}] [expr {$word >> 8 & 255}]
}
proc contents {path} {
    set file [open $path rb]
    set bytes [read $file]
    close $file
    return $bytes
}
proc write_result {name bytes} {
    set file [open $::job(base).$name wb]
    puts -nonewline $file $bytes
    close $file
}
proc guarded {script} {
    if {[catch {uplevel #0 $script} message]} { finish "error: $message" }
}
proc in_bios {} { pc_in_slot 0 0 }

proc next_job {} {
    if {![llength $::jobs]} { exit }
    array unset ::job
    array set ::job {image {} second {} answer {} seconds 60 keys {} typed asked length 0 start {} also {} dump {}}
    array set ::job [lindex $::jobs 0]
    set ::jobs [lrange $::jobs 1 end]
    foreach name {screen text printer keys} { set ::$name "" }
    if {$::job(keys) ne ""} { set ::keys [string map [list "\r\n" "\r" "\n" "\r"] [contents $::job(keys)]] }
    set ::ended_keys 0
    set ::handed_over 0
    set ::started 0
    set ::ended 0
    set ::function -1
    set ::file_calls -1
    set ::timers {}
    if {$::job(image) eq ""} { diska eject } else { diska $::job(image) }
    if {$::job(second) eq ""} { diskb eject } else { diskb $::job(second) }
    reset
    lappend ::timers [after time $::job(seconds) { finish stopped }]
    foreach {time command} $::job(also) { lappend ::timers [after time $time [list guarded $command]] }
}

proc finish {how} {
    foreach timer $::timers { after cancel $timer }
    # What was written is in the file once the disk is out.
    diska eject
    diskb eject
    if {!$::started} { set ::text $::screen }
    foreach name {screen text printer} { write_result $name [set ::$name] }
    if {$::started && $::ended && $::handed_over} {
        write_result time "[expr {$::started - $::handed_over}] [expr {$::ended - $::started}]"
    }
    write_result end $how
    set ::timers {}
    # What has been noticed at this instruction is over, and the next job not yet begun.
    after realtime 0 { guarded next_job }
}

proc written {} {
    if {![in_bios]} return
    set character [format %c [reg A]]
    append ::screen $character
    if {$::started && !$::ended} { append ::text $character }
}

proc handed_over {} {
    if {!$::handed_over && [pc_in_slot 1]} { set ::handed_over [machine_info time] }
}
proc program_starts {} {
    if {$::started || [in_bios]} return
    set ::started [machine_info time]
    if {$::job(length)} {
        set end [expr {0x100 + $::job(length)}]
        debug write_block memory $end [string repeat "\0" [expr {[reg SP] - 64 - $end}]]
    }
    uplevel #0 $::job(start)
}
proc program_ends {} {
    if {$::started && !$::ended && ![in_bios]} { set ::ended [machine_info time] }
}

# The job's `start` may set file_calls: after so many calls for files the disk is taken out.
set calls_for_files {15 16 17 18 19 20 21 22 23 33 34 35 38 39 40}
proc names_device {block} {
    set name [string trim [debug read_block memory [expr {$block + 1}] 8]]
    return [expr {[string toupper $name] in {CON PRN LST NUL AUX}}]
}
proc called {} {
    if {!$::started || $::ended || [in_bios]} return
    set ::function [reg C]
    if {$::function == 6 && [reg E] != 255} { set ::function 2 }
    if {$::file_calls >= 0 && $::function in $::calls_for_files && ![names_device [reg DE]]} {
        if {$::file_calls == 0} { diska eject } else { incr ::file_calls -1 }
    }
    if {$::function == 0} { set ::ended [machine_info time] }
}

proc put_key {code} {
    set place [word $::put_pointer]
    debug write memory $place $code
    incr place
    if {$place >= $::key_buffer_end} { set place $::key_buffer }
    put_word $::put_pointer $place
}
# Functions that read the keyboard, or may: 14h, 21h and 27h read it when the file is the console.
proc program_asks {} { expr {$::started && !$::ended && $::function in {1 6 7 8 10 11 20 33 39}} }

proc keyboard {waits} {
    if {![in_bios] || [word $::put_pointer] != [word $::get_pointer]} return
    if {$waits && $::job(answer) ne "" && [string match {*Ignore? } $::screen]} {
        put_key [scan $::job(answer) %c]
        if {[string length $::job(answer)] > 1} { set ::job(answer) [string range $::job(answer) 1 end] }
        return
    }
    if {$::job(typed) eq "asked"} {
        if {$waits && $::started && [regexp {\n[A-B]>$} $::screen]} {
            if {!$::ended} { regsub {\r?\n?[A-B]>$} $::text {} ::text }
            finish ended
        } elseif {[program_asks]} {
            if {$::keys ne ""} {
                put_key [scan $::keys %c]
                set ::keys [string range $::keys 1 end]
            } elseif {$waits || $::function != 11 || !$::ended_keys} {
                set ::ended_keys 1
                put_key 26
            }
        }
        return
    }
    if {!$waits} return
    if {$::keys eq ""} {
        finish ended
    } else {
        put_key [scan $::keys %c]
        set ::keys [string range $::keys 1 end]
    }
}

# A printer that is always ready.
set printerlogfilename [file normalize $env(TAVREL_JOBS).printed]
plug printerport logger
set jobs [split [string trim [contents $env(TAVREL_JOBS)]] \n]
debug set_bp 0x00A2 {} { guarded written }
debug set_bp 0x00A5 {} { if {[in_bios]} { append ::printer [format %c [reg A]] } }
debug set_bp 0x0100 {} { guarded program_starts }
debug set_bp 0x0000 {} { guarded program_ends }
debug set_bp 0x0005 {} { guarded called }
debug set_bp 0x009C {} { guarded { keyboard 0 } }
debug set_bp 0x009F {} { guarded { keyboard 1 } }
debug set_bp $env(TAVREL_INIT) {} { guarded handed_over }
debug set_watchpoint write_io 0x2F {$::started && !$::ended} { guarded {
    if {$::job(dump) ne ""} {
        set file [open $::job(dump) wb]
        if {[reg BC]} { puts -nonewline $file [debug read_block memory [reg HL] [reg BC]] }
        close $file
    }
} }
after realtime 0 { guarded next_job }
