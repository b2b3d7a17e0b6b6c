; The commands of the prompt. Each is a routine that changes all; promptTail is the text after its name.

; Six characters of the name, then the routine. A longer word is none of them.
commandTable:
        defb    'DIR   '
        defw    commandDir
        defb    'TYPE  '
        defw    commandType
        defb    'COPY  '
        defw    commandCopy
        defb    'DEL   '
        defw    commandDelete
        defb    'ERASE '
        defw    commandDelete
        defb    'REN   '
        defw    commandRename
        defb    'RENAME'
        defw    commandRename
        defb    'CLS   '
        defw    commandCls
        defb    'DATE  '
        defw    commandDate
        defb    'TIME  '
        defw    commandTime
        defb    'PAUSE '
        defw    commandPause
        defb    'REM   '
        defw    commandRem
        defb    0

commandCls:
        ld      a,formFeed
        jp      showCharacter
commandRem:
        ret

; PAUSE
commandPause:
        ld      hl,pauseText
        call    showText
        ld      c,8
        call    systemCall
        jp      newLine

; d: : the default drive. In: HL = its letter.
commandDrive:
        ld      a,(hl)
        call    upperCase
        sub     'A'
        cp      driveCount
        jr      nc,_none
        ld      e,a
        ld      c,0Eh
        jp      systemCall
_none:
        ld      hl,noDriveText
        jp      showText

; takeArgument: In: promptTail, DE = block. Out: the block's drive and name from its next word; promptTail after it; carry when
; there is none. Changes AF, BC, DE, HL.
takeArgument:
        ld      hl,(promptTail)
        call    skipBlanks
        or      a
        scf
        ret     z
        call    takeFileName
        ld      (promptTail),hl
        or      a
        ret

; emptyToAll: In: DE = block. A name of blanks becomes one that fits all. Changes AF, BC, DE, HL.
emptyToAll:
        inc     de
        ld      a,(de)
        cp      ' '
        ret     nz
        ex      de,hl
        ld      bc,11
        ld      a,'?'
        jp      fillBytes

; fileCall: In: C = function, promptBlock. Out: Z when A = 0. Changes all.
fileCall:
        ld      de,promptBlock
        call    systemCall
        or      a
        ret

; setTransfer: In: DE = transfer address. Changes all.
setTransfer:
        ld      c,1Ah
        jp      systemCall

; DEL pattern
commandDelete:
        ld      de,promptBlock
        call    takeArgument
        jr      c,missingName
        ld      hl,promptBlock + 1
        ld      b,11
        ld      a,'?'
_all:
        cp      (hl)
        jr      nz,_delete
        inc     hl
        djnz    _all
        ld      hl,sureText
        call    showText
        ld      c,1
        call    systemCall
        push    af
        call    newLine
        pop     af
        call    upperCase
        cp      'Y'
        ret     nz
_delete:
        ld      c,13h
        call    fileCall
        ret     z
fileNotFound:
        ld      hl,notFoundText
        jp      showText
missingName:
        ld      hl,missingNameText
        jp      showText

; REN pattern name
commandRename:
        ld      de,promptBlock
        call    takeArgument
        jr      c,missingName
        ld      de,otherBlock
        call    takeArgument
        jr      c,missingName
        ld      hl,otherBlock + 1
        ld      de,promptBlock + 17
        ld      bc,11
        ldir
        ld      c,17h
        call    fileCall
        ret     z
        ld      hl,cannotRenameText
        jp      showText

; TYPE name
commandType:
        ld      de,promptBlock
        call    takeArgument
        jr      c,missingName
        call    openForBytes
        jr      nz,fileNotFound
_part:
        call    readPart
        ld      a,b
        or      c
        ret     z
        ld      hl,promptBuffer
_character:
        ld      a,(hl)
        cp      ctrlZ
        ret     z
        push    bc
        push    hl
        ld      e,a
        ld      c,2
        call    systemCall
        pop     hl
        pop     bc
        inc     hl
        dec     bc
        ld      a,b
        or      c
        jr      nz,_character
        jr      _part

; openForBytes: Out: Z when promptBlock's file was opened, to be read byte by byte into promptBuffer. Changes all.
openForBytes:
        call    openPromptBlock
        ret     nz
        ld      hl,1
        ld      (promptBlock + 14),hl
        ld      de,promptBuffer
        call    setTransfer
        xor     a
        ret

; readPart: Out: BC = bytes that promptBuffer has of promptBlock's file, fewer than fit at its end. Changes all.
readPart:
        ld      hl,promptBufferSize
        ld      de,promptBlock
        ld      c,27h
        call    systemCall
        ld      b,h
        ld      c,l
        ret
