; Files: what all kinds have in common. I/O results go to ioStatus; while it is not 0, nothing is done.
;
; A file variable has 176 bytes; that of a device only the first six. Assign makes it valid, which fileMark tells.

fileLink        equ 0           ; word: the next open disk file
fileKind        equ 2           ; byte: the kinds below, or kindDevice + number of a device
fileState       equ 3           ; byte: the states below
fileLast        equ 4           ; device: last character read
fileHeld        equ 5           ; device: character read but not taken, or 0
filePlace       equ 4           ; text: place in the buffer
fileCount       equ 5           ; text: bytes in the buffer (reading)
fileRecord      equ 4           ; word, typed: bytes in a record
fileNumber      equ 6           ; word, others: the record that comes next
fileRecords     equ 8           ; word, others: records in the file
fileMark        equ 10          ; byte: kind xor markPattern
fileBlock       equ 11          ; 37 bytes: the system's file control block
fileBuffer      equ 48          ; 128 bytes

kindText        equ 0
kindTyped       equ 1
kindUntyped     equ 2
kindDevice      equ 80h
markPattern     equ 5Ah

stateClosed     equ 0
stateReading    equ 1           ; text
stateWriting    equ 2           ; text
stateOpen       equ 4           ; the other kinds
stateChanged    equ 5           ; typed: the header is to be written

bufferSize      equ 128
typedHeader     equ 4           ; a typed file begins with the number of its records and their size

; Places in a file control block.
blockName       equ 1
blockRecord     equ 14          ; word: record size of a transfer
blockSize       equ 16          ; four bytes: the file's size
blockRandom     equ 33          ; four bytes: record of a transfer

; I/O results.
ioNotFound      equ 01h
ioNotInput      equ 02h
ioNotOutput     equ 03h
ioNotOpen       equ 04h
ioOnDevice      equ 20h
ioStandardFile  equ 22h
ioRecordSize    equ 90h
ioSeekPastEnd   equ 91h
ioEndOfFile     equ 99h
ioWriteError    equ 0F0h
ioDirectoryFull equ 0F1h
ioTooLarge      equ 0F2h
ioVanished      equ 0FFh

fileCreate      equ 16h
fileOpen        equ 0Fh

; checkFile: In: HL = file. Out: IX = HL = currentFile = the file, A = its kind, sign set for a device; carry when the I/O
; result is not 0 or becomes ioNotOpen because the variable holds no file. Keeps BC, DE. 152 T; 73 T after an error.
; notOpen: Out: that I/O result and carry; destroys A. 34 T.
checkFile:
        ld      (currentFile),hl
        push    hl
        pop     ix
        ld      a,(ioStatus)
        or      a
        scf
        ret     nz
        ld      a,(ix + fileKind)
        xor     markPattern
        cp      (ix + fileMark)
        ld      a,(ix + fileKind)
        jr      nz,notOpen
        or      a
        ret
notOpen:
        ld      a,ioNotOpen
        ld      (ioStatus),a
        scf
        ret

; beginFile: In, Out: as checkFile, but in place of carry it returns to the caller's caller with HL = A = 0. Keeps BC, DE.
; 180 T.
beginFile:
        call    checkFile
        ret     nc
leaveFile:
        pop     hl
        ld      hl,0
        xor     a
        ret

; failFile: In: A = I/O result. Out: HL = A = 0. Keeps the others. 37 T.
failFile:
        ld      (ioStatus),a
        ld      hl,0
        xor     a
        ret

; callBlock: calls the BDOS function C with the current file's control block, HL as it is. Out: A, HL; IX = the file.
; Destroys the others. 144 T.
callBlock:
        ex      de,hl
        ld      hl,(currentFile)
        push    bc
        ld      bc,fileBlock
        add     hl,bc
        pop     bc
        ex      de,hl
        call    bdosCall
        ld      ix,(currentFile)
        ret

; transferBytes: In: DE = address, HL = records, C = 26h to write, 27h to read. Out: A = 0 when all were done, HL = number
; read; IX = the file. Destroys the others. 253 T.
transferBytes:
        push    hl
        push    bc
        ld      c,1Ah
        call    bdosCall
        pop     bc
        pop     hl
        jr      callBlock

