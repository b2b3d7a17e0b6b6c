; The functions that find, make, delete and rename files.

fcbNewName      equ fcb + 17
unchangedBit    equ 6           ; of the device byte: nothing is to be noted at a close

; takeNamed: takes the caller's block and its name. Out: pattern; NC and A = device, or carry when the name is none of a
; device. Changes all.
takeNamed:
        call    takeBlock
        ld      hl,fcbName
        call    takeName
        ld      hl,pattern
        jp      deviceNamed

; useBlockDrive: Out: the drive that the block names is in place; carry as useDrive.
useBlockDrive:
        ld      a,(fcb)
        jp      useDrive

; 0F: In: DE = block. Out: A = 0, or 0FFh when there is no such file. Fills in size, date, time and what the system needs of
; it; block, record size, current and random record stay as they are.
functionOpen:
        call    takeNamed
        jr      nc,openDevice
        call    useBlockDrive
        jp      c,functionFails
        xor     a
        call    findEntry
        jp      c,functionFails
        call    openEntry
        call    giveBlock
        xor     a
        ret

; openDevice: In: A = its number. The function's end.
openDevice:
        ld      (fcbDevice),a
        ld      hl,0
        ld      (fcbFileSize),hl
        ld      (fcbFileSize + 2),hl
        call    giveBlock
        xor     a
        ret

; openEntry: In: HL = entry, entryIndex. Fills the copy of the block in. Changes all.
openEntry:
        ld      a,(entryIndex)
        ld      (fcbEntry),a
        ld      a,(drive)
        or      1 shl unchangedBit
        ld      (fcbDevice),a
        ld      de,entryTime
        add     hl,de
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        inc     hl
        ld      (fcbTime),de
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        inc     hl
        ld      (fcbDate),de
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        inc     hl
        ld      (fcbCluster),de
        ld      (fcbLastCluster),de
        ld      de,fcbFileSize
        ld      bc,4
        ldir
        ld      h,b
        ld      l,b
        ld      (fcbLastIndex),hl
        ret

; takeOpen: takes the block of an open file. Out: the file's drive in place, A = device when it is one, with carry set;
; NC and Z for a disk file; NC and NZ when the block is none of an open file. Changes all.
takeOpen:
        call    takeBlock
        ld      a,(fcbDevice)
        cp      devicePrn
        ccf
        ret     c
        and     3Fh
        call    useDriveNumber
        jr      c,_notOpen
        call    isTrusted
        ret     z
        ; its entry may have gone to another file, or the disk be another one
        ld      a,(fcbEntry)
        ld      hl,dpbEntries
        cp      (hl)
        jr      nc,_notOpen
        call    fetchEntry
        jr      c,_notOpen
        ld      a,(hl)
        or      a
        jr      z,_notOpen
        cp      entryDeleted
        jr      z,_notOpen
        push    hl
        ld      de,entryCluster
        add     hl,de
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        ld      hl,(fcbCluster)
        ld      (fcbCluster),de
        or      a
        sbc     hl,de
        pop     hl
        jr      nz,_byName              ; another first cluster: the file has got one, or has been made anew
        ld      a,d
        or      e
        jr      nz,_same
_byName:
        push    hl
        ld      hl,fcbName
        call    takeName
        pop     hl
        call    fitsPattern
        scf
        ccf
        ret     nz
_same:
        call    trust
        xor     a
        ret
_notOpen:
        or      1
        ret

; isTrusted: In: drive, the copy of the block. Out: Z when its entry was compared before and no directory has changed since. NC.
; Changes AF, DE, HL.
isTrusted:
        ld      hl,trustedDrive
        ld      a,(drive)
        cp      (hl)
        jr      nz,_no
        inc     hl
        ld      a,(fcbEntry)
        cp      (hl)
        jr      nz,_no
        ld      hl,(trustedCluster)
        ld      de,(fcbCluster)
        or      a
        sbc     hl,de
        ret     z
_no:
        or      1
        ret

; trust: the entry of the copy of the block has been compared. Changes A, HL.
trust:
        ld      a,(drive)
        ld      (trustedDrive),a
        ld      a,(fcbEntry)
        ld      (trustedEntry),a
        ld      hl,(fcbCluster)
        ld      (trustedCluster),hl
        ret

; trustNone: a directory changes. Changes A.
trustNone:
        ld      a,0FFh
        ld      (trustedDrive),a
        ret

