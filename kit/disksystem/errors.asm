; Disk errors: put before the program's own routine, or the user.
;
; The program's routine: the word at F323h is the address of a word that holds its address. It is called with A = drive (0 for
; A:), C = error in bits 3-1 and bit 0 set while writing, and answers in C: 0 ignore, 1 retry, 2 abort. It may use the system's
; functions 01h to 0Bh. To ignore an error means that the call fails.

answerIgnore    equ 0
answerRetry     equ 1

; diskError: In: A = error of the driver, drive, diskWrites. Out: Z to try again, NZ to let the call fail; where the program is
; to end it does not come back. Changes all.
diskError:
        ld      (errorCode),a
        ld      hl,(errorVector)
        call    peekWord
        ld      a,h
        or      l
        jr      z,askUser
        ld      de,(callHl)
        push    de
        ld      de,(callDe)
        push    de
        ld      a,(callFunction)
        push    af
        ld      a,(diskWrites)
        and     1
        ld      c,a
        ld      a,(errorCode)
        or      c
        ld      c,a
        ld      a,(drive)
        call    callProgram
        pop     af
        ld      (callFunction),a
        pop     hl
        ld      (callDe),hl
        pop     hl
        ld      (callHl),hl
        ld      a,c
        cp      answerRetry
        ret     z
        or      a
        jr      nz,abortProgram
        inc     a
        ret

; peekWord: In: HL = address. Out: HL = the word there. Changes AF, B.
peekWord:
        call    peekUser
        ld      b,a
        inc     hl
        call    peekUser
        ld      h,a
        ld      l,b
        ret

; abortProgram: the program ends for a disk error. What the drive could not take is not tried again.
abortProgram:
        call    newLine
        ld      a,(diskWrites)
        dec     a
        jr      nz,_reading
        ld      (diskUnclosed),a
        ld      a,(drive)
        call    forgetDrive
_reading:
        ld      hl,(abortVector)
        jp      leaveTo

; askUser: In: errorCode, drive, diskWrites. Out: as diskError.
askUser:
        call    newLine
        ld      a,(errorCode)
        rrca
        and     7
        ld      hl,errorTexts
        ld      b,a
        inc     b
        jr      _counted
_skip:
        ld      a,(hl)
        inc     hl
        or      a
        jr      nz,_skip
_counted:
        djnz    _skip
        call    showText
        ld      hl,readingText
        ld      a,(diskWrites)
        dec     a
        jr      nz,_direction
        ld      hl,writingText
_direction:
        call    showText
        ld      a,(drive)
        add     a,'A'
        call    showCharacter
        ld      a,':'
        call    showCharacter
        call    newLine
        ld      hl,questionText
        call    showText
_key:
        call    consoleKey
        call    upperCase
        cp      'R'
        jr      z,_retry
        cp      'I'
        jr      z,_ignore
        cp      ctrlC
        jr      z,abortProgram
        cp      'A'
        jr      nz,_key
        jr      abortProgram
_ignore:
        call    showCharacter
        call    newLine
        or      1
        ret
_retry:
        call    showCharacter
        call    newLine
        xor     a
        ret
