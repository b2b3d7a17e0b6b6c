; End of a program and the reports of run-time errors, I/O errors and user breaks.

; Bytes that must stay free between heap and stack when a program makes sure of its stack. It may take from them without
; asking again: sixteen return addresses (32 bytes), eight words saved around a call (16), one entry of this library (the
; deepest takes 26, measured) with the BDOS's first steps on the caller's stack, and an interrupt at the worst moment,
; which saves all registers and goes through the slots and hooks (112).
stackMargin     equ 192

; halt: jumped to; ends the program: closes the open files. Console output is not buffered and the screen's state was not
; changed. Nothing in or out; never comes back. 70 T, and 1500 T for each file that is still open.
@halt:
        call    closeAll
        jp      0

; stackError, indexError, rangeError: called; report run-time error FF, 90 or 91 at the caller. Nothing in or
; out; do not return. 12000 T for the report.
@stackError:
        ld      a,0FFh
        jr      @runError
@indexError:
        ld      a,90h
        jr      @runError
@rangeError:
        ld      a,91h

; runError: called, or jumped to by an entry whose own caller's return address is on top of the stack.
; In: A = number. Does not return. 12000 T for the report.
@runError:
        pop     hl
        ld      de,runErrorText

; report: calls the program's own routine for errors; then prints DE = text (a string), A as two hexadecimal digits, and
; the address of the call before HL = return address; ends the program.
report:
        ld      sp,(stackTop)           ; the program's own stack may be used up
        push    hl
        push    af
        push    de
        call    tellProgram
        pop     de
        call    beginReport
        pop     af
        call    writeHexByte
endReport:
        ld      hl,programCounterText
        call    @writeString
        pop     hl
        dec     hl
        dec     hl
        dec     hl
        call    writeHexWord
        ld      hl,abortedText
        call    @writeString
        jp      @halt

; tellProgram: In: A, DE, HL as for report. Calls the procedure Error(Number, Address: Integer) whose address ErrorPtr holds,
; with HL = number (its low byte the error; 512 more for a run-time error than for an I/O error) and DE = address. Only
; for the first error: what goes wrong in it is reported. Destroys all. 250 T.
tellProgram:
        dec     hl
        dec     hl
        dec     hl
        ex      de,hl
        ld      c,a
        ld      a,l
        sub     low ioErrorText
        jr      z,_number
        ld      a,2
_number:
        ld      b,a
        call    clearTransfer
        push    bc
        ld      bc,(@errorPtr)
        ld      (@errorPtr),hl
        pop     hl
        ld      a,b
        or      c
        ret     z
        push    bc
        ret

; clearTransfer: whatever is written or read now, the console is meant. Out: HL = A = 0. Keeps the others. 80 T.
clearTransfer:
        ld      hl,0
        xor     a
        ld      (ioStatus),a
        ld      (selectedOutput),hl
        ld      (selectedInput),hl
        ret

; beginReport: In: DE = string: prints a line end and it, whatever the I/O result was. Destroys all. 720 T + 215 T a
; character.
beginReport:
        call    clearTransfer
        push    de
        call    @writeLine
        pop     hl
        jp      @writeString

; userBreak: jumped to when ^C was read in an entry that has stored its stack pointer in entryStack.
userBreak:
        ld      hl,(entryStack)
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        ld      sp,(stackTop)
        push    de
        ld      de,userBreakText
        call    beginReport
        jr      endReport

; ioCheck: reports an I/O error at the caller when the I/O result is not 0. Nothing in or out.
; Keeps all registers. 55 T.
@ioCheck:
        push    af
        ld      a,(ioStatus)
        or      a
        jr      nz,_report
        pop     af
        ret
_report:
        pop     hl                      ; the saved AF
        pop     hl
        ld      de,ioErrorText
        jp      report

; ioResult: Out: HL = I/O result, which becomes 0 by this. Destroys AF. 50 T.
@ioResult:
        ld      hl,(ioStatus)
        ld      h,0
        xor     a
        ld      (ioStatus),a
        ret

; writeHexWord: In: HL, written in four hexadecimal digits. writeHexByte: In: A, written in two. Destroy all. 930 T;
; 435 T.
writeHexWord:
        push    hl
        ld      a,h
        call    writeHexByte
        pop     hl
        ld      a,l
writeHexByte:
        push    af
        rrca
        rrca
        rrca
        rrca
        call    _digit
        pop     af
_digit:
        and     0Fh
        add     a,'0'
        cp      '9' + 1
        jp      c,putChar
        add     a,'A' - '9' - 1
        jp      putChar

runErrorText:
        defb    ioErrorText - $ - 1,'Run-time error '
ioErrorText:
        defb    userBreakText - $ - 1,'I/O error '
userBreakText:
        defb    programCounterText - $ - 1,'User break'
programCounterText:
        defb    abortedText - $ - 1,', PC='
abortedText:
        defb    abortedTextEnd - $ - 1,13,10,'Program aborted',13,10
abortedTextEnd:
