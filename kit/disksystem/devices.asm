; Devices as files.

; deviceTransfer: as transferRecords, for the device in fcbDevice. CON gives the keys typed until ^Z; the others nothing.
deviceTransfer:
        ld      hl,(dma)
        ld      (memoryPlace),hl
        ld      hl,(bytesWanted)
        ld      (bytesLeft),hl
        ld      a,(fileWrites)
        or      a
        jr      z,_read
_byte:
        ld      hl,(bytesLeft)
        ld      a,h
        or      l
        ld      bc,(recordCount)
        ret     z
        dec     hl
        ld      (bytesLeft),hl
        ld      hl,(memoryPlace)
        call    peekUser
        inc     hl
        ld      (memoryPlace),hl
        ld      b,a
        ld      a,(fcbDevice)
        cp      deviceCon
        ld      a,b
        jr      z,_console
        ld      a,(fcbDevice)
        cp      deviceAux
        jr      z,_byte
        cp      deviceNul
        jr      z,_byte
        ld      a,b
        call    printCharacter
        jr      _byte
_console:
        call    showCharacter
        jr      _byte
_read:
        ld      a,(fcbDevice)
        cp      deviceCon
        jp      nz,recordsNone
_key:
        ld      hl,(bytesLeft)
        ld      a,h
        or      l
        jp      z,recordsRead
        call    consoleKey
        cp      ctrlZ
        jp      z,recordsRead
        cp      ctrlC
        jp      z,breakProgram
        call    showCharacter
        ld      b,a
        ld      hl,(memoryPlace)
        call    pokeUser
        inc     hl
        ld      (memoryPlace),hl
        ld      hl,(bytesLeft)
        dec     hl
        ld      (bytesLeft),hl
        jr      _key
recordsNone:
        ld      bc,0
        ret
