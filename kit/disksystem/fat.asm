; The file allocation table: FAT12, a word for each cluster in one and a half bytes.

endOfChain      equ 0FFFh

; fatPlace: In: HL = cluster. Out: DE = sector of the table, HL = byte in it; carry when the cluster is odd. Changes A.
fatPlace:
        ld      d,h
        ld      e,l
        srl     d
        rr      e
        push    af
        add     hl,de
        ld      a,h
        srl     a
        ld      e,a
        ld      d,0
        ld      a,h
        and     1
        ld      h,a
        push    hl
        ld      hl,(dpbFirstFat)
        add     hl,de
        ex      de,hl
        pop     hl
        pop     af
        ret

; fatByte: In: DE = sector of the table, HL = byte in it, at most 512. Out: HL = its address, DE = its sector; carry on an
; error. Changes AF, BC.
fatByte:
        bit     1,h
        jr      z,_thisSector
        inc     de
        ld      hl,0
_thisSector:
        push    hl
        push    de
        ld      a,kindFat
        call    fetchSector
        pop     de
        pop     bc
        ret     c
        add     hl,bc
        or      a
        ret

; getFat: In: HL = cluster. Out: HL = its entry; carry on an error. Changes all.
getFat:
        call    fatPlace
        push    af
        push    hl
        push    de
        call    fatByte
        pop     de
        jr      c,_failed
        ld      a,(hl)
        pop     hl
        push    af
        inc     hl
        bit     1,h
        jr      z,_near
        call    fatByte
        jr      c,_failed
        jr      _second
_near:
        ld      bc,bufferHeads + headPage
        ld      a,(bc)
        add     a,h
        ld      h,a
        ld      a,l
        add     a,low firstBuffer
        ld      l,a
        jr      nc,_second
        inc     h
_second:
        ld      h,(hl)
        pop     af
        ld      l,a
        pop     af
        jr      c,_odd
        ld      a,h
        and     15
        ld      h,a
        or      a
        ret
_odd:
        ld      b,4
_shift:
        srl     h
        rr      l
        djnz    _shift
        or      a
        ret
_failed:
        pop     hl
        pop     hl
        scf
        ret

; putFat: In: HL = cluster, DE = its entry. Out: carry on an error. Changes all.
putFat:
        ld      (fatValue),de
        call    fatPlace
        jr      c,_odd
        push    hl
        push    de
        call    fatByte
        jr      c,_failed
        ld      a,(fatValue)
        ld      (hl),a
        call    markDirty
        pop     de
        pop     hl
        inc     hl
        call    fatByte
        ret     c
        ld      a,(hl)
        and     0F0h
        ld      b,a
        ld      a,(fatValue + 1)
        or      b
        jr      _last
_odd:
        push    hl
        push    de
        ld      bc,(fatValue)
        ld      a,4
_shift:
        sla     c
        rl      b
        dec     a
        jr      nz,_shift
        ld      (fatValue),bc
        call    fatByte
        jr      c,_failed
        ld      a,(hl)
        and     15
        ld      b,a
        ld      a,(fatValue)
        or      b
        ld      (hl),a
        call    markDirty
        pop     de
        pop     hl
        inc     hl
        call    fatByte
        ret     c
        ld      a,(fatValue + 1)
_last:
        ld      (hl),a
        call    markDirty
        or      a
        ret
_failed:
        pop     de
        pop     hl
        scf
        ret

; countFree: Out: diskFree is known; carry on an error. Changes all.
countFree:
        ld      hl,(diskFree)
        ld      a,h
        and     l
        inc     a
        ret     nz
        ld      bc,0
        ld      hl,2
_cluster:
        push    bc
        push    hl
        call    getFat
        jr      c,_failed
        ld      a,h
        or      l
        pop     hl
        pop     bc
        jr      nz,_used
        inc     bc
_used:
        ld      de,(dpbLastCluster)
        ld      a,h
        cp      d
        jr      nz,_next
        ld      a,l
        cp      e
        jr      z,_end
_next:
        inc     hl
        jr      _cluster
_end:
        ld      (diskFree),bc
        or      a
        ret
_failed:
        pop     hl
        pop     bc
        scf
        ret

; isCluster: In: HL = entry of the table. Out: carry when it is no cluster of the disk. Changes A, DE.
isCluster:
        ld      a,h
        or      a
        jr      nz,_high
        ld      a,l
        cp      2
        ret     c
_high:
        ld      de,(dpbLastCluster)
        ex      de,hl
        or      a
        sbc     hl,de
        ex      de,hl
        ret
