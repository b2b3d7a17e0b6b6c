; Sector buffers: the latest used sectors of all drives. What a program writes waits here; data goes to the disk before the
; allocation table that refers to it, and that before the directory.

; emptyBuffers: forgets all sectors, written or not. Changes all.
emptyBuffers:
        call    trustNone
        ld      hl,bufferHeads
        ld      a,high firstBuffer
        ld      b,bufferCount
_head:
        push    hl
        ld      (hl),0FFh
        ld      de,headDirty
        add     hl,de
        ld      (hl),0
        inc     hl
        ld      (hl),a
        add     a,high bufferBytes
        pop     hl
        ld      de,headSize
        add     hl,de
        djnz    _head
        ret

; forgetDrive: In: A = drive. Forgets its sectors, written or not. Changes BC, DE, HL.
forgetDrive:
        push    af
        call    trustNone
        pop     af
        ld      hl,bufferHeads
        ld      b,bufferCount
_head:
        cp      (hl)
        jr      nz,_next
        ld      (hl),0FFh
        push    hl
        ld      de,headDirty
        add     hl,de
        ld      (hl),0
        pop     hl
_next:
        ld      de,headSize
        add     hl,de
        djnz    _head
        ret

; findHead: In: drive, DE = sector. Out: Z and HL = its head, or NZ. Changes AF, BC.
findHead:
        ld      hl,bufferHeads
        ld      b,bufferCount
_head:
        ld      a,(drive)
        cp      (hl)
        jr      nz,_next
        inc     hl
        ld      a,(hl)
        inc     hl
        cp      e
        jr      nz,_nextButTwo
        ld      a,(hl)
        cp      d
        jr      nz,_nextButTwo
        dec     hl
        dec     hl
        ret
_nextButTwo:
        dec     hl
        dec     hl
_next:
        ld      a,l
        add     a,headSize
        ld      l,a
        jr      nc,_samePage
        inc     h
_samePage:
        djnz    _head
        inc     b                       ; NZ
        ret

; useHead: In: HL = head. Moves it to the front. Out: HL = address of its buffer. Changes AF, BC, DE.
useHead:
        ld      de,bufferHeads
        or      a
        sbc     hl,de
        jr      z,_inFront
        ld      b,h
        ld      c,l                     ; bytes of the heads before it
        add     hl,de
        ; the head to the stack, those before it up by one, the head to the front
        push    bc
        ld      c,(hl)
        inc     hl
        ld      b,(hl)
        inc     hl
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        inc     hl
        ld      a,(hl)
        inc     hl
        ld      h,(hl)
        ld      l,a
        ld      (headMoved),bc
        ld      (headMoved + 2),de
        ld      (headMoved + 4),hl
        pop     bc
        ld      hl,bufferHeads - 1
        add     hl,bc
        push    hl
        ld      de,headSize
        add     hl,de
        ex      de,hl
        pop     hl
        lddr
        ld      hl,headMoved
        ld      de,bufferHeads
        ld      bc,headSize
        ldir
_inFront:
        ld      a,(bufferHeads + headPage)
        ld      h,a
        ld      l,low firstBuffer
        ret

; fetchSector: In: drive, DE = sector, A = kind. Out: HL = its buffer, whose head is the first one; carry on an error. Changes
; all.
fetchSector:
        call    claimHead
        ret     c
        ret     z                       ; it was there
        push    hl
        ld      b,1
        call    readSectors
        pop     hl
        ret     nc
        ld      a,0FFh
        ld      (bufferHeads),a
        scf
        ret

; freshSector: as fetchSector, for a sector whose bytes on the disk mean nothing: filler in all bytes.
freshSector:
        call    claimHead
        ret     c
        push    hl
        ld      d,h
        ld      e,l
        inc     de
        ld      a,(filler)
        ld      (hl),a
        ld      bc,bufferBytes - 1
        ldir
        pop     hl
        or      a
        ret

; claimHead: In: drive, DE = sector, A = kind. Out: HL = buffer for it in front, DE = sector; Z when it holds the sector
; already; carry when what was there could not be written. Changes AF, BC.
claimHead:
        push    af
        push    de
        call    findHead
        jr      nz,_none
        call    useHead
        pop     de
        pop     af
        cp      a                       ; Z, NC
        ret
