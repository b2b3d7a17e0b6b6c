; The heap: grows from the end of the program upwards. Free blocks below its top form a list in the order of their
; addresses; each holds the next one's address (0: none) and its own size. Sizes are multiples of four, so that every free
; block has room for the two words. Neighbours are merged, and a free block at the top gives its memory back to the top.

heapUnit        equ 4
; What MemAvail leaves out besides stackMargin: GetMem's own place on the stack, and that a program that has taken
; MaxAvail bytes may still join strings in its statements, which takes 256 bytes for each intermediate result.
heapReserve     equ 32 + 2 * 256

; heapAllocate: New, GetMem. In: HL = size. Out: HL = address: the first free block that is large enough, its end, or the
; heap's top. Run-time error FF when there is no room. Destroys AF, BC, DE. 330 T at the top with no free blocks; 99 T for
; each free block that is too small.
@heapAllocate:
        call    roundHeapSize
        jr      c,_full
        ex      de,hl                   ; DE = size
        ld      hl,freeList
_next:                                  ; HL = the link that leads to the block
        ld      c,(hl)
        inc     hl
        ld      b,(hl)
        dec     hl
        ld      a,b
        or      c
        jr      z,_top
        push    hl
        ld      h,b
        ld      l,c
        inc     hl
        inc     hl
        ld      a,(hl)
        inc     hl
        ld      h,(hl)
        ld      l,a
        sbc     hl,de                   ; no carry from OR
        jr      nc,_fits
        pop     af
        ld      h,b
        ld      l,c
        jr      _next
_fits:                                  ; HL = what remains of the block BC
        ld      a,h
        or      l
        jr      z,_exact
        ex      de,hl
        ld      hl,2
        add     hl,bc
        ld      (hl),e
        inc     hl
        ld      (hl),d
        ex      de,hl
        add     hl,bc
        pop     bc
        ret
_exact:
        pop     hl
        ld      a,(bc)
        ld      (hl),a
        inc     bc
        inc     hl
        ld      a,(bc)
        ld      (hl),a
        dec     bc
        ld      h,b
        ld      l,c
        ret
_top:
        ld      hl,(@heapPtr)
        ld      b,h
        ld      c,l
        add     hl,de
        jr      c,_full
        call    setHeapTop
        ld      h,b
        ld      l,c
        ret     nc
        ld      (@heapPtr),hl           ; as it was
        call    setHeapTop
_full:
        jp      @stackError

; setHeapTop: In: HL = new top of the heap. Stores it and the limit of the stack that goes with it. Out: carry when the
; stack does not allow it. Destroys A, DE, HL. 131 T.
setHeapTop:
        ld      (@heapPtr),hl
        ld      de,stackMargin
        add     hl,de
        ret     c
        xor     a                       ; stackLimit = -(top + margin)
        sub     l
        ld      l,a
        sbc     a,a
        sub     h
        ld      h,a
        ld      (@stackLimit),hl
        dec     h                       ; and that of a stack that is to hold a string more
        ld      (stringLimit),hl
        inc     h
        add     hl,sp
        ccf
        ret

; stackProbe: In: HL = -n. Run-time error FF at the caller unless the stack has room for n bytes. Destroys HL, F. 74 T.
@stackProbe:
        add     hl,sp
        jr      nc,_full                ; not even memory has
        push    de
        ex      de,hl
        ld      hl,(@stackLimit)
        add     hl,de
        pop     de
        ret     c
_full:
        jp      @stackError

; stackReserve: In: HL = -n. Takes n bytes off the stack; run-time error FF at the caller when it has no room for them. SP
; moves only when it has, as an interrupt may come at any time. Out: HL = SP = their address. Destroys F, IX. 102 T.
@stackReserve:
        pop     ix
        add     hl,sp
        jr      nc,stackFull
        push    de
        ex      de,hl
        ld      hl,(@stackLimit)
        add     hl,de
        ex      de,hl
        pop     de
        jr      nc,stackFull
        ld      sp,hl
        jp      (ix)

; stackReserveString: the same for 256 bytes, which is what each intermediate string takes. Out: HL = SP = their address.
; Destroys F, IX. 83 T.
@stackReserveString:
        pop     ix
        ld      hl,(stringLimit)
        add     hl,sp
        jr      nc,stackFull
        ld      hl,-256
        add     hl,sp
        ld      sp,hl
        jp      (ix)
stackFull:
        push    ix
        jp      @stackError

; heapFree: Dispose, FreeMem. In: HL = address, DE = size. Nothing for nil. Destroys AF, BC, DE, HL.
; 560 T + 80 T a free block below; 480 T + 130 T a free block more when the last one goes back to the top.
@heapFree:
        ld      a,h
        or      l
        ret     z
        ex      de,hl
        call    roundHeapSize
        ret     c
        ld      b,h
        ld      c,l                     ; BC = size, DE = block
        ; Find the free blocks before and behind it.
        ld      hl,freeList
_next:
        ld      (heapLink),hl           ; the link that leads to the block before, once this one is passed
        ld      a,(hl)
        inc     hl
        ld      h,(hl)
        ld      l,a                     ; HL = the free block that follows
        or      h
        jr      z,_found
        sbc     hl,de
        add     hl,de
        jr      c,_next
