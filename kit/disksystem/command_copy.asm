; COPY

; COPY pattern [name or drive]: each file that fits. A name's ? stand for characters of the file's own. CON takes lines until
; one that ends with ^Z.
commandCopy:
        ld      de,copyPattern
        call    takeArgument
        jp      c,missingName
        ld      de,copyPattern
        call    emptyToAll
        ld      de,copyTarget
        call    takeArgument
        jr      nc,_target
        ld      hl,nothingText
        ld      de,copyTarget
        call    takeFileName
_target:
        ld      de,copyTarget
        call    emptyToAll
        ld      hl,0
        ld      (copyCount),hl
        ld      hl,copyPattern + 1
        call    deviceNamed
        jr      c,_files
        call    setSource
        call    copyOne
        ret     nz
        jr      copyDone
_files:
        xor     a
        ld      (copySkip),a
_file:
        ; the search is begun anew for each file: in between the directory changes
        ld      de,promptEntry
        call    setTransfer
        ld      de,copyPattern
        ld      c,11h
        call    systemCall
        ld      hl,copySkip
        ld      b,(hl)
        inc     (hl)
        inc     b
        jr      _found
_skip:
        push    bc
        ld      c,12h
        call    systemCall
        pop     bc
_found:
        or      a
        jr      nz,_end
        djnz    _skip
        ld      hl,copyPattern
        ld      a,(hl)
        ld      hl,promptEntry + 1
        ld      de,promptBlock
        ld      (de),a
        inc     de
        ld      bc,11
        ldir
        ld      hl,promptEntry + 1
        ld      b,8
        call    showCharacters
        ld      b,3
        call    showCharacters
        call    newLine
        call    copyOne
        ret     nz
        jr      _file
_end:
        ld      hl,(copyCount)
        ld      a,h
        or      l
        jp      z,fileNotFound
copyDone:
        ld      hl,(copyCount)
        ld      de,0
        ld      c,5
        call    showNumber
        ld      hl,copiedText
        jp      showText

; setSource: promptBlock = copyPattern. Changes BC, DE, HL.
setSource:
        ld      hl,copyPattern
        ld      de,promptBlock
        ld      bc,12
        ldir
        ret

; copyOne: In: promptBlock = source. Out: Z when it was copied; otherwise it says what is wrong. Changes all.
copyOne:
        call    makeTargetName
        call    isSameFile
        ld      hl,ontoItselfText
        jr      z,_failed
        ld      hl,promptBlock + 12
        ld      bc,fcbSize - 12
        xor     a
        call    fillBytes
        call    openForBytes
        ld      hl,notFoundText
        jr      nz,_failed
        ld      de,otherBlock
        ld      c,16h
        call    systemCall
        or      a
        ld      hl,directoryFullText
        jr      nz,_failed
        ld      hl,1
        ld      (otherBlock + 14),hl
_part:
        call    readSource              ; BC = bytes
        ld      a,b
        or      c
        jr      z,_close
        ld      h,b
        ld      l,c
        ld      de,otherBlock
        ld      c,26h
        call    systemCall
        or      a
        jr      z,_part
        ; no half files
        ld      de,otherBlock
        ld      c,10h
        call    systemCall
        ld      de,otherBlock
        ld      c,13h
        call    systemCall
        ld      hl,diskFullText
_failed:
        call    showText
        or      1
        ret
_close:
        ld      de,otherBlock
        ld      c,10h
        call    systemCall
        or      a
        ld      hl,diskFullText
        jr      nz,_failed
        ld      hl,(copyCount)
        inc     hl
        ld      (copyCount),hl
        xor     a
        ret

; readSource: Out: BC = bytes in promptBuffer. Changes all.
readSource:
        ld      a,(promptBlock + 24)
        cp      deviceCon
        jp      nz,readPart
        ; a line with its end; nothing once ^Z was typed
        ld      a,(copySkip)
        cp      ctrlZ
        ld      bc,0
        ret     z
        ld      hl,promptLine
        ld      (hl),promptLength
        ex      de,hl
        ld      c,0Ah
        call    systemCall
        call    newLine
        ld      hl,promptText
        ld      de,promptBuffer
        ld      a,(promptLine + 1)
        ld      b,a
        inc     b
        jr      _counted
_character:
        ld      a,(hl)
        inc     hl
        cp      ctrlZ
        jr      z,_end
        ld      (de),a
        inc     de
_counted:
        djnz    _character
        ld      a,carriageReturn
        ld      (de),a
        inc     de
        ld      a,lineFeed
        ld      (de),a
        inc     de
        jr      _length
_end:
        ld      (copySkip),a
_length:
        ld      hl,-promptBuffer
        add     hl,de
        ld      b,h
        ld      c,l
        ret

; makeTargetName: otherBlock = copyTarget with its ? replaced from promptBlock's name. Changes AF, BC, DE, HL.
makeTargetName:
        ld      hl,otherBlock
        ld      bc,fcbSize
        xor     a
        call    fillBytes
        ld      a,(copyTarget)
        ld      (otherBlock),a
        ld      hl,promptBlock + 1
        ld      de,copyTarget + 1
        ld      ix,otherBlock + 1
        ld      b,11
_character:
        ld      a,(de)
        cp      '?'
        jr      nz,_given
        ld      a,(hl)
_given:
        ld      (ix),a
        inc     ix
        inc     hl
        inc     de
        djnz    _character
        ret

; isSameFile: Out: Z when otherBlock and promptBlock name the same file. Changes AF, B, DE, HL.
isSameFile:
        ld      hl,promptBlock
        call    _drive
        ld      c,a
        ld      hl,otherBlock
        call    _drive
        cp      c
        ret     nz
        ld      hl,promptBlock + 1
        ld      de,otherBlock + 1
        ld      b,11
_character:
        ld      a,(de)
        cp      (hl)
        ret     nz
        inc     hl
        inc     de
        djnz    _character
        ret
_drive:
        ld      a,(hl)
        or      a
        ret     nz
        ld      a,(defaultDrive)
        inc     a
        ret
