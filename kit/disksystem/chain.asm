; Chains of clusters: those of a file, in the order of its bytes.

; giveCluster: takes a free cluster, if possible the one that follows the last one given. Out: HL = it, marked as the end of
; a chain; carry when there is none or on an error. Changes all.
giveCluster:
        call    countFree
        ret     c
        ld      hl,(diskFree)
        ld      a,h
        or      l
        scf
        ret     z
        ld      hl,(diskHint)
        ld      bc,(dpbLastCluster)     ; so many are looked at at most
_next:
        inc     hl
        call    isCluster
        jr      nc,_look
        ld      hl,2
_look:
        push    bc
        push    hl
        call    getFat
        jr      c,_failed
        ld      a,h
        or      l
        pop     hl
        pop     bc
        jr      z,_found
        dec     bc
        ld      a,b
        or      c
        jr      nz,_next
        scf
        ret
_found:
        ld      (diskHint),hl
        push    hl
        ld      de,endOfChain
        call    putFat
        pop     hl
        ret     c
        ld      de,(diskFree)
        dec     de
        ld      (diskFree),de
        ld      hl,diskUnclosed
        ld      a,(fcbEntry)
        inc     a
        inc     (hl)
        dec     (hl)
        jr      z,_noted
        cp      (hl)
        jr      z,_noted
        ld      a,0FFh                  ; a second file, while the first one is not closed
_noted:
        ld      (hl),a
        ld      hl,(diskHint)
        or      a
        ret
_failed:
        pop     hl
        pop     bc
        scf
        ret

; freeChain: In: HL = a cluster, or 0. Frees it and those that follow it in its chain. Out: carry on an error. Changes all.
freeChain:
        ld      de,0
        ld      (chainStart),de
_cluster:
        call    isCluster
        ccf
        ret     nc
        push    hl
        call    getFat
        pop     de
        ret     c
        ld      a,h
        or      l
        ret     z                       ; it was free: a damaged disk
        push    hl
        ex      de,hl
        ld      de,0
        call    putFat
        pop     hl
        ret     c
        ld      de,(diskFree)
        ld      a,d
        and     e
        inc     a
        jr      z,_cluster              ; not counted yet
        inc     de
        ld      (diskFree),de
        jr      _cluster

; clusterAt: In: HL = number of the cluster in the file, fcbCluster. Out: HL = the cluster; carry when the chain is shorter
; or on an error. Changes all.
clusterAt:
        ld      b,h
        ld      c,l
        ld      hl,(fcbCluster)
        call    isCluster
        ret     c
        ld      de,(chainStart)
        or      a
        sbc     hl,de
        add     hl,de
        ld      de,0
        jr      nz,_fromStart
        ; the same file as last time: on from there, unless it is further back now
        ld      de,(chainIndex)
        ld      a,c
        sub     e
        ld      a,b
        sbc     a,d
        ld      de,0
        jr      c,_fromStart
        ld      de,(chainIndex)
        ld      hl,(chainCluster)
        jr      _walk
_fromStart:
        ld      (chainStart),hl
_walk:
        ld      (chainIndex),de
        ld      (chainCluster),hl
        ld      a,d
        cp      b
        jr      nz,_step
        ld      a,e
        cp      c
        ret     z
_step:
        push    bc
        push    de
        call    getFat
        pop     de
        pop     bc
        ret     c
        push    de
        call    isCluster
        pop     de
        ret     c
        inc     de
        jr      _walk

; extendTo: In: BC = number of clusters that the file is to have, at least 1; fcbCluster. Gives it those that are missing.
; Out: fcbCluster; carry when the disk is full, with nothing changed, or on an error. Changes all.
extendTo:
        push    bc
        call    countClusters
        pop     bc
        ret     c
        ; DE = clusters that there are, HL = the last one
        ld      a,c
        sub     e
        ld      c,a
        ld      a,b
        sbc     a,d
        ld      b,a
        jr      c,_enough
        or      c
        ret     z
        push    hl
        push    bc
        call    countFree
        pop     bc
        pop     hl
        ret     c
        push    hl
        ld      hl,(diskFree)
        or      a
        sbc     hl,bc
        pop     hl
        ret     c
_give:
        push    bc
        push    hl
        call    giveCluster
        pop     de                      ; the last one so far, or 0
        pop     bc
        ret     c
        push    bc
        push    hl
        ld      a,d
        or      e
        jr      z,_first
        ex      de,hl
        call    putFat                  ; HL = the last one, DE = the new one
        jr      _linked
_first:
        ld      (fcbCluster),hl
        call    noteFirstCluster
_linked:
        pop     hl
        pop     bc
        ret     c
        dec     bc
        ld      a,b
        or      c
        jr      nz,_give
_enough:
        or      a
        ret

; countClusters: Out: DE = clusters of the chain from fcbCluster, HL = the last one, 0 when there is none; carry on an error.
; From the cluster remembered on, as a file mostly grows at its end. Changes all.
countClusters:
        ld      hl,(fcbCluster)
        call    isCluster
        ld      de,0
        jr      nc,_some
        ld      h,d
        ld      l,d
        or      a
        ret
_some:
        inc     de
        ld      bc,(chainStart)
        or      a
        sbc     hl,bc
        add     hl,bc
        jr      nz,_walk
        ld      de,(chainIndex)
        inc     de
        ld      hl,(chainCluster)
_walk:
        push    de
        push    hl
        call    getFat
        jr      c,_failed
        call    isCluster
        pop     bc
        pop     de
        jr      c,_end
        inc     de
        ; more than the disk has: a circle
        push    hl
        ld      hl,(dpbLastCluster)
        or      a
        sbc     hl,de
        pop     hl
        jr      nc,_walk
        jp      damaged
_end:
        ld      h,b
        ld      l,c
        or      a
        ret
_failed:
        pop     hl
        pop     de
        scf
        ret

; cutChain: In: BC = number of clusters that the file keeps; fcbCluster. Frees the others. Out: fcbCluster, 0 when it keeps
; none; carry on an error. Changes all.
cutChain:
        ld      a,b
        or      c
        jr      z,_all
        dec     bc
        ld      h,b
        ld      l,c
        call    clusterAt
        ccf
        ret     nc                      ; the chain is not that long
        push    hl
        call    getFat
        pop     de
        ret     c
        ex      de,hl                   ; HL = the last one that stays, DE = the next one
        push    de
        ex      de,hl
        call    isCluster
        jr      c,_none
        ex      de,hl
        ld      hl,(chainCluster)
        ld      de,endOfChain
        call    putFat
        pop     hl
        ret     c
        jp      freeChain
_none:
        pop     de
        or      a
        ret
_all:
        ld      hl,(fcbCluster)
        push    hl
        ld      hl,0
        ld      (fcbCluster),hl
        pop     hl
        jp      freeChain

; damaged: the tables of the disk in place contradict each other: nothing more is written to it. Out: carry. Changes A.
damaged:
        ld      a,stateDamaged
        ld      (diskState),a
        scf
        ret
