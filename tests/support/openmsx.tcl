# Sourced by the scripts that show something on an emulated MSX: a picture as the video processor makes it, and errors
# that end the emulator instead of leaving it running for ever. From the environment: TAVREL_LOG, for what went wrong.
set renderer SDL
set throttle off
set gamma 1.0
set brightness 0
set contrast 0
set noise 0
set maxframeskip 0

proc guarded {script} {
    if {[catch $script message]} {
        set file [open $::env(TAVREL_LOG) w]
        puts $file $message
        close $file
        exit
    }
}

# Writes the picture of the screen to a PNG file, then goes on with the script.
proc take_picture {path script} {
    # At full speed no frame is drawn.
    set ::throttle on
    after time 0.3 [list guarded "screenshot -raw -doublesize {$path}; $script"]
}