; 10: In: DE = block. Out: A = 0, or 0FFh. What was written is noted in the directory and lies on the disk afterwards.
functionClose:
        call    takeOpen
        ld      a,0
        ret     c
        jp      nz,functionFails
        ld      a,(fcbDevice)
        bit     unchangedBit,a
        ld      a,0
        ret     nz
        call    closeFile
        jp      c,functionFails
        ld      hl,fcbDevice
        set     unchangedBit,(hl)
        call    giveBlock
        xor     a
        ret

; closeFile: In: the copy of the block. Writes the file's data, its chain and its directory entry. Out: carry on an error.
; Changes all.
closeFile:
        call    clustersOfSize
        push    bc
        call    countClusters
        pop     bc
        ret     c
        ld      h,b
        ld      l,c
        or      a
        sbc     hl,de
        call    c,cutChain              ; more clusters than the size needs
        ret     c
        ld      a,(fcbEntry)
        call    fetchEntry
        ret     c
        call    stampEntry
        ld      de,entryCluster
        add     hl,de
        ld      de,(fcbCluster)
        ld      (hl),e
        inc     hl
        ld      (hl),d
        inc     hl
        ex      de,hl
        ld      hl,fcbFileSize
        ld      bc,4
        ldir
        call    markDirty
        call    flushAll
        ret     c
        ld      a,(fcbEntry)
        inc     a
        ld      hl,diskUnclosed
        sub     (hl)
        jr      nz,_another
        ld      (hl),a
_another:
        or      a                       ; no carry: it worked, whichever file is unclosed
        ret

; clustersOfSize: Out: BC = clusters that fcbFileSize needs. Changes AF, DE, HL.
clustersOfSize:
        ld      hl,(fcbFileSize)
        ld      de,(fcbFileSize + 2)
        jr      clustersOf

; clustersOf: In: DEHL = bytes. Out: BC = clusters that they need, 0FFFFh when more than 65534. Changes AF, DE, HL.
clustersOf:
        ld      a,l
        or      a
        jr      z,_whole
        inc     h                       ; a part of 256 bytes counts as a whole
        jr      nz,_whole
        inc     de
_whole:
        ; DEH = bytes / 256, rounded up
        ld      a,(dpbClusterShift)
        ld      b,a
        ld      c,0                     ; bits that fall out
_shift:
        srl     d
        rr      e
        rr      h
        jr      nc,_even
        inc     c
_even:
        djnz    _shift
        inc     c
        dec     c
        jr      z,_exact
        inc     h
        jr      nz,_exact
        inc     de
_exact:
        ld      a,d
        or      a
        ld      b,e
        ld      c,h
        ret     z
        ld      bc,0FFFFh
        ret

; 11: In: DE = block with a pattern. 12: goes on. Out: A = 0 and at the transfer address the drive and the 32 bytes of a
; directory entry, or 0FFh.
functionSearchFirst:
        call    takeBlock
        ld      hl,fcbName
        call    takeName
        ld      hl,pattern
        ld      de,searchPattern
        ld      bc,11
        ldir
        call    useBlockDrive
        ld      a,0FFh
        ld      (searchIndex),a
        ret     c
        ld      a,(drive)
        ld      (searchDrive),a
        xor     a
        jr      searchOn
functionSearchNext:
        ld      a,(searchIndex)
        inc     a
        jp      z,functionFails
        ld      a,(searchDrive)
        call    useDriveNumber
        jp      c,functionFails
        ld      hl,searchPattern
        ld      de,pattern
        ld      bc,11
        ldir
        ld      a,(searchIndex)
searchOn:
        call    findEntry
        jr      nc,_found
        ld      a,0FFh
        ld      (searchIndex),a
        ret
_found:
        ld      a,(entryIndex)
        inc     a
        ld      (searchIndex),a
        push    hl
        ld      hl,(dma)
        ld      a,(drive)
        inc     a
        ld      b,a
        call    pokeUser
        inc     hl
        ex      de,hl
        pop     hl
        ld      bc,entryBytes
        call    copyUser
        xor     a
        ret

; 13: In: DE = block with a pattern. Out: A = 0 when a file was deleted, else 0FFh. The directory is written before the table:
; a power failure in between costs clusters, never another file.
functionDelete:
        call    trustNone
        call    takeBlock
        ld      hl,fcbName
        call    takeName
        call    useBlockDrive
        jp      c,functionFails
        call    mayWrite
        jp      c,functionFails
        xor     a
        ld      (anyDone),a
