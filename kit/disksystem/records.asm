; The functions that read and write records.

recordBytes     equ 128
staleByte       equ 0E5h        ; what the bytes hold that a write passes over; function 28h and 26h with HL = 0: 0

; 14: In: DE = block. Reads the next 128 bytes to the transfer address. 15: writes them. Out: A = 0, or 1 at the file's end
; or when the disk is full.
functionSequentialRead:
        xor     a
        jr      sequentialAccess
functionSequentialWrite:
        ld      a,1
sequentialAccess:
        call    beginTransfer
        jp      nz,transferFails
        call    sequentialRecord
        push    hl
        push    de
        call    transferRecord
        pop     de
        pop     hl
        jp      nz,transferFails
        inc     hl
        ld      a,h
        or      l
        jr      nz,_set
        inc     de
_set:
        call    setSequential
        jr      transferWorks

; 21: In: DE = block. Reads the 128 bytes of the random record. 22, 28: write them; 28 puts zeros where it passes over bytes.
; Out: as 14.
functionRandomRead:
        xor     a
        jr      randomRecord
functionRandomWriteZero:
        ld      a,1
        call    beginTransfer
        ld      a,0
        jr      randomFilled
functionRandomWrite:
        ld      a,1
randomRecord:
        call    beginTransfer
        ld      a,staleByte
randomFilled:
        jr      nz,transferFails
        ld      (filler),a
        ld      hl,(fcbRandom)
        ld      a,(fcbRandom + 2)
        ld      e,a
        ld      d,0
        push    hl
        push    de
        call    setSequential
        pop     de
        pop     hl
        call    transferRecord
        jr      nz,transferFails

; transferWorks, transferFails: the ends of a record's function.
transferWorks:
        call    giveBlock
        xor     a
        ret
transferFails:
        call    giveBlock
        ld      a,1
        ret

; 24: In: DE = block. The random record becomes the one that a sequential access would take.
functionSetRandom:
        call    takeBlock
        call    sequentialRecord
        ld      (fcbRandom),hl
        ld      a,e
        ld      (fcbRandom + 2),a
        call    giveBlockRandom
        xor     a
        ret

; sequentialRecord: Out: DEHL = record of the next sequential access. Changes AF.
sequentialRecord:
        ld      hl,(fcbExtent)
        ld      a,(fcbRecord)
        add     a,a
        ld      e,h
        ld      d,0
        ld      h,l
        ld      l,a                     ; DEHL = twice the record
        srl     e
        rr      h
        rr      l
        ret

; setSequential: In: DEHL = record. Changes AF, HL, E.
setSequential:
        ld      a,l
        and     127
        ld      (fcbRecord),a
        add     hl,hl
        rl      e
        ld      l,h
        ld      h,e
        ld      (fcbExtent),hl
        ret

; 26: In: DE = block, HL = records of its record size. Writes them from the random record on; HL = 0 makes the file end there.
; 27: reads. Out: A = 0, or 1 when not all were there or the disk is full; HL = records read. The random record goes on.
functionBlockRead:
        xor     a
        jr      blockAccess
functionBlockWrite:
        ld      a,1
blockAccess:
        call    beginTransfer
        jr      nz,_none
        ld      hl,(fcbRecordSize)
        ld      a,h
        or      l
        jr      z,_none
        ld      (recordSize),hl
        ld      hl,(callHl)
        ld      (recordCount),hl
        ld      a,h
        or      l
        jr      nz,_some
        ld      a,(fileWrites)
        or      a
        jr      z,_nothing
        call    setLength
        ld      a,0
        jr      nc,_giveLength
        inc     a
_giveLength:
        ld      hl,0
        jr      _end
_some:
        call    blockRecord
        push    hl
        push    de
        call    transferRecords         ; BC = records done
        pop     de
        pop     hl
        add     hl,bc
        jr      nc,_set
        inc     de
_set:
        ld      (fcbRandom),hl
        ld      a,e
        ld      (fcbRandom + 2),a
        call    hasFourBytes
        jr      nc,_three
        ld      a,d
        ld      (fcbRandom + 3),a
_three:
        ld      hl,(callHl)
        or      a
        sbc     hl,bc
        ld      h,b
        ld      l,c
        ld      a,0
        jr      z,_end
        inc     a
