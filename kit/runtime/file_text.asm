; Text files and devices: characters.

; Numbers of the devices, with kindDevice. Input and Output stand for the console with its lines, or for the terminal.
deviceStandard  equ kindDevice
deviceFirst     equ kindDevice + 1
deviceConsole   equ kindDevice + 1
deviceTerminal  equ kindDevice + 2
deviceKeyboard  equ kindDevice + 3
devicePrinter   equ kindDevice + 4
deviceAuxiliary equ kindDevice + 5
deviceUser      equ kindDevice + 6

deviceNames:
        defb    'CONTRMKBDLSTAUXUSR',0

; The standard files: what devices have of a file variable.
standardFile    macro   number
        defw    0
        defb    number,0,0,0,0,0,0,0,number xor markPattern
        endm

@inputFile:
@outputFile:
        standardFile deviceStandard
@conFile:
        standardFile deviceConsole
@trmFile:
        standardFile deviceTerminal
@kbdFile:
        standardFile deviceKeyboard
@lstFile:
        standardFile devicePrinter
@auxFile:
        standardFile deviceAuxiliary
@usrFile:
        standardFile deviceUser
standardFiles   equ $ - @inputFile

; selectOutput: In: HL = text file: the write entries go to it. selectStandardOutput: they go to the console again.
; Destroy all. 260 T; 36 T.
@selectOutput:
        call    beginFile
        jp      m,_device
        ld      a,(ix + fileState)
        cp      stateWriting
        jr      z,selectedForOutput
_notOutput:
        ld      a,ioNotOutput
        jp      failFile
_device:
        cp      deviceKeyboard
        jr      z,_notOutput
        jr      nc,selectedForOutput
@selectStandardOutput:
        ld      hl,0
selectedForOutput:
        ld      (selectedOutput),hl
        ret

; putSelected: In: A = character, HL = (selectedOutput). Destroys all. 160 T unless the buffer is full,
; 637 T then. callDriver: In: HL = driver, E = character: calls it with the character in A, too; Out: A. Destroys all. 190 T
; and what the driver takes. A driver may write and read itself: that goes to the console, or where it says; afterwards
; the transfer that called it goes on.
putSelected:
        ld      e,a
        push    hl
        pop     ix
        ld      a,(ix + fileKind)
        or      a
        jp      m,_device
        ld      c,(ix + filePlace)
        ld      b,0
        add     hl,bc
        ld      c,fileBuffer
        add     hl,bc
        ld      (hl),e
        inc     (ix + filePlace)
        ret     p
        ld      (currentFile),ix
        jp      flushText
_device:
        ld      hl,(@lstOutPtr)
        cp      deviceAuxiliary
        jr      c,callDriver
        ld      hl,(@auxOutPtr)
        jr      z,callDriver
        ld      hl,(@usrOutPtr)
callDriver:
        ld      bc,(selectedOutput)
        push    bc
        ld      bc,(selectedInput)
        push    bc
        ld      bc,0
        ld      (selectedOutput),bc
        ld      (selectedInput),bc
        call    _driver
        pop     bc
        ld      (selectedInput),bc
        pop     bc
        ld      (selectedOutput),bc
        ret
_driver:
        ld      a,e
        jp      (hl)

; The drivers that the library comes with. Output: A = character. Input: A = character then. Destroy all.
printerOutput:
        ld      c,5
        jr      systemOutput
auxiliaryOutput:
        ld      c,4
systemOutput:
        ld      e,a
        jp      bdosCall
auxiliaryInput:
        ld      c,3
        jp      bdosCall
consoleInput:
        ld      hl,keptKey
        ld      a,(hl)
        ld      (hl),0
        or      a
        ret     nz
        ld      c,7
        jp      bdosCall
consoleStatus:
        ld      a,(keptKey)
        or      a
        ld      a,1
        ret     nz
        ld      c,0Bh
        jp      bdosCall

; selectInput: In: HL = text file: the read entries take from it. selectStandardInput: they take from Input again.
; Destroy all. 270 T; 36 T.
@selectInput:
        call    beginFile
        jp      m,_device
        ld      a,(ix + fileState)
        cp      stateReading
        jr      z,selectedForInput
_notInput:
        ld      a,ioNotInput
        jp      failFile
_device:
        cp      devicePrinter
        jr      z,_notInput
        cp      deviceTerminal
        jr      nc,selectedForInput
        ld      hl,0                    ; Input and Con share the line that was read
        ld      (selectedInput),hl
        ld      a,(lineTaken)
        or      a
        jp      z,@readBegin
        ret
@selectStandardInput:
        ld      hl,0
selectedForInput:
        ld      (selectedInput),hl
        ret

; inputSource: Out: IX = the file that is read from where it is not the line, A = its kind, sign set for a device.
; Destroys F. 82 to 91 T.
inputSource:
        ld      ix,(selectedInput)
        ld      a,(selectedInput + 1)
        or      a
        jr      nz,_selected
        ld      ix,@trmFile