_next:
        call    findEntry
        jr      c,_end
        ld      (hl),entryDeleted
        ld      de,entryCluster
        add     hl,de
        ld      a,(hl)
        inc     hl
        ld      h,(hl)
        ld      l,a
        call    markDirty
        push    hl
        call    writeEntrySector
        pop     hl
        call    freeChain
        ld      a,1
        ld      (anyDone),a
        ld      a,(entryIndex)
        inc     a
        jr      _next
_end:
        call    flushAll
        jp      c,functionFails
anyAnswer:
        ld      a,(anyDone)
        dec     a                       ; 1: 0, 0: 0FFh
        ret

; writeEntrySector: writes the directory's sector that was fetched last. Out: carry on an error. Changes all.
writeEntrySector:
        ld      hl,bufferHeads
        call    writeBuffer
        ld      a,0
        ld      (bufferHeads + headDirty),a
        ret

; 16: In: DE = block. Out: A = 0, or 0FFh. Makes an empty file, or empties the one of that name.
functionCreate:
        call    trustNone
        call    takeNamed
        jp      nc,openDevice
        ld      hl,pattern
        call    isFileName
        jp      c,functionFails
        call    useBlockDrive
        jp      c,functionFails
        call    mayWrite
        jp      c,functionFails
        xor     a
        call    findEntry
        ld      bc,0
        jr      c,_new
        ; the chain of the file that is there is freed after its entry lets go of it
        push    hl
        ld      de,entryCluster
        add     hl,de
        ld      c,(hl)
        inc     hl
        ld      b,(hl)
        pop     hl
        jr      _fill
_new:
        call    findFree
        jp      c,functionFails
        ld      bc,0
_fill:
        push    bc
        push    hl
        ex      de,hl
        ld      hl,pattern
        ld      bc,11
        ldir
        ld      b,entryBytes - 11
_clear:
        xor     a
        ld      (de),a
        inc     de
        djnz    _clear
        pop     hl
        call    stampEntry
        call    markDirty
        call    openEntry
        call    writeEntrySector
        pop     hl
        jp      c,functionFails
        call    freeChain
        jp      c,functionFails
        call    flushAll
        jp      c,functionFails
        call    giveBlock
        xor     a
        ret

; 17: In: DE = block: the pattern, and at byte 17 the new name, whose ? stand for characters of the old one. Out: A = 0, or
; 0FFh: there is no such file, or one of the new name is there, or the new name is none.
functionRename:
        call    trustNone
        call    takeBlock
        call    useBlockDrive
        jp      c,functionFails
        call    mayWrite
        jp      c,functionFails
        xor     a
        ld      (anyDone),a
_next:
        ld      (renameIndex),a
        ld      hl,fcbName
        call    takeName
        ld      a,(renameIndex)
        call    findEntry
        jp      c,anyAnswer
        ld      a,(entryIndex)
        ld      (renameIndex),a
        ; the new name, into pattern
        ld      de,fcbNewName
        ld      ix,pattern
        ld      b,11
_character:
        ld      a,(de)
        call    upperCase
        cp      '?'
        jr      nz,_given
        ld      a,(hl)
_given:
        ld      (ix),a
        inc     ix
        inc     hl
        inc     de
        djnz    _character
        ld      hl,pattern
        call    isFileName
        jp      c,functionFails
        xor     a
        call    findEntry
        jp      nc,functionFails
        ld      a,(renameIndex)
        call    fetchEntry
        jp      c,functionFails
        ex      de,hl
        ld      hl,pattern
        ld      bc,11
        ldir
        call    markDirty
        call    writeEntrySector
        jp      c,functionFails
        ld      a,1
        ld      (anyDone),a
        ld      a,(renameIndex)
        inc     a
        jr      _next

; 23: In: DE = block. Out: A = 0 and the random record = number of 128-byte records, a part counting as a whole one, or 0FFh.
functionFileSize:
        call    takeBlock
        ld      hl,fcbName
        call    takeName
        call    useBlockDrive
        jp      c,functionFails
        xor     a
        call    findEntry
        jp      c,functionFails
        ld      de,entrySize
        add     hl,de
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        inc     hl
        ld      c,(hl)
        inc     hl
        ld      b,(hl)
        ld      hl,127
        add     hl,de
        jr      nc,_sum
        inc     bc
_sum:
        ; BCHL / 128
        add     hl,hl
        rl      c
        rl      b
        ld      l,h
        ld      h,c
        ld      (fcbRandom),hl
        ld      a,b
        ld      (fcbRandom + 2),a
        call    giveBlockRandom
        xor     a
        ret