_end:
        push    hl
        push    af
        call    hasFourBytes
        jr      nc,_giveThree
        call    giveBlockAll
        jr      _given
_giveThree:
        call    giveBlockRandom
_given:
        pop     af
        pop     hl
        ld      b,h
        jp      giveAll
_none:
        ld      hl,0
        ld      a,1
        ld      b,h
        jp      giveAll
_nothing:
        ld      hl,0
        xor     a
        ld      b,h
        jp      giveAll

; hasFourBytes: Out: carry when the random record has four bytes: a file can have more than 16 million records of that size.
; Changes A.
hasFourBytes:
        ld      a,(fcbRecordSize + 1)
        or      a
        ret     nz
        ld      a,(fcbRecordSize)
        cp      64
        ret

; blockRecord: Out: DEHL = random record of a block access. Changes AF.
blockRecord:
        ld      hl,(fcbRandom)
        ld      de,(fcbRandom + 2)
        call    hasFourBytes
        ret     c
        ld      d,0
        ret

; beginTransfer: In: A = 0 reading, 1 writing. Takes the caller's block. Out: Z when it is one of an open file, whose drive is
; in place; for a device the function ends here. filler = staleByte. Changes all.
beginTransfer:
        ld      (fileWrites),a
        ld      a,staleByte
        ld      (filler),a
        call    takeOpen
        ret     nc
        ld      (fcbDevice),a
        xor     a                       ; Z: the record functions find the device again
        ret

; transferRecord: In: DEHL = record of 128 bytes. Out: Z when it was moved. Changes all.
transferRecord:
        ld      bc,recordBytes
        ld      (recordSize),bc
        ld      bc,1
        ld      (recordCount),bc
        call    transferRecords
        dec     c
        ret

; transferRecords: In: DEHL = first record, recordSize, recordCount, fileWrites, dma. Out: BC = records that were moved: all or
; none when writing; when reading, a part of one at the file's end is filled up with zeros and counts. Changes all.
transferRecords:
        ld      bc,(recordSize)
        call    multiply
        jr      c,_none
        ld      (filePlace),hl
        ld      (filePlace + 2),de
        ld      hl,(recordCount)
        ld      de,0
        ld      bc,(recordSize)
        call    multiply
        ; DEHL = bytes wanted: only what the memory has room for
        jr      c,_tooMany
        ld      a,d
        or      e
        jr      nz,_tooMany
        ld      (bytesWanted),hl
        call    fitsMemory
        jr      nc,_wanted
_tooMany:
        ld      a,(fileWrites)
        or      a
        jr      nz,_none
        call    roomForRecords
        ld      (bytesWanted),hl
_wanted:
        ld      a,(fcbDevice)
        cp      devicePrn
        jp      nc,deviceTransfer
        ld      a,(fileWrites)
        or      a
        jr      nz,writeRecords
        call    limitToFile
        jr      c,_none
        call    transferFile
        jp      recordsRead
_none:
        ld      bc,0
        ret

; writeRecords: as transferRecords, to a disk file.
writeRecords:
        call    mayWrite
        jr      c,_none
        ; the end of the file afterwards, and the clusters for it
        ld      hl,(filePlace)
        ld      de,(filePlace + 2)
        ld      bc,(bytesWanted)
        add     hl,bc
        jr      nc,_end
        inc     de
        ld      a,d
        or      e
        jr      z,_none
_end:
        call    prepareEnd
        jr      c,_none
        ; what lies between the file's old end and the first byte
        ld      hl,(filePlace)
        push    hl
        ld      de,(filePlace + 2)
        push    de
        call    fillGap
        pop     hl
        ld      (filePlace + 2),hl
        pop     hl
        ld      (filePlace),hl
        jr      c,_none
        call    transferFile
        jr      c,_none
        call    noteChanged
        ld      bc,(recordCount)
        ret
_none:
        ld      bc,0
        ret

; noteChanged: the file has been written: a close has work to do. Changes A.
noteChanged:
        ld      a,(drive)
        ld      (fcbDevice),a
        ret