; setRandom: In: DE:HL = record of the next transfer, IX = file. Destroys nothing. 86 T.
setRandom:
        ld      (ix + fileBlock + blockRandom),l
        ld      (ix + fileBlock + blockRandom + 1),h
        ld      (ix + fileBlock + blockRandom + 2),e
        ld      (ix + fileBlock + blockRandom + 3),d
        ret

; fileAssignText, fileAssignTyped, fileAssignUntyped: In: HL = file, DE = name. Destroy all. 1200 to 2100 T, 850 T
; for a device.
@fileAssignText:
        ld      a,kindText
        jr      assignFile
@fileAssignTyped:
        ld      a,kindTyped
        jr      assignFile
@fileAssignUntyped:
        ld      a,kindUntyped
assignFile:
        ld      b,a
        ld      a,(ioStatus)
        or      a
        ret     nz
        push    hl
        pop     ix
        push    bc
        ld      bc,@inputFile           ; the standard files lie one behind the other
        sbc     hl,bc
        pop     bc
        ld      a,h
        or      a
        jr      nz,_own
        ld      a,l
        cp      standardFiles
        ld      a,ioStandardFile
        jp      c,failFile
_own:
        push    de
        push    bc
        call    findOpen                ; or the list would lead in a circle when it is opened again
        jr      nz,_new
        ld      (currentFile),ix
        ld      a,(ix + fileKind)
        xor     markPattern
        cp      (ix + fileMark)
        call    z,closeCurrent
_new:
        pop     bc
        push    ix
        pop     hl
        ld      (ix + fileState),stateClosed
        pop     de
        push    de
        ld      a,b
        or      a
        call    z,deviceNumber          ; only text files can be devices
        ld      (ix + fileKind),a
        xor     markPattern
        ld      (ix + fileMark),a
        ld      (ix + fileHeld),0
        ld      (ix + fileLast),0
        pop     de
        ld      bc,fileBlock
        add     hl,bc

; parseName: In: DE = name (a string: d:name.typ), HL = target of 12 bytes: drive, name, type.
; Destroys AF, BC, DE, HL. 850 to 1510 T.
parseName:
        ld      a,(de)
        inc     de
        ld      c,a                     ; characters left
        ld      (hl),0
        cp      2
        jr      c,_name
        inc     de
        ld      a,(de)
        dec     de
        cp      ':'
        jr      nz,_name
        ld      a,(de)
        and     1Fh
        ld      (hl),a
        inc     de
        inc     de
        dec     c
        dec     c
_name:
        inc     hl
        ld      b,8
        call    _part
        ld      b,3
_part:                                  ; B characters up to a point or the end, then blanks
        ld      a,c
        or      a
        jr      z,_blank
        ld      a,(de)
        inc     de
        dec     c
        cp      '.'
        jr      z,_blank
        cp      ' ' + 1
        jr      c,_part                 ; blanks do not count
        call    @upCase
        ld      (hl),a
        inc     hl
        djnz    _part
_skip:                                  ; what does not fit
        ld      a,c
        or      a
        ret     z
        ld      a,(de)
        inc     de
        dec     c
        cp      '.'
        jr      nz,_skip
        ret
_blank:
        ld      (hl),' '
        inc     hl
        djnz    _blank
        ret

; deviceNumber: In: DE = name. Out: A = kindDevice + number, or kindText when it is no device. Keeps HL, IX;
; destroys BC, DE. 61 T; 200 to 900 T for a name with a colon in its fourth place.
deviceNumber:
        push    hl
        ld      a,(de)
        cp      4
        jr      nz,_none
        ld      hl,4
        add     hl,de
        ld      a,(hl)
        cp      ':'
        jr      nz,_none
        ld      hl,deviceNames
        ld      c,deviceFirst
_next:
        push    de
        ld      b,3
_compare:
        inc     de
        ld      a,(de)
        call    @upCase
        cp      (hl)
        jr      nz,_differs
        inc     hl
        djnz    _compare
        pop     de
        ld      a,c
        pop     hl
        ret
_differs:
        inc     hl
        djnz    _differs
        pop     de
        inc     c
        ld      a,(hl)
        or      a
        jr      nz,_next
