; Bytes between a file and the caller's memory.

; transferFile: In: the copy of the block, filePlace = first byte in the file, bytesWanted, dma, fileWrites. Out: bytesWanted -
; bytesLeft = bytes done; carry on an error. When writing, the clusters are there already. Changes all.
transferFile:
        ld      hl,(bytesWanted)
        ld      (bytesLeft),hl
        ld      hl,(dma)
        ld      (memoryPlace),hl
_next:
        ld      hl,(bytesLeft)
        ld      a,h
        or      l
        ret     z
        call    sectorOfPlace           ; DE = sector
        ret     c
        call    isWholeSector
        jr      c,_part
        call    transferRun
        jr      _done
_part:
        call    transferPart
_done:
        ret     c
        call    advance
        jr      _next

; sectorOfPlace: Out: DE = sector of the disk with filePlace, fileIndex = its number in its cluster; carry when the file has
; no cluster there or on an error. Changes all.
sectorOfPlace:
        ld      hl,(filePlace + 1)
        ld      a,(filePlace + 3)
        rra
        rr      h
        rr      l                       ; place / 512
        ld      a,(dpbClusterMask)
        and     l
        ld      (fileIndex),a
        ld      a,(dpbClusterShift)
        ld      b,a
        jr      _shifted
_shift:
        srl     h
        rr      l
_shifted:
        djnz    _shift
        call    clusterAt
        ret     c
        jp      firstSector

; firstSector: In: HL = cluster, fileIndex. Out: DE = sector of the disk. NC. Changes AF, B, HL.
firstSector:
        dec     hl
        dec     hl
        ld      a,(dpbClusterShift)
        ld      b,a
        jr      _shifted
_shift:
        add     hl,hl
_shifted:
        djnz    _shift
        ld      a,(fileIndex)
        ld      e,a
        ld      d,0
        add     hl,de
        ld      de,(dpbFirstData)
        add     hl,de
        ex      de,hl
        or      a
        ret

; isWholeSector: Out: NC when a whole sector is wanted at a sector's beginning and can go straight to memory. Keeps DE;
; changes AF, HL.
isWholeSector:
        ld      a,(filePlace)
        or      a
        jr      nz,_no
        ld      a,(filePlace + 1)
        rra
        ret     c
        ld      a,(bytesLeft + 1)
        cp      2
        ret     c
        ld      a,(sharesPrimary)
        or      a
        ret     z
        ld      hl,(memoryPlace)        ; page 1 of such a machine changes too slowly for the disk
        jp      isHidden
_no:
        scf
        ret

; transferRun: In: DE = sector. Moves it and those that follow it on the disk and in the file, as many as are wanted. Out:
; bytesDone; carry on an error. Changes all.
transferRun:
        push    de
        call    lengthOfRun             ; runSectors
        pop     de
        ret     c
        push    de
        call    settleRun
        pop     de
        ret     c
        ld      a,(runSectors)
        ld      b,a
        ld      hl,(memoryPlace)
        ld      a,(fileWrites)
        or      a
        push    bc
        jr      nz,_write
        call    readSectors
        jr      _moved
_write:
        call    writeSectors
_moved:
        pop     bc
        ret     c
        ld      h,b
        ld      l,0
        add     hl,hl
        ld      (bytesDone),hl
        ret

; lengthOfRun: In: fileIndex; chainCluster = the cluster of the place. Out: runSectors = sectors that are wanted and lie one
; after the other; carry on an error. Changes all.
lengthOfRun:
        ld      a,(sharesPrimary)
        or      a
        ld      c,1                     ; each one is checked for page 1
        jr      nz,runUpTo
        ld      a,(bytesLeft + 1)
        srl     a
        ld      c,a
; runUpTo: the same for C sectors that are wanted.
runUpTo:
        ld      a,(dpbClusterMask)
        inc     a
        ld      hl,fileIndex
        sub     (hl)
        ld      b,a                     ; B = in this cluster
        ld      hl,(chainCluster)
_cluster:
        ld      a,b
        cp      c
        jr      nc,_enough
        push    bc
        push    hl
        call    getFat
        pop     de
        pop     bc
        ret     c
        inc     de
        or      a
        sbc     hl,de
        add     hl,de
        jr      nz,_end
        push    de
        call    isCluster
        pop     de
        jr      c,_end
        ld      a,(dpbClusterMask)
        inc     a
        add     a,b
        ld      b,a
        jr      _cluster
_enough:
        ld      b,c
_end:
        ld      a,b
        ld      (runSectors),a
        or      a
        ret

; settleRun: In: DE = first sector, runSectors. Buffers of these sectors: what waits in them is written before they are read,
; and they are forgotten when they are overwritten. Out: carry on an error. Changes all.
settleRun:
        ld      a,(fileWrites)
        or      a
        ld      a,kindData
        jp      z,flushUpTo
        ld      hl,(runSectors)
        ld      h,0
        add     hl,de
        ld      b,h
        ld      c,l                     ; BC = sector after the last
        ld      hl,bufferHeads
        ld      a,bufferCount