_selected:
        ld      a,(ix + fileKind)
        or      a
        ret

; peekFile: In: IX, flags as from inputSource. Out: A = its next character, ^Z at the end. Destroys the others but
; IX. 145 T, 556 T when the buffer is read.
peekFile:
        jp      m,peekDevice
        ld      a,(ix + filePlace)
        cp      (ix + fileCount)
        jr      c,_there
        ld      (currentFile),ix
        push    ix
        pop     hl
        ld      de,fileBuffer
        add     hl,de
        ex      de,hl
        ld      hl,bufferSize
        ld      c,27h
        call    transferBytes
        xor     a
        ld      (ix + filePlace),a
        ld      (ix + fileCount),l
        or      l
        ld      a,ctrlZ
        ret     z
        xor     a
_there:
        ld      e,a
        ld      d,0
        push    ix
        pop     hl
        add     hl,de
        ld      e,fileBuffer
        add     hl,de
        ld      a,(hl)
        ret

; peekDevice: In: IX = device. Out: A = its next character, held until it is taken. Destroys the others but IX.
; 40 T when one is held, 351 T.
peekDevice:
        ld      a,(ix + fileHeld)
        or      a
        ret     nz
        push    ix
        ld      a,(ix + fileKind)
        cp      deviceAuxiliary
        jr      c,_key
        ld      hl,(@auxInPtr)
        jr      z,_driver
        ld      hl,(@usrInPtr)
_driver:
        call    callDriver
        jr      _read
_key:
        cp      deviceTerminal
        push    af
        call    getKey
        pop     de                      ; the flags, in E
        bit     6,e
        jr      z,_read
        cp      ctrlZ
        jr      z,_read
        push    af
        ld      e,a
        call    putAlways
        pop     af
        cp      carriageReturn
        jr      nz,_read
        ld      e,lineFeed
        call    putAlways
        ld      a,carriageReturn
_read:
        pop     ix
        ld      (ix + fileHeld),a
        ld      (ix + fileLast),a
        ret

; takeFile: In: IX, flags as from inputSource: steps behind what peekFile gave, unless that is ^Z. Destroys AF,
; BC, DE, HL. 214 T.
takeFile:
        jp      m,_device
        call    peekFile
        cp      ctrlZ
        ret     z
        inc     (ix + filePlace)
        ret
_device:
        ld      a,(ix + fileHeld)
        cp      ctrlZ
        ret     z
        ld      (ix + fileHeld),0
        ret

; fileEof, fileEoln, fileSeekEof, fileSeekEoln: In: HL = file. Out: A = 1 or 0; 1 when there is an I/O result. A device is
; asked for the character read last. Destroy all. 400 to 610 T, 1030 T when the buffer is read; the last two 300 T more
; for each blank.
@fileEof:
        ld      c,0
        jr      askFile
@fileEoln:
        ld      c,askLine
        jr      askFile
@fileSeekEof:
        ld      c,askSkipsBlanks or askSkipsLines
        jr      askFile
@fileSeekEoln:
        ld      c,askLine or askSkipsBlanks
askSkipsBlanks  equ 1
askSkipsLines   equ 2
askLine         equ 80h
askFile:
        ld      a,c
        ld      (askMode),a
        call    checkFile
        jr      c,_yes
        jp      m,_device
        ld      a,(ix + fileState)
        cp      stateOpen
        jr      c,_text
        call    recordsLeft
        jr      z,_yes
        jr      _no
_text:
        cp      stateReading
        ld      a,ioNotInput
        jr      nz,_fail
_next:
        or      a                       ; no device
        call    peekFile
        call    _decides
        jr      z,_yes
        ld      hl,askMode
        cp      ' '
        jr      z,_blank
        cp      tab
        jr      z,_blank
        cp      carriageReturn
        jr      z,_line
        cp      lineFeed
        jr      nz,_no
_line:
        bit     1,(hl)
        jr      z,_no
        jr      _take
_blank:
        bit     0,(hl)
        jr      z,_no
_take:
        inc     (ix + filePlace)
        xor     a
        jr      _next
_device:
        cp      deviceTerminal
        ld      a,(ix + fileLast)
        call    c,peekCharacter         ; the line's, or the terminal's
        call    _decides
        jr      z,_yes
_no:
        xor     a
        ret
_fail:
        ld      (ioStatus),a
_yes:
        ld      a,1
        ret
_decides:                               ; Out: Z when the character A says yes; keeps it
        cp      ctrlZ
        ret     z
        ld      hl,askMode
        bit     7,(hl)
        jr      z,_notLine
        cp      carriageReturn
        ret
_notLine:
        cp      ctrlZ                   ; it is not: NZ
        ret
