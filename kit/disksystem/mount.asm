; Drives and what their disks look like.

; useDrive: In: A = drive of a control block: 0 the default one, 1 A, 2 B. Out: its record is in place and describes the disk
; in it; carry when there is no such drive, or no disk of ours. Changes all.
useDrive:
        or      a
        jr      nz,_named
        ld      a,(defaultDrive)
        inc     a
_named:
        dec     a
useDriveNumber:
        cp      driveCount
        ccf
        ret     c
        call    switchDrive
        jr      checkDisk

; switchDrive: In: A = drive, or 0FFh for none. Puts its record in place. Keeps A; changes the others.
switchDrive:
        ld      hl,drive
        cp      (hl)
        ret     z
        push    af
        ld      a,(hl)
        cp      driveCount
        jr      nc,_noneBefore
        call    recordOf
        ex      de,hl
        ld      hl,driveRecord
        ld      bc,driveRecordSize
        ldir
_noneBefore:
        pop     af
        ld      (drive),a
        cp      driveCount
        ret     nc
        push    af
        call    recordOf
        ld      de,driveRecord
        ld      bc,driveRecordSize
        ldir
        ld      hl,0
        ld      (chainStart),hl
        pop     af
        ld      (dpbDrive),a
        ret

; recordOf: In: A = drive. Out: HL = where its record is kept. Changes AF, BC.
recordOf:
        ld      hl,driveRecords
        or      a
        ret     z
        ld      bc,driveRecordSize
        add     hl,bc
        ret

; checkDisk: reads the drive's tables where they are not known or the disk has been changed. Out: carry when the disk is none
; of ours. Changes all.
checkDisk:
        ld      a,(diskState)
        or      a
        jr      z,_unknown
        call    lineOfChange
        ld      a,(diskState)
        jr      z,_changed
        or      a
        ret
_changed:
        call    hasDirty
        jr      nz,_forget
        call    sameDisk
        jr      nc,_same
_forget:
        ld      a,(drive)
        call    forgetDrive
        jp      mountDisk
_same:
        or      a
        ret
_unknown:
        call    lineOfChange            ; asking forgets it
        jr      _forget

; hasDirty: Out: Z when a sector of the drive waits to be written. Changes AF, BC, DE, HL.
hasDirty:
        ld      hl,bufferHeads
        ld      b,bufferCount
_head:
        ld      a,(drive)
        cp      (hl)
        jr      nz,_next
        push    hl
        ld      de,headDirty
        add     hl,de
        ld      a,(hl)
        pop     hl
        dec     a
        ret     z
_next:
        ld      de,headSize
        add     hl,de
        djnz    _head
        or      1
        ret

; isStillThere: before something is written. Out: carry when another disk lies in the drive now and the user does not put the
; right one back. Changes all.
isStillThere:
        call    lineOfChange
        scf
        ccf
        ret     nz

; sameDisk: compares the disk in the drive with the one that its record describes. Out: carry when it is another one and the
; user does not put the right one back. Changes all.
sameDisk:
        ld      hl,0
        ld      (sectorSum),hl
        ld      d,h
        ld      e,l
        ld      b,1
        call    sumSectors
        ret     c
        ld      de,(dpbFirstFat)
        ld      b,1
        call    sumSectors
        ret     c
        ld      de,(dpbFirstEntry)
        ld      b,1
        call    sumSectors
        ret     c
        ld      hl,(bootSum)
        ld      de,(tableSum)
        add     hl,de
        ld      de,(entrySum)
        add     hl,de
        ld      de,(sectorSum)
        or      a
        sbc     hl,de
        ret     z
        ld      a,1
        ld      (diskWrites),a
        ld      a,errorAnotherDisk
        call    diskError
        jr      z,sameDisk
        scf
        ret

; noteSum: In: DE = sector that is going to be written, HL = its buffer. Keeps the sums right by which the disk is known again.
; Keeps BC, DE, HL; changes AF.
noteSum:
        push    bc
        push    de
        push    hl
        ld      bc,(dpbFirstFat)
        ld      ix,tableSum
        call    _ofSector
        ld      bc,(dpbFirstEntry)
        ld      ix,entrySum
        call    _ofSector
        pop     hl
        pop     de
        pop     bc
        ret
_ofSector:
        push    hl
        ld      h,b
        ld      l,c
        or      a
        sbc     hl,de
        pop     hl
        ret     nz
        push    hl
        push    de
        call    sumOfBuffer
        ld      (ix),e
        ld      (ix + 1),d
        pop     de
        pop     hl
        ret

