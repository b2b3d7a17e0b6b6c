; Delay: time by the frames of the video processor, and by a loop for what is less than a frame.
;
; The loop's pass is worth a time that is measured whenever a Delay sees a whole frame, so that a faster processor, or
; one that interrupts keep busy, waits no shorter or longer. Where no frames are counted, because interrupts are off or
; are not the system's, the passes alone decide.

frameCounter    equ 0FC9Eh      ; JIFFY: the interrupt routine counts the frames here
mainRomSlot     equ 0FCC1h      ; EXPTBL: slot of the BIOS
subRomSlot      equ 0FAF8h      ; EXBRSA: slot of the MSX2's second ROM, 0 on an MSX1
videoRegister9  equ 0FFE8h      ; RG9SAV: what the MSX2's register 9 holds; bit 1 for 50 Hz
romIdentity     equ 002Bh       ; in the BIOS; bit 7 for 50 Hz
readSlot        equ 000Ch       ; RDSLT

; Times are 16 bits of milliseconds and 16 bits behind the point.
frame60         equ 16
frame60Fraction equ 45100       ; 262 lines of 63.7 microseconds: 16.688 ms
frame50         equ 19
frame50Fraction equ 61383       ; 313 lines: 19.937 ms
passDefault     equ 1262        ; a pass on an MSX at 3.58 MHz, with what the interrupts of the frames take
passEntry       equ 6           ; passes that the way to the first one takes
passMeasure     equ 40          ; passes that the measuring takes
unansweredBit   equ 1           ; 512 milliseconds by the default are two frames of a processor 12 times as fast

; delay: In: HL = milliseconds; a negative number of them does not wait. Destroys all. A pass of the loop takes 59 T, 67 T
; on an MSX. The first Delay of a program, when it is shorter than two frames, waits for them to have the pass measured.
@delay:
        bit     7,h
        ret     nz
        ld      a,h
        or      l
        ret     z
        ld      (delayTime),hl
        dec     hl
        ld      b,0
        ld      de,(delayPass)          ; DE = time of a pass
        ld      a,d
        or      e
        jr      nz,_measured
        ld      de,passDefault
        ld      a,i                     ; tells whether interrupts are on, but for one that comes just then
        jp      pe,_measure
        ld      a,i
        jp      po,_measured
_measure:
        inc     b                       ; B = 1: until a whole frame was seen, or is not to be expected any more
        set     unansweredBit,h
_measured:
        push    hl
        exx
        pop     hl                      ; HL' = milliseconds left, HL = fraction
        exx
        xor     a
        ld      (delayTicks),a
        ld      hl,0                    ; the first millisecond is on its way: what the entry has taken is off it
        rept    passEntry
        sbc     hl,de
        or      a
        endm
        ld      ix,0                    ; IX = passes, before the first frame's end or since
        ld      a,(frameCounter)
        ld      c,a
_pass:
        inc     ix
        ld      a,(frameCounter)
        cp      c
        jr      nz,_frame
        sbc     hl,de
        jp      nc,_pass
        exx
        ld      a,h
        or      l
        dec     hl
        exx
        jr      nz,_pass
        dec     b                       ; the time is over
        ret     nz
        ld      (delayPass),de          ; nobody counts frames
        ret
_frame:
        ld      c,a
        ld      a,(delayTicks)
        cp      3                       ; more are not told apart
        adc     a,0
        ld      (delayTicks),a
        dec     a
        jr      nz,_whole
        ld      (delayFirst),ix
        ld      ix,0
        jr      _pass
_whole:
        ld      b,0
        push    bc
        ld      (delayPasses),ix
        call    frameTime
        ld      a,(delayTicks)
        cp      2
        jr      nz,_left
        push    hl
        push    de
        call    measurePass
        pop     de
        pop     hl
_left:                                  ; what was left at the frame's beginning less its length
        ld      b,h
        ld      c,l
        ld      hl,(delayLeft)
        or      a
        sbc     hl,de
        ld      (delayLeft),hl
        ex      de,hl
        ld      hl,(delayLeft + 2)
        sbc     hl,bc
        ld      (delayLeft + 2),hl
        pop     bc
        ret     m
        push    hl
        exx
        pop     hl
        exx
        ex      de,hl
        ld      de,(delayPass)
        ld      ix,0
        jr      _pass

; measurePass: In: HL and fraction DE = a frame's length; delayPasses = passes in it, delayFirst = passes before it. Sets
; delayPass, and delayLeft to what was left at the frame's beginning. Destroys AF, BC, DE, HL. 2300 T.
measurePass:
        ld      bc,(delayPasses)
        ld      a,b
        or      a
        jr      nz,_enough
        inc     b                       ; interrupts take nearly everything: keeps the quotient in 16 bits
_enough:
        ld      a,16
_next:
        sla     e
        rl      d
        adc     hl,hl
        sbc     hl,bc
        jr      c,_zero
        inc     e
        jr      _bit
_zero:
        add     hl,bc
_bit:
        dec     a
        jr      nz,_next
        ld      (delayPass),de
        ld      hl,(delayFirst)
        ld      bc,passEntry + passMeasure
        add     hl,bc
        ld      b,h
        ld      c,l
        call    multiplyWords
        ld      b,h
        ld      c,l
        ld      hl,0
        or      a
        sbc     hl,bc
        ld      (delayLeft),hl
        ld      hl,(delayTime)
        sbc     hl,de
        ld      (delayLeft + 2),hl
        ret

; frameTime: Out: HL = milliseconds of a frame, DE = their fraction. Enables interrupts; destroys all. 64 T on an MSX2;
; an MSX1 is asked by RDSLT, 80 T and what that takes.
frameTime:
        ld      a,(subRomSlot)
        or      a
        ld      a,(videoRegister9)
        jr      nz,_known
        ld      a,(mainRomSlot)
        ld      hl,romIdentity
        call    readSlot
        ei
        rlca                            ; bit 7 to bit 1
        rlca
_known:
        and     2
        ld      hl,frame60
        ld      de,frame60Fraction
        ret     z
        ld      hl,frame50
        ld      de,frame50Fraction
        ret