_found:
        ; Merge with the block behind: HL, at DE + BC?
        push    hl
        or      a
        sbc     hl,de
        sbc     hl,bc
        pop     hl
        jr      nz,_apart
        push    de
        ld      e,(hl)                  ; its next
        inc     hl
        ld      d,(hl)
        inc     hl
        ld      a,(hl)
        inc     hl
        ld      h,(hl)
        ld      l,a
        add     hl,bc
        ld      b,h
        ld      c,l
        ex      de,hl
        pop     de
_apart:                                 ; block DE, size BC, next HL
        push    hl
        push    bc
        ld      bc,(heapLink)           ; the block before, or the list's head, whose size is 0
        ld      h,b
        ld      l,c
        inc     hl
        inc     hl
        ld      a,(hl)
        inc     hl
        ld      h,(hl)
        ld      l,a
        push    hl
        add     hl,bc
        or      a
        sbc     hl,de
        pop     hl
        jr      nz,_separate
        ld      d,b
        ld      e,c
        pop     bc
        add     hl,bc
        ld      b,h
        ld      c,l
        pop     hl
        jr      _store
_separate:
        pop     bc
        ld      hl,(heapLink)
        ld      (hl),e
        inc     hl
        ld      (hl),d
        pop     hl
_store:                                 ; block DE, size BC, next HL: into memory
        ex      de,hl
        ld      (hl),e
        inc     hl
        ld      (hl),d
        inc     hl
        ld      (hl),c
        inc     hl
        ld      (hl),b
        ld      a,d
        or      e
        ret     nz
        ; The last free block: does it end at the top?
        dec     hl
        dec     hl
        dec     hl
        push    hl
        add     hl,bc
        ld      de,(@heapPtr)
        sbc     hl,de
        pop     hl
        ret     nz
        ; HL = that block becomes the top; the link that leads to it ends the list.
        jp      @heapRelease

; heapRelease: Release. In: HL = the top of the heap that heapMark gave. Free blocks from there on are forgotten; one that
; reaches up to there gives its memory to the top. Destroys AF, BC, DE, HL. 180 T + 135 T a free block below.
@heapRelease:
        ex      de,hl
        ld      hl,freeList
_next:
        ld      c,(hl)
        inc     hl
        ld      b,(hl)
        dec     hl                      ; HL = link, BC = block
        ld      a,b
        or      c
        jr      z,_set
        push    hl
        ld      h,b
        ld      l,c
        or      a
        sbc     hl,de
        jr      nc,_cut                 ; it lies at or above the new top
        ld      h,b
        ld      l,c
        inc     hl
        inc     hl
        ld      a,(hl)
        inc     hl
        ld      h,(hl)
        ld      l,a
        add     hl,bc
        or      a
        sbc     hl,de                   ; its end
        jr      nc,_lower
        pop     hl
        ld      h,b
        ld      l,c
        jr      _next
_lower:
        ld      d,b
        ld      e,c
_cut:
        pop     hl
        xor     a
        ld      (hl),a
        inc     hl
        ld      (hl),a
_set:
        ex      de,hl
        jp      setHeapTop

; heapMark: Mark. Out: HL = the heap's top. Keeps the others. 26 T.
@heapMark:
        ld      hl,(@heapPtr)
        ret

; maxAvail: Out: HL = the largest block that heapAllocate can give. Destroys AF, BC, DE.
; memAvail: Out: HL = free bytes: the list's and those between heap and stack. Destroys AF, BC, DE.
; 180 T + 125 T a free block.
@maxAvail:
        xor     a
        jr      countHeap
@memAvail:
        ld      a,1
countHeap:
        ld      (heapSums),a
        ld      hl,(@heapPtr)
        ld      de,stackMargin + heapReserve
        add     hl,de
        ex      de,hl
        ld      hl,0
        add     hl,sp
        jr      c,_none
        sbc     hl,de
        jr      nc,_room
_none:
        ld      hl,0
_room:
        ld      a,l
        and     -heapUnit
        ld      l,a
        ld      bc,(freeList)
_next:                                  ; HL = result up to here, BC = block
        ld      a,b
        or      c
        ret     z
        push    hl
        ld      h,b
        ld      l,c
        ld      c,(hl)
        inc     hl
        ld      b,(hl)
        inc     hl
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        pop     hl
        ld      a,(heapSums)
        or      a
        jr      nz,_sum
        sbc     hl,de
        add     hl,de
        jr      nc,_next
        ex      de,hl
        jr      _next
_sum:
        add     hl,de
        jr      _next

; roundHeapSize: In: HL. Out: HL up to a multiple of heapUnit, at least one; carry when there is none. Destroys AF, BC.
; 75 T.
roundHeapSize:
        ld      a,h
        or      l
        jr      nz,_some
        inc     hl
_some:
        ld      bc,heapUnit - 1
        add     hl,bc
        ret     c
        ld      a,l
        and     -heapUnit
        ld      l,a
        or      a
        ret
