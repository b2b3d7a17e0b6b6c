; The text screen, by the escape sequences of the MSX console.

; clrScr: clears the screen, cursor to 1,1. Nothing in or out; destroys all. 171 T.
@clrScr:
        ld      a,formFeed
        jp      putChar

; clrEol: clears from the cursor to the end of its line. Nothing in or out; destroys all. 382 T.
@clrEol:
        ld      a,'K'
        jr      sendEscape

; insLine: inserts an empty line at the cursor's. Nothing in or out; destroys all. 382 T.
@insLine:
        ld      a,'L'
        jr      sendEscape

; delLine: deletes the cursor's line. Nothing in or out; destroys all. 370 T.
@delLine:
        ld      a,'M'

; sendEscape: In: A = the character after ESC. Destroys all. 363 T.
sendEscape:
        push    af
        ld      a,escape
        call    putChar
        pop     af
        jp      putChar

; gotoXY: In: HL = column, DE = row, both from 1. Does nothing for a place that the sequence cannot name.
; Destroys all. 851 T.
@gotoXY:
        ld      a,h
        or      d
        ret     nz
        ld      a,l
        dec     a
        cp      0DFh
        ret     nc
        ld      a,e
        dec     a
        cp      0DFh
        ret     nc
        add     a,20h
        ld      h,a
        ld      a,l
        add     a,1Fh
        ld      l,a
        push    hl
        ld      a,'Y'
        call    sendEscape
        pop     hl
        push    hl
        ld      a,h                     ; the row comes first
        call    putChar
        pop     hl
        ld      a,l
        jp      putChar

; lowVideo, normVideo, highVideo, crtInit, crtExit: nothing, for the screen has one kind of text and needs no preparation.
; Nothing in or out; keep all registers. 10 T.
@lowVideo:
@normVideo:
@highVideo:
@crtInit:
@crtExit:
        ret
