; Typed files: a header, then the records, transferred directly between the disk and the record's variable. Untyped files:
; blocks of 128 bytes.

; beginRecord: In, Out: as beginFile, but the file must be an open typed or untyped one. Keeps BC, DE. 216 T.
beginRecord:
        call    checkFile
        jp      c,leaveFile
        ld      a,(ix + fileState)
        cp      stateOpen
        ret     nc
        call    notOpen
        jp      leaveFile

; fileSeek: In: HL = file, DE = record. Destroys all. 355 T.
@fileSeek:
        call    beginRecord
        ld      l,(ix + fileRecords)
        ld      h,(ix + fileRecords + 1)
        or      a
        sbc     hl,de
        ld      a,ioSeekPastEnd
        jp      c,failFile
        ld      (ix + fileNumber),e
        ld      (ix + fileNumber + 1),d
        ret

; filePosition, fileSize: In: HL = file. Out: HL = the record that comes next, the number of records. Destroy all.
; 281 T.
@filePosition:
        call    beginRecord
        ld      l,(ix + fileNumber)
        ld      h,(ix + fileNumber + 1)
        ret
@fileSize:
        call    beginRecord
        ld      l,(ix + fileRecords)
        ld      h,(ix + fileRecords + 1)
        ret

; fileRead, fileWrite: In: HL = file, DE = address of the record. Destroy all. 2100 to 2340 T.
@fileRead:
        call    beginRecord
        call    recordsLeft
        ld      a,ioEndOfFile
        jp      z,failFile
        call    recordPlace
        ld      c,27h
        call    transferBytes
        or      a
        ld      a,ioEndOfFile
        jp      nz,failFile
        ld      hl,1

; advanceFile: HL records further; the file's size grows with it. In: IX. Destroys AF, DE. Keeps HL.
; 222 T.
advanceFile:
        push    hl
        ld      e,(ix + fileNumber)
        ld      d,(ix + fileNumber + 1)
        add     hl,de
        ld      (ix + fileNumber),l
        ld      (ix + fileNumber + 1),h
        ld      e,(ix + fileRecords)
        ld      d,(ix + fileRecords + 1)
        ex      de,hl
        or      a
        sbc     hl,de
        pop     hl
        ret     nc
        ld      (ix + fileRecords),e
        ld      (ix + fileRecords + 1),d
        ret

@fileWrite:
        call    beginRecord
        ld      a,(ix + fileNumber)
        and     (ix + fileNumber + 1)
        inc     a
        ld      a,ioTooLarge
        jp      z,failFile              ; the number of records has 16 bits
        ld      (ix + fileState),stateChanged
        call    recordPlace
        call    writeBytes
        ret     nz
        ld      hl,1
        jr      advanceFile

; recordsLeft: Out: HL = records up to the end, Z when there are none. Destroys F, BC. 105 T.
recordsLeft:
        ld      l,(ix + fileRecords)
        ld      h,(ix + fileRecords + 1)
        ld      c,(ix + fileNumber)
        ld      b,(ix + fileNumber + 1)
        or      a
        sbc     hl,bc
        ret

; recordPlace: the next transfer is the next record of the typed file IX. Out: HL = its size. Keeps DE; destroys AF, BC.
; 1180 to 1450 T.
recordPlace:
        push    de
        ld      c,(ix + fileRecord)
        ld      b,(ix + fileRecord + 1)
        push    bc
        ld      e,(ix + fileNumber)
        ld      d,(ix + fileNumber + 1)
        call    multiplyWords
        ld      bc,typedHeader
        add     hl,bc
        jr      nc,$ + 3
        inc     de
        call    setRandom
        pop     hl
        pop     de
        ret

; multiplyWords: BC * DE -> DE:HL, unsigned. Destroys AF. 900 to 1180 T.
multiplyWords:
        ld      hl,0
        ld      a,16
_next:
        add     hl,hl
        rl      e
        rl      d
        jr      nc,_bit
        add     hl,bc
        jr      nc,_bit
        inc     de
_bit:
        dec     a
        jr      nz,_next
        ret

; fileBlockRead, fileBlockWrite: In: HL = file, DE = address, BC = blocks. Out: HL = blocks done. Destroy all.
; 1050 T; 1400 T for a read behind which nothing is left, and 21 T a byte that is filled. transferBlocks: In: HL = blocks,
; DE = address, A = function, IX = file. Out: HL = blocks done. Destroys all but IX. 789 T; 23 T for no block.
@fileBlockRead:
        ld      a,ioEndOfFile
        ld      (blockFailure),a
        call    beginRecord
        push    bc
        call    recordsLeft
        pop     bc
        or      a
        sbc     hl,bc
        add     hl,bc
        jr      c,_rest                 ; no more than there are
        ld      h,b
        ld      l,c
_rest:
        ld      a,27h
        push    de
        call    transferBlocks
        pop     de
        ; A file may end inside its last block. The rest becomes ^Z, so that a text that is copied by blocks ends where it did.
        ld      b,h
        ld      c,l
        push    bc
        call    recordsLeft
        pop     hl
        ret     nz
        ld      a,h
        or      l
        ret     z
        ld      a,(ix + fileBlock + blockSize)
        and     bufferSize - 1
        ret     z
        push    hl
        dec     hl
        ld      b,7
_block:
        add     hl,hl
        djnz    _block
        add     hl,de
        ld      c,a                     ; B = 0
        add     hl,bc
        neg
        add     a,bufferSize
        ld      c,a
        ld      a,ctrlZ
        call    @fillBytes
        pop     hl
        ret
@fileBlockWrite:
        ld      a,ioWriteError
        ld      (blockFailure),a
        call    beginRecord
        ld      h,b
        ld      l,c
        ld      a,26h
transferBlocks:                         ; HL blocks, A = function
        ld      c,a
        ld      a,h
        or      l
        ret     z
        push    hl
        push    de
        ld      l,(ix + fileNumber)
        ld      h,(ix + fileNumber + 1)
        ld      de,0
        call    setRandom
        pop     de
        pop     hl
        push    hl
        push    bc
        call    transferBytes
        pop     bc
        pop     de
        bit     0,c
        jr      nz,_done                ; reading: HL blocks
        ex      de,hl
        or      a
        jr      z,_done
        ld      hl,0
_done:
        jp      advanceFile

; fileBlockCheck: In: HL = blocks done, DE = blocks wanted: an I/O result when they differ. Destroys AF, HL.
; 31 T; 82 T when they do.
@fileBlockCheck:
        or      a
        sbc     hl,de
        ret     z
        ld      a,(ioStatus)
        or      a
        ret     nz
        ld      a,(blockFailure)
        ld      (ioStatus),a
        ret