_none:
        pop     hl
        xor     a
        ret

; fileReset, fileRewrite: In: HL = file, DE = size of a record. Destroy all. 1700 T for a text file, 1900 to 2600 T for
; the others, 500 to 1200 T more when it is open; 230 T for a device.
@fileReset:
        ld      c,fileOpen
        jr      openFile
@fileRewrite:
        ld      c,fileCreate
openFile:
        call    beginFile
        ret     m                       ; a device is always open
        push    de
        push    bc
        call    closeCurrent
        ; The control block: everything but drive and name is 0.
        ld      hl,(currentFile)
        ld      de,fileBlock + 12
        add     hl,de
        ld      bc,fileBuffer - fileBlock - 12
        xor     a
        call    @fillBytes
        pop     bc
        push    bc
        call    callBlock
        pop     bc
        pop     de
        inc     a
        jr      nz,_found
        ld      a,c
        cp      fileOpen
        ld      a,ioNotFound
        jp      z,failFile
        ld      a,ioDirectoryFull
        jp      failFile
_found:
        ; Into the list of open files.
        ld      hl,(openFiles)
        ld      (ix + fileLink),l
        ld      (ix + fileLink + 1),h
        ld      (openFiles),ix
        xor     a
        ld      (ix + fileNumber),a
        ld      (ix + fileNumber + 1),a
        ld      (ix + fileRecords),a
        ld      (ix + fileRecords + 1),a
        ld      (ix + fileBlock + blockRecord),1 ; transfers count bytes
        ld      (ix + fileBlock + blockRecord + 1),a
        or      (ix + fileKind)
        jr      nz,_records
        ld      (ix + filePlace),a
        ld      (ix + fileCount),a
        ld      a,c
        cp      fileOpen
        ld      a,stateReading
        jr      z,_state
        ld      a,stateWriting
_state:
        ld      (ix + fileState),a
        ret
_records:
        ld      (ix + fileState),stateOpen
        dec     a
        jr      nz,openUntyped
        ld      (ix + fileRecord),e
        ld      (ix + fileRecord + 1),d
        ld      a,c
        cp      fileCreate
        jp      z,writeHeader
        push    de
        call    headerAddress
        ld      c,27h
        call    transferBytes
        pop     de
        ld      hl,(fileScratch)
        ld      (ix + fileRecords),l
        ld      (ix + fileRecords + 1),h
        ld      hl,(fileScratch + 2)
        or      a
        jr      nz,_wrongSize
        sbc     hl,de
        ret     z
_wrongSize:
        call    closeCurrent
        ld      a,ioRecordSize
        jp      failFile

; The size of an untyped file is counted in blocks, a part of one being one.
openUntyped:
        ld      (ix + fileBlock + blockRecord),bufferSize
        ld      l,(ix + fileBlock + blockSize)
        ld      h,(ix + fileBlock + blockSize + 1)
        ld      e,(ix + fileBlock + blockSize + 2)
        ld      bc,bufferSize - 1
        add     hl,bc
        jr      nc,$ + 3
        inc     e
        add     hl,hl
        rl      e
        ld      (ix + fileRecords),h
        ld      (ix + fileRecords + 1),e
        ret

; headerAddress: the next transfer is the header at the file's start. In: IX = file. Out: DE = fileScratch, HL =
; its size. Keeps the others. 151 T.
headerAddress:
        ld      hl,0
        ld      d,h
        ld      e,l
        call    setRandom
        ld      de,fileScratch
        ld      hl,typedHeader
        ret

; writeHeader: a typed file's header. In: IX. Destroys all but IX. 568 T.
writeHeader:
        ld      l,(ix + fileRecords)
        ld      h,(ix + fileRecords + 1)
        ld      (fileScratch),hl
        ld      l,(ix + fileRecord)
        ld      h,(ix + fileRecord + 1)
        ld      (fileScratch + 2),hl
        call    headerAddress

; writeBytes: In: DE = address, HL = records. Out: A = 0, or I/O result ioWriteError. Destroys all but IX.
; 292 T.
writeBytes:
        ld      c,26h
        call    transferBytes
        or      a
        ret     z
        ld      a,ioWriteError
        ld      (ioStatus),a
        ret

