; Disk errors: shown, and answered by the user or by the program's own routine.

; diskError: In: A = error of the driver, drive, diskWrites. Out: Z to try again, NZ to let the call fail; a program that is
; ended does not come back here. Changes all.
diskError:
        ld      (errorCode),a
        ; the program's routine, if there is one
        call    askUser
        ret

; askUser: Out: as diskError.
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
        or      a
        jr      z,_direction
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
        jr      z,_abort
        cp      'A'
        jr      nz,_key
_abort:
        call    newLine
        ld      hl,(abortVector)
        jp      leaveTo
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
