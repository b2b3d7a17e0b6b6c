# What msx.exe asks of openMSX: a picture, another disk, and full speed from the machine's start to the program's.

# tavrel_show SCALE: window and power. openMSX waits for both while it is controlled.
proc tavrel_show {scale} {
    set ::scale_factor $scale
    set ::renderer SDLGL-PP
    tavrel_full_speed
    set ::power on
}

# tavrel_insert IMAGE: starts the machine again with this disk, whatever the user did with it.
proc tavrel_insert {image} {
    diska $image
    set ::pause off
    set ::power on
    reset
    tavrel_full_speed
}

# A program begins at 0100h once address 5, which the BIOS uses otherwise, has the jump into the disk system. Where none
# begins, 20 seconds of the machine's time are enough for its prompt.
proc tavrel_full_speed {} {
    tavrel_real_speed
    set ::throttle off
    set ::tavrel_breakpoint [debug set_bp 0x0100 {[debug read memory 5] == 0xC3} tavrel_real_speed]
    set ::tavrel_limit [after time 20 tavrel_real_speed]
}

proc tavrel_real_speed {} {
    if {[info exists ::tavrel_breakpoint]} {
        catch {debug remove_bp $::tavrel_breakpoint}
        catch {after cancel $::tavrel_limit}
        unset ::tavrel_breakpoint ::tavrel_limit
    }
    set ::throttle on
}