_head:
        push    af
        push    hl
        ld      a,(drive)
        cp      (hl)
        jr      nz,_next
        inc     hl
        ld      a,(hl)
        inc     hl
        ld      h,(hl)
        ld      l,a
        or      a
        sbc     hl,de
        jr      c,_next
        add     hl,de
        sbc     hl,bc
        jr      nc,_next
        pop     hl
        push    hl
        ld      (hl),0FFh
        inc     hl
        inc     hl
        inc     hl
        inc     hl
        ld      (hl),0
_next:
        pop     hl
        ld      a,l
        add     a,headSize
        ld      l,a
        jr      nc,_samePage
        inc     h
_samePage:
        pop     af
        dec     a
        jr      nz,_head
        or      a
        ret

; transferPart: In: DE = sector. Moves the bytes of it that are wanted, by way of a buffer. Out: bytesDone; carry on an error.
; Changes all.
transferPart:
        call    isNewSector
        ld      a,kindData
        jr      c,_fresh
        call    fetchAhead
        jr      _there
_fresh:
        call    freshSector
_there:
        ret     c
        ; HL = buffer: from the place in it, at most to its end
        ld      de,(filePlace)
        ld      a,d
        and     1
        ld      d,a
        add     hl,de
        push    hl
        ld      hl,bufferBytes
        or      a
        sbc     hl,de
        ld      de,(bytesLeft)
        sbc     hl,de
        jr      nc,_fits
        add     hl,de
        ex      de,hl
_fits:
        ld      (bytesDone),de
        ld      b,d
        ld      c,e
        pop     hl
        ld      de,(memoryPlace)
        ld      a,(fileWrites)
        or      a
        jr      z,_copy
        call    markDirty
        ex      de,hl
_copy:
        call    copyUser
        or      a
        ret

; fetchAhead: as fetchSector, for data of the file at filePlace. When it is read from the disk for a program that reads, the
; sectors after it come into buffers that hold nothing of more use: they pass the head now, or a revolution later.
sectorsAhead    equ 3
fetchAhead:
        push    de
        call    findHead
        pop     de
        ld      a,kindData
        jp      z,fetchSector
        ld      a,(fileWrites)
        or      a
        ld      a,kindData
        jp      nz,fetchSector
        ld      (aheadSector),de
        call    sectorsToEnd            ; C
        call    runUpTo
        ret     c
        ; buffers for all of them before the first one is read: there is no time in between
        ld      hl,(aheadSector)
        xor     a
        ld      (aheadCount),a
_claim:
        push    hl
        ex      de,hl
        ld      a,kindData
        call    claimHead
        pop     hl
        jr      c,_read
        ld      a,0FFh                  ; it holds nothing yet
        ld      (bufferHeads),a
        ld      a,(aheadCount)
        inc     a
        ld      (aheadCount),a
        ld      b,a
        ld      a,(runSectors)
        cp      b
        jr      z,_read
        ld      a,(bufferHeads + (bufferCount - 1) * headSize + headDirty)
        or      a
        jr      nz,_read
        ld      a,(bufferHeads + (bufferCount - 1) * headSize + headKind)
        cp      kindFat
        jr      z,_read
        inc     hl
        ; not where one of them is there already
        push    hl
        ex      de,hl
        call    findHead
        pop     hl
        jr      nz,_claim
_read:
        ; the heads lie in front, the last sector's first
        ld      a,(aheadCount)
        or      a
        scf
        ret     z
        ld      b,a
        ld      hl,bufferHeads - headSize
        ld      de,headSize
_head:
        add     hl,de
        djnz    _head
        ld      de,(aheadSector)
        push    hl
        push    de
        call    addressOfHead
        ld      b,1
        call    readSectors
_keep:
        pop     de
        pop     hl
        jr      c,_end
        ld      a,(drive)
        ld      (hl),a
        ld      a,(aheadCount)
        dec     a
        ld      (aheadCount),a
        jr      z,_end
        inc     de
        ld      bc,-headSize
        add     hl,bc
        push    hl
        push    de
        call    addressOfHead
        ld      b,1
        call    runTransfer
        jr      _keep
_end:
        ; an error of the first one has been put before the user already: it must not be read again
        ld      de,(aheadSector)
        push    af
        call    findHead
        jr      nz,_failed
        pop     af
        call    useHead
        or      a
        ret
_failed:
        pop     af
        scf
        ret

; addressOfHead: In: HL = head. Out: HL = its buffer. Changes BC.
addressOfHead:
        ld      bc,headPage
        add     hl,bc
        ld      h,(hl)
        ld      l,low firstBuffer
        ret

