; The text screen, by the escape sequences of the MSX console.

; clrScr: clears the screen, cursor to 1,1. Destroys all.
@clrScr:
        ld      a,formFeed
        jp      putChar

; clrEol: clears from the cursor to the end of its line. Destroys all.
@clrEol:
        ld      a,'K'
        jr      sendEscape

; insLine: inserts an empty line at the cursor's. Destroys all.
@insLine:
        ld      a,'L'
        jr      sendEscape

; delLine: deletes the cursor's line. Destroys all.
@delLine:
        ld      a,'M'

; sendEscape: In: A = the character after ESC. Destroys all.
sendEscape:
        push    af
        ld      a,escape
        call    putChar
        pop     af
        jp      putChar

; gotoXY: In: HL = column, DE = row, both from 1. Does nothing for a place that the sequence cannot name.
; Destroys all.
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
; 10 T.
@lowVideo:
@normVideo:
@highVideo:
@crtInit:
@crtExit:
        ret
