; Names of eight and three characters.

; takeName: In: HL = a name of 11 characters in page 3. Out: pattern = it, in capitals. Changes AF, BC, DE, HL.
takeName:
        ld      de,pattern
        ld      b,11
_character:
        ld      a,(hl)
        call    upperCase
        ld      (de),a
        inc     hl
        inc     de
        djnz    _character
        ret

; upperCase: In: A = character. Out: A = its capital letter. Changes F.
upperCase:
        cp      'a'
        ret     c
        cp      'z' + 1
        ret     nc
        sub     'a' - 'A'
        ret

; fitsPattern: In: HL = a directory entry. Out: Z when its name fits pattern. Keeps HL; changes AF, BC, DE.
fitsPattern:
        push    hl
        ld      de,pattern
        ld      b,11
_character:
        ld      a,(de)
        cp      '?'
        jr      z,_next
        cp      (hl)
        jr      nz,_end
_next:
        inc     hl
        inc     de
        djnz    _character
        xor     a
_end:
        pop     hl
        ret

; isFileName: In: HL = 11 characters. Out: carry when no file can have that name: a wildcard, a blank inside, a control
; character or one that means something in a command line. Changes AF, BC, DE, HL.
isFileName:
        ld      a,(hl)
        cp      ' '
        scf
        ret     z
        ld      b,8
        call    _part
        ret     c
        ld      b,3
_part:
        ld      c,0                     ; not 0 after a blank
_character:
        ld      a,(hl)
        inc     hl
        cp      ' '
        ret     c
        jr      z,_blank
        cp      deleteKey
        scf
        ret     z
        inc     c
        dec     c
        scf
        ret     nz
        push    hl
        ld      hl,separators
        ld      e,a
_separator:
        ld      a,(hl)
        inc     hl
        cp      e
        jr      z,_bad
        or      a
        jr      nz,_separator
        pop     hl
_next:
        djnz    _character
        or      a
        ret
_blank:
        inc     c
        jr      _next
_bad:
        pop     hl
        scf
        ret
separators:
        defb    '.:;,=+"/\[]|<>*?',0

; deviceNamed: In: HL = 11 characters in capitals. Out: A = the number of the device of that name, whatever the type is;
; carry when it is none. Changes BC, DE, HL.
deviceNamed:
        ld      de,deviceNames
_device:
        ld      a,(de)
        or      a
        scf
        ret     z
        push    af
        inc     de
        push    hl
        push    de
        ld      b,8
_character:
        ld      a,(de)
        cp      (hl)
        jr      nz,_other
        inc     hl
        inc     de
        djnz    _character
        pop     de
        pop     hl
        pop     af
        or      a
        ret
_other:
        pop     de
        ld      hl,8
        add     hl,de
        ex      de,hl
        pop     hl
        pop     af
        jr      _device
deviceNames:
        defb    deviceCon,'CON     '
        defb    deviceAux,'AUX     '
        defb    deviceNul,'NUL     '
        defb    deviceLst,'LST     '
        defb    devicePrn,'PRN     '
        defb    0
deviceCon       equ 0FFh
deviceAux       equ 0FEh
deviceNul       equ 0FDh
deviceLst       equ 0FCh
devicePrn       equ 0FBh
