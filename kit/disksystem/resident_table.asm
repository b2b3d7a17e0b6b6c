; The table that the address at 0001h points into, as CP/M programs expect it. The disk's entries do nothing.

        jp      warmStart
        jp      warmStart
        jp      tableStatus
        jp      tableInput
        jp      tableOutput
        jp      tablePrint
        jp      tableNothing            ; PUNCH
        jp      tableReader
        jp      tableNothing            ; HOME, SELDSK, SETTRK, SETSEC, SETDMA, READ, WRITE, LISTST, SECTRAN
        jp      tableNothing
        jp      tableNothing
        jp      tableNothing
        jp      tableNothing
        jp      tableNothing
        jp      tableNothing
        jp      tableNothing
        jp      tableNothing
tableNothing:
        xor     a
        ret
tableReader:
        ld      a,ctrlZ
        ret

; tableStatus: Out: A = 0FFh when a key waits, else 0. tableInput: Out: A = key. tableOutput, tablePrint: In: C = character.
; All change all. Unlike the system's functions they leave the control keys to the program.
tableStatus:
        ld      c,internalStatus
        jp      systemCall
tableInput:
        ld      c,internalInput
        jp      systemCall
tableOutput:
        ld      e,c
        ld      c,internalOutput
        jp      systemCall
tablePrint:
        ld      e,c
        ld      c,5
        jp      systemCall
