; The ROM's header and its entries at fixed addresses.

        org     4000h
        defb    'AB'
        defw    initialise
        defw    0,0,0,0,0,0             ; no BASIC statements, devices or program

; The disk driver's published entries, for software that calls a disk ROM itself.
        jp      entryTransfer           ; 4010h
        jp      entryChanged            ; 4013h
        jp      entryParameters         ; 4016h
        jp      entryChoice             ; 4019h
        jp      entryFormat             ; 401Ch
        jp      entryMotorOff           ; 401Fh

        jp      noSystem                ; 4022h: where boot sectors jump to when their disk has no system; BASIC elsewhere

        defs    romEntries - $,0
        jp      serveCall
        jp      warmEntry
        jp      timePasses