; fileFlush: In: HL = file: what the library holds back goes to the disk. Destroys all. 250 T, 870 T when it is something.
; flushCurrent: In: IX = file: the same; destroys all but IX. 51 T, 668 T when it is something.
@fileFlush:
        call    beginFile
        ret     m
flushCurrent:
        ld      a,(ix + fileState)
        cp      stateWriting
        jr      z,flushText
        cp      stateChanged
        ret     nz
        ld      (ix + fileState),stateOpen
        jr      writeHeader

; flushText: writes the buffer of the text file IX. Destroys all but IX. 64 T when it is empty, 455 T.
flushText:
        ld      l,(ix + filePlace)
        ld      (ix + filePlace),0
        ld      h,0
        ld      a,l
        or      a
        ret     z
        push    ix
        ex      (sp),hl
        ld      de,fileBuffer
        add     hl,de
        ex      de,hl
        pop     hl
        jr      writeBytes

; fileClose: In: HL = file. Destroys all. 208 T when it is closed already, 600 to 1400 T. closeCurrent: In: IX = the file,
; no device: the same; 34 T when it is closed already. closeBlock: In: IX = the file: closes its control block, which writes the
; directory. Out: NZ when that could be done. Destroys all but IX. 180 T.
@fileClose:
        call    beginFile
        ret     m
closeCurrent:
        ld      a,(ix + fileState)
        or      a
        ret     z
        call    flushCurrent
        ld      (ix + fileState),stateClosed
        call    findOpen
        jr      nz,closeBlock
        ld      a,(hl)                  ; out of the list
        ld      (de),a
        inc     hl
        inc     de
        ld      a,(hl)
        ld      (de),a
closeBlock:
        ld      c,10h
        call    callBlock
        inc     a
        ret     nz
        ld      a,ioVanished
        jp      failFile

; findOpen: In: IX = file. Out: Z when it is in the list of open files: HL = IX, DE = the word that leads to it; otherwise NZ.
; Destroys A, BC. 91 T for the first one, 97 T for each one before it.
findOpen:
        ld      hl,openFiles
_next:
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        dec     hl
        ld      a,d
        or      e
        jr      z,_none
        push    ix
        pop     bc
        ex      de,hl
        sbc     hl,bc
        add     hl,bc
        jr      nz,_next
        ret
_none:
        inc     a
        ret

; closeAll: at the end of a program. Nothing in or out; destroys all. 35 T, and 600 to 1500 T for each open file.
closeAll:
        ld      hl,(openFiles)
        ld      a,h
        or      l
        ret     z
        push    hl
        xor     a
        ld      (ioStatus),a
        call    @fileClose
        pop     de
        ld      hl,(openFiles)
        or      a
        sbc     hl,de
        jr      nz,closeAll
        ret                             ; the variable holds something else by now

; fileErase: In: HL = file. Destroys all. 460 T, 500 to 1200 T more when it is open. eraseOrRename: In: C = the BDOS's
; function: carries it out; Out: Z when it was not done, HL = A = 0. 224 T.
@fileErase:
        call    beginFile
        jp      m,deviceFailure
        push    de
        call    closeCurrent
        pop     de
        ld      c,13h
eraseOrRename:
        call    callBlock
        inc     a
        ret     nz
        ld      a,ioNotFound
        jp      failFile

; fileRename: In: HL = file, DE = new name. Destroys all. 1500 to 1900 T, 500 to 1200 T more when it is open.
@fileRename:
        call    beginFile
        jp      m,deviceFailure
        push    de
        call    closeCurrent
        pop     de
        ; The new name stands 16 bytes behind the old one, and becomes the file's when that was found.
        ld      hl,(currentFile)
        ld      bc,fileBlock + 16
        add     hl,bc
        call    parseName
        ld      c,17h
        call    eraseOrRename
        ret     z
        ld      hl,(currentFile)
        ld      de,fileBlock + blockName
        add     hl,de
        ld      d,h
        ld      e,l
        ld      bc,16
        add     hl,bc
        ld      c,11
        ldir
        ret

deviceFailure:
        ld      a,ioOnDevice
        jp      failFile