_none:
        ld      a,(bufferHeads + (bufferCount - 1) * headSize + headDirty)
        or      a
        jr      z,_clean
        ld      a,(bufferHeads + (bufferCount - 1) * headSize + headKind)
        call    flushUpTo
        jr      c,_failed
_clean:
        ld      hl,bufferHeads + (bufferCount - 1) * headSize
        call    useHead
        pop     de
        pop     bc                      ; B = kind
        ld      a,(drive)
        ld      (bufferHeads + headDrive),a
        ld      (bufferHeads + headSector),de
        ld      a,b
        ld      (bufferHeads + headKind),a
        or      a                       ; NZ, NC
        ret
_failed:
        pop     de
        pop     bc
        scf
        ret

; markDirty: the sector fetched last is to be written. Changes A.
markDirty:
        ld      a,1
        ld      (bufferHeads + headDirty),a
        ret

; flushAll: writes all that waits, of all drives. Out: carry on an error; what could not be written is forgotten. Changes all.
flushAll:
        ld      a,kindDirectory

; flushUpTo: as flushAll, for sectors of the kinds up to A.
flushUpTo:
        ld      b,a
        ld      a,(drive)
        push    af
        ld      c,kindData - 1
        xor     a
        ld      (flushFailed),a
_kind:
        inc     c
        push    bc
        call    flushKind
        pop     bc
        ld      a,c
        cp      b
        jr      nz,_kind
        pop     af
        call    switchDrive
        ld      a,(flushFailed)
        add     a,0FFh
        ret

; flushKind: In: C = kind. Writes its sectors, the lowest first. Changes all.
flushKind:
        push    bc
        call    lowestDirty
        pop     bc
        ret     z
        push    bc
        ld      a,(hl)
        push    hl
        call    switchDrive
        pop     hl
        push    hl
        call    writeBuffer
        pop     hl
        ld      bc,headDirty
        add     hl,bc
        ld      (hl),0
        jr      nc,_written
        ld      bc,headDrive - headDirty
        add     hl,bc
        ld      (hl),0FFh
        ld      a,1
        ld      (flushFailed),a
_written:
        pop     bc
        jr      flushKind

; lowestDirty: In: C = kind. Out: HL = head of the lowest sector of that kind that is to be written; Z when there is none.
; Changes all.
lowestDirty:
        ld      de,0FFFFh
        ld      (lowestHead),de
        ld      hl,bufferHeads
        ld      b,bufferCount
_head:
        push    hl
        inc     hl
        inc     hl
        inc     hl
        ld      a,(hl)
        cp      c
        jr      nz,_next
        inc     hl
        ld      a,(hl)
        or      a
        jr      z,_next
        dec     hl
        dec     hl
        ld      a,(hl)                  ; high byte of the sector
        cp      d
        jr      c,_lower
        jr      nz,_next
        dec     hl
        ld      a,(hl)
        inc     hl
        cp      e
        jr      nc,_next
_lower:
        ld      d,(hl)
        dec     hl
        ld      e,(hl)
        dec     hl
        ld      (lowestHead),hl
_next:
        pop     hl
        ld      a,l
        add     a,headSize
        ld      l,a
        jr      nc,_samePage
        inc     h
_samePage:
        djnz    _head
        ld      hl,(lowestHead)
        ld      a,h
        and     l
        inc     a
        ret

; writeBuffer: In: HL = head, the drive's record in place. Writes its sector; one of the allocation table to every copy of it.
; Out: carry on an error, or when another disk lies in the drive. Changes all.
writeBuffer:
        push    hl
        call    isStillThere
        pop     hl
        ret     c
        inc     hl
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        inc     hl
        ld      a,(hl)
        inc     hl
        inc     hl
        ld      h,(hl)
        ld      l,low firstBuffer
        ld      b,1
        cp      kindData
        jp      z,writeSectors
        push    af
        call    noteSum
        pop     af
        cp      kindFat
        jp      nz,writeSectors
        ld      a,(dpbFats)
        ld      c,a
_copy:
        push    bc
        push    de
        push    hl
        ld      b,1
        call    writeSectors
        pop     hl
        pop     de
        pop     bc
        ret     c
        ld      a,(dpbFatSectors)
        add     a,e
        ld      e,a
        jr      nc,_samePage
        inc     d
_samePage:
        dec     c
        jr      nz,_copy
        or      a
        ret