; prepareEnd: In: DEHL = size that the file is to have at least. Gives it the clusters. Out: carry when the disk is full or on
; an error. Changes all.
prepareEnd:
        call    clustersOf
        ld      a,b
        and     c
        inc     a
        scf
        ret     z
        ld      a,b
        or      c
        ret     z
        jp      extendTo

; limitToFile: In: filePlace, bytesWanted. Out: bytesWanted = at most what the file holds from there; carry when that is
; nothing. Changes AF, BC, DE, HL.
limitToFile:
        ld      hl,(fcbFileSize)
        ld      de,(filePlace)
        or      a
        sbc     hl,de
        ex      de,hl
        ld      hl,(fcbFileSize + 2)
        ld      bc,(filePlace + 2)
        sbc     hl,bc
        ret     c
        ld      a,h
        or      l
        ret     nz                      ; 64 kB and more are left
        or      d
        or      e
        scf
        ret     z
        ld      hl,(bytesWanted)
        sbc     hl,de
        ccf
        jr      nc,_less
        jr      nz,_cut
_less:
        or      a
        ret
_cut:
        ld      (bytesWanted),de
        or      a
        ret

; fitsMemory: In: dma, HL = bytes. Out: carry when they would reach beyond the memory's end, or, when reading, into the system.
; Changes AF, DE, HL.
fitsMemory:
        ex      de,hl
        call    roomAtDma
        or      a
        sbc     hl,de
        ret

; roomAtDma: Out: HL = bytes from dma to the system or, above its beginning or when writing to a file, to the memory's end;
; 0FFFFh at most. Changes AF, BC.
roomAtDma:
        ld      bc,(dma)
        ld      hl,tpaTop - 6
        ld      a,(fileWrites)
        or      a
        jr      nz,_all
        or      a
        sbc     hl,bc
        ret     nc
_all:
        ld      hl,0
        or      a
        sbc     hl,bc
        ret     nz
        dec     hl
        ret

; roomForRecords: Out: HL = bytes of as many whole records as there is room for, recordCount or less. Changes AF, BC, DE.
roomForRecords:
        call    roomAtDma
        ld      de,(recordSize)
        ld      bc,0                    ; bytes
_record:
        or      a
        sbc     hl,de
        jr      c,_end
        push    hl
        ld      h,b
        ld      l,c
        add     hl,de
        ld      b,h
        ld      c,l
        pop     hl
        jr      _record
_end:
        ld      h,b
        ld      l,c
        ret

; recordsRead: after transferFile. Out: BC = records, the last one filled up with zeros. Changes all.
recordsRead:
        ld      hl,(bytesWanted)
        ld      de,(bytesLeft)
        or      a
        sbc     hl,de                   ; bytes read
        ld      (bytesDone),hl
        ld      de,(recordSize)
        ld      a,d
        or      a
        jr      nz,_divide
        ld      a,e
        dec     a
        jr      nz,_divide
        ld      b,h                     ; records of one byte
        ld      c,l
        ret
_divide:
        ld      bc,0
_record:
        ld      a,h
        or      l
        ret     z
        inc     bc
        or      a
        sbc     hl,de
        jr      nc,_record
        ; -HL bytes are missing in the last one
        ld      a,h
        cpl
        ld      h,a
        ld      a,l
        cpl
        ld      l,a
        inc     hl
        ex      de,hl
        ld      hl,(memoryPlace)
_zero:
        push    bc
        ld      b,0
        call    pokeUser
        pop     bc
        inc     hl
        dec     de
        ld      a,d
        or      e
        jr      nz,_zero
        ret

; multiply: In: DEHL, BC. Out: DEHL = product, carry when it has more than 32 bits. Changes A, BC.
multiply:
        ld      (multiplicand),hl
        ld      (multiplicand + 2),de
        ld      hl,0
        ld      d,h
        ld      e,l
        ld      a,16
_bit:
        add     hl,hl
        rl      e
        rl      d
        ret     c
        sla     c
        rl      b
        jr      nc,_next
        push    bc
        ld      bc,(multiplicand)
        add     hl,bc
        ex      de,hl
        ld      bc,(multiplicand + 2)
        adc     hl,bc
        ex      de,hl
        pop     bc
        ret     c
_next:
        dec     a
        jr      nz,_bit
        ret