; sectorsToEnd: Out: C = sectors of the file from filePlace on, at most sectorsAhead. Changes AF, DE, HL, B.
sectorsToEnd:
        ld      hl,(filePlace + 1)
        ld      a,(filePlace + 3)
        rra
        rr      h
        rr      l
        push    hl
        ld      hl,(fcbFileSize)
        ld      de,1
        or      a
        sbc     hl,de
        ld      a,(fcbFileSize + 2)
        sbc     a,0
        ld      l,h
        ld      h,a
        ld      a,(fcbFileSize + 3)
        sbc     a,0
        rra
        rr      h
        rr      l                       ; number of the last sector
        pop     de
        or      a
        sbc     hl,de
        ld      c,sectorsAhead
        ld      a,h
        or      a
        ret     nz
        ld      a,l
        cp      c
        ret     nc
        inc     a
        ld      c,a
        ret

; isNewSector: In: DE = sector. Out: carry when it is written from its beginning and no byte of it belongs to the file yet.
; Keeps DE; changes AF, BC, HL.
isNewSector:
        ld      a,(fileWrites)
        or      a
        ret     z
        ld      hl,(filePlace)
        ld      a,h
        and     1
        or      l
        ret     nz
        ld      bc,(fcbFileSize)
        sbc     hl,bc
        ld      hl,(filePlace + 2)
        ld      bc,(fcbFileSize + 2)
        sbc     hl,bc
        ccf
        ret

; advance: In: bytesDone. Moves filePlace, memoryPlace and bytesLeft, and the file's size after a write. Changes all.
advance:
        ld      bc,(bytesDone)
        ld      hl,(memoryPlace)
        add     hl,bc
        ld      (memoryPlace),hl
        ld      hl,(bytesLeft)
        or      a
        sbc     hl,bc
        ld      (bytesLeft),hl
        ld      hl,(filePlace)
        add     hl,bc
        ld      (filePlace),hl
        jr      nc,_size
        ld      hl,(filePlace + 2)
        inc     hl
        ld      (filePlace + 2),hl
_size:
        ld      a,(fileWrites)
        or      a
        ret     z

; growSize: the file's size is at least filePlace. Changes AF, BC, DE, HL.
growSize:
        ld      hl,(fcbFileSize)
        ld      de,(filePlace)
        or      a
        sbc     hl,de
        ld      hl,(fcbFileSize + 2)
        ld      bc,(filePlace + 2)
        sbc     hl,bc
        ret     nc
        ld      (fcbFileSize),de
        ld      (fcbFileSize + 2),bc
        ret

; fillGap: the bytes from the file's end to DEHL become the filler; the clusters are there already. Out: carry on an error.
; Changes all.
fillGap:
        ld      (gapEnd),hl
        ld      (gapEnd + 2),de
        ld      hl,(fcbFileSize)
        ld      (filePlace),hl
        ld      hl,(fcbFileSize + 2)
        ld      (filePlace + 2),hl
_sector:
        ; bytes to the gap's end, at most to the sector's
        ld      hl,(gapEnd)
        ld      de,(filePlace)
        or      a
        sbc     hl,de
        ex      de,hl
        ld      hl,(gapEnd + 2)
        ld      bc,(filePlace + 2)
        sbc     hl,bc
        ccf
        ret     nc                      ; there is no gap
        ld      a,h
        or      l
        or      d
        or      e
        ret     z
        ld      a,h
        or      l
        jr      nz,_whole
        ld      a,d
        cp      2
        jr      c,_short
_whole:
        ld      de,bufferBytes
_short:
        ld      hl,(filePlace)
        ld      a,h
        and     1
        ld      h,a
        push    hl
        add     hl,de
        ld      bc,bufferBytes
        or      a
        sbc     hl,bc
        jr      c,_inSector
        jr      z,_inSector
        ex      de,hl
        sbc     hl,de
        ex      de,hl                   ; less what lies after the sector
_inSector:
        ld      (bytesDone),de
        call    sectorOfPlace
        pop     hl
        ret     c
        push    hl
        call    isNewSector
        ld      a,kindData
        jr      c,_fresh
        call    fetchSector
        jr      _there
_fresh:
        call    freshSector
_there:
        pop     de
        ret     c
        call    markDirty
        add     hl,de
        ld      bc,(bytesDone)
        ld      a,(filler)
        call    fillBytes
        call    _advance
        jr      _sector
_advance:
        ld      hl,(bytesDone)
        ex      de,hl
        ld      hl,(filePlace)
        add     hl,de
        ld      (filePlace),hl
        jp      nc,growSize
        ld      hl,(filePlace + 2)
        inc     hl
        ld      (filePlace + 2),hl
        jp      growSize

; fillBytes: In: HL = address, BC = number, at least 1, A = byte. Changes AF, BC, DE, HL.
fillBytes:
        ld      (hl),a
        dec     bc
        ld      a,b
        or      c
        ret     z
        ld      d,h
        ld      e,l
        inc     de
        ldir
        ret