; mountDisk: Out: the drive's record filled in from the boot sector; carry when it makes no sense. Changes all.
mountDisk:
        ld      hl,0
        ld      (chainStart),hl
        ld      hl,1440                 ; what the boot sector itself is found with
        ld      (diskSectors),hl
        ld      a,9
        ld      (diskTrackSectors),a
        ld      a,2
        ld      (diskHeads),a
        xor     a
        ld      (diskState),a
        ld      de,0
        ld      a,kindData
        call    fetchSector
        ret     c
        push    hl
        pop     ix
        call    parametersMakeSense
        jr      c,_notOurs
        call    takeParameters
        jr      c,_notOurs
        ; the table's first sector is next to come under the head: the sums are taken afterwards
        ld      de,(dpbFirstFat)
        ld      a,kindFat
        call    fetchSector
        jr      c,_unreadable
        ld      de,(dpbFirstEntry)
        ld      a,kindDirectory
        call    fetchSector
        jr      c,_unreadable
        call    sumOfBuffer
        ld      (entrySum),de
        ld      de,0
        ld      a,kindData
        call    fetchSector
        jr      c,_unreadable
        call    sumOfBuffer
        ld      (bootSum),de
        ld      de,(dpbFirstFat)
        ld      a,kindFat
        call    fetchSector
        jr      c,_unreadable
        push    hl
        call    sumOfBuffer
        ld      (tableSum),de
        pop     hl
        ld      a,(hl)                  ; the table begins with the media byte and ones
        cp      0F0h
        jr      c,_notOurs
        inc     hl
        ld      a,(hl)
        inc     a
        jr      nz,_notOurs
        ld      hl,0FFFFh
        ld      (diskFree),hl
        ld      hl,1
        ld      (diskHint),hl
        xor     a
        ld      (diskUnclosed),a
        ld      a,stateGood
        ld      (diskState),a
        or      a
        ret
_notOurs:
        xor     a
        ld      (diskState),a
        ld      hl,notOursText
        call    showText
_unreadable:
        scf
        ret

; parametersMakeSense: In: IX = boot sector. Out: carry when its parameters cannot be those of a disk. Changes AF, BC, DE, HL.
parametersMakeSense:
        ld      a,(ix + 0Bh)            ; bytes in a sector
        or      a
        jr      nz,_bad
        ld      a,(ix + 0Ch)
        cp      high bufferBytes
        jr      nz,_bad
        ld      a,(ix + 0Dh)            ; sectors in a cluster: a power of two, at most 64
        or      a
        jr      z,_bad
        cp      65
        jr      nc,_bad
        ld      b,a
        dec     a
        and     b
        jr      nz,_bad
        ld      a,(ix + 0Eh)            ; reserved sectors
        or      a
        jr      z,_bad
        ld      a,(ix + 0Fh)
        or      a
        jr      nz,_bad
        ld      a,(ix + 10h)            ; copies of the table
        dec     a
        cp      7
        jr      nc,_bad
        ld      a,(ix + 12h)            ; directory entries: whole sectors, at most 240
        or      a
        jr      nz,_bad
        ld      a,(ix + 11h)
        or      a
        jr      z,_bad
        and     15
        jr      nz,_bad
        ld      a,(ix + 17h)            ; sectors of a table: FAT12 has at most 12
        or      a
        jr      nz,_bad
        ld      a,(ix + 16h)
        dec     a
        cp      12
        jr      nc,_bad
        ld      a,(ix + 15h)            ; media
        cp      0F0h
        jr      c,_bad
        ld      a,(ix + 19h)            ; sectors in a track
        or      a
        jr      nz,_bad
        ld      a,(ix + 18h)
        or      a
        jr      z,_bad
        cp      22
        jr      nc,_bad
        ld      a,(ix + 1Bh)            ; heads
        or      a
        jr      nz,_bad
        ld      a,(ix + 1Ah)
        dec     a
        cp      2
        jr      nc,_bad
        or      a
        ret
_bad:
        scf
        ret

; takeParameters: In: IX = boot sector. Out: the drive's record; carry when the parts of the disk do not fit into it. Changes
; AF, BC, DE, HL.
takeParameters:
        ld      a,(ix + 15h)
        ld      (dpbMedia),a
        ld      hl,bufferBytes
        ld      (dpbSectorBytes),hl
        ld      a,15
        ld      (dpbEntryMask),a
        ld      a,4
        ld      (dpbEntryShift),a
        ld      a,(ix + 0Dh)
        ld      b,0
        dec     a
        ld      (dpbClusterMask),a
        inc     a
_shift:
        inc     b
        rra
        jr      nc,_shift
        ld      a,b
        ld      (dpbClusterShift),a
        ld      e,(ix + 0Eh)
        ld      d,0
        ld      (dpbFirstFat),de
        ld      a,(ix + 16h)
        ld      (dpbFatSectors),a
        ld      l,a
        ld      h,d
        ld      b,(ix + 10h)
        ld      a,b
        ld      (dpbFats),a
        ex      de,hl
_fat:
        add     hl,de
        djnz    _fat
        ld      (dpbFirstEntry),hl
        ld      a,(ix + 11h)
        ld      (dpbEntries),a
        rrca
        rrca
        rrca
        rrca
        and     15
        ld      e,a
        ld      d,0
        add     hl,de
        ld      (dpbFirstData),hl
        ex      de,hl
        ld      l,(ix + 13h)
        ld      h,(ix + 14h)
        ld      (diskSectors),hl
        ld      a,(ix + 18h)
        ld      (diskTrackSectors),a
        ld      a,(ix + 1Ah)
        ld      (diskHeads),a
        or      a
        sbc     hl,de
        ret     c
        ld      a,(dpbClusterShift)
        ld      b,a
        jr      _clusters
_half:
        srl     h
        rr      l
_clusters:
        djnz    _half
        ld      a,h
        or      l
        scf
        ret     z
        inc     hl
        ld      (dpbLastCluster),hl
        ; FAT12, and a table that has room for them all: 341 entries in a sector
        ld      de,0FF0h
        or      a
        sbc     hl,de
        ccf
        ret     c
        add     hl,de
        ld      de,341
        ld      a,(dpbFatSectors)
        ld      b,a
_table:
        or      a
        sbc     hl,de
        jr      c,_fits
        djnz    _table
        scf
        ret
_fits:
        or      a
        ret
