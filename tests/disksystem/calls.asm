; Does the calls that a script lists and keeps a log of what they gave back. The script lies at 0800h, where calls.pl has
; appended it to this program; it describes the steps. The log is shown by OUT (2Fh) to machine.tcl, or printed where the
; system begins below D100h: msxrun has a printer file and is started so.
SCRIPT: equ 0800h
LOG:    equ 0A000h
BDOS:   equ 0005h

        org 0100h
        ld hl,LOG
        ld (logEnd),hl
        ld hl,SCRIPT
        ld (next),hl
step:   call fetch
        add a,a
        ld e,a
        ld d,0
        ld hl,steps
        add hl,de
        ld e,(hl)
        inc hl
        ld d,(hl)
        ld hl,step
        push hl
        push de
        ret
steps:  dw finish,doCall,poke,logMemory,logHash,fill,position,logBlock,logFound,markValid,guard,invalidate

; fetch: A = the script's next byte; fetchWord: DE = its next word. They keep BC and HL.
fetch:  push hl
        ld hl,(next)
        ld a,(hl)
        inc hl
        ld (next),hl
        pop hl
        ret
fetchWord:
        call fetch
        ld e,a
        call fetch
        ld d,a
        ret
; note: A to the log. Keeps all but flags.
note:   push hl
        ld hl,(logEnd)
        ld (hl),a
        inc hl
        ld (logEnd),hl
        pop hl
        ret

; function, DE, HL, results to note: bit 0 A, 1 HL, 2 DE, 3 BC
doCall: call fetch
        ld c,a
        call fetchWord
        push de
        call fetchWord
        ex de,hl
        pop de
        push hl
        push de
        push bc
        call fetch
        ld (results),a
        pop bc
        pop de
        pop hl
        call BDOS
        ld (lastA),a
        push bc
        push de
        push hl
        ld hl,results
        ld b,(hl)
        rrc b
        call c,note
        ld c,3
nextPair:
        pop de
        rrc b
        jr nc,notNoted
        ld a,e
        call note
        ld a,d
        call note
notNoted:
        dec c
        jr nz,nextPair
        ret

; address, length (a byte), the bytes
poke:   call fetchWord
        call fetch
        ld b,a
        ex de,hl
pokeNext:
        call fetch
        ld (hl),a
        inc hl
        djnz pokeNext
        ret

; area: HL = address, BC = length, from the script
area:   call fetchWord
        push de
        call fetchWord
        ld b,d
        ld c,e
        pop hl
        ret
logMemory:
        call area
logNext:
        ld a,b
        or c
        ret z
        ld a,(hl)
        call note
        inc hl
        dec bc
        jr logNext

logHash:
        call area
        ld de,0
hashNext:
        ld a,b
        or c
        jr z,hashEnd
        ex de,hl
        add hl,hl
        ex de,hl
        ld a,(hl)
        jr nc,noCarry
        xor 55h
noCarry:
        add a,e
        ld e,a
        jr nc,noCarry2
        inc d
noCarry2:
        inc hl
        dec bc
        jr hashNext
hashEnd:
        ld a,e
        call note
        ld a,d
        jp note

; address, length, first value: bytes that differ from their neighbours
fill:   call area
        call fetch
        ld e,a
fillNext:
        ld a,b
        or c
        ret z
        ld (hl),e
        ld a,e
        add a,a
        add a,a
        add a,e
        add a,11
        ld e,a
        inc hl
        dec bc
        jr fillNext

; control block, record size, way, four bytes: the position of the next access becomes the number (way 0), the end of the
; file (1), or the number modulo one more than the end (2). With bit 7 the sequential position, else the random record.
position:
        call fetchWord
        push de
        pop ix
        call fetchWord
        ld (size),de
        call fetch
        ld (way),a
        call fetchWord
        ld (number),de
        call fetchWord
        ld (number+2),de
        ld a,(way)
        and 3
        jr z,place
        ; the whole records of the file
        ld l,(ix+16)
        ld h,(ix+17)
        ld (dividend),hl
        ld l,(ix+18)
        ld h,(ix+19)
        ld (dividend+2),hl
        ld hl,(size)
        ld (divisor),hl
        ld hl,0
        ld (divisor+2),hl
        call divide
        ld a,(way)
        and 3
        dec a
        jr nz,modulo
        ld hl,(dividend)
        ld (number),hl
        ld hl,(dividend+2)
        ld (number+2),hl
        jr place
modulo: ld hl,(dividend)
        ld de,(dividend+2)
        inc hl
        ld a,h
        or l
        jr nz,noWrap
        inc de
noWrap: ld (divisor),hl
        ld (divisor+2),de
        ld hl,(number)
        ld (dividend),hl
        ld hl,(number+2)
        ld (dividend+2),hl
        call divide
        ld hl,(rest)
        ld (number),hl
        ld hl,(rest+2)
        ld (number+2),hl
place:  ld hl,(number)
        ld de,(number+2)
        ld a,(way)
        add a,a
        jr c,sequential
        ld (ix+33),l
        ld (ix+34),h
        ld (ix+35),e
        ld a,(size+1)
        or a
        ret nz
        ld a,(size)
        cp 64
        ret nc
        ld (ix+36),d
        ret
sequential:
        ld a,l
        and 127
        ld (ix+32),a
        add hl,hl
        rl e
        ld (ix+12),h
        ld (ix+13),e
        ret

; divide: (dividend) := (dividend) / (divisor), (rest); 32 bits
divide: ld hl,0
        ld (rest),hl
        ld (rest+2),hl
        ld b,32
divideNext:
        ld hl,(dividend)
        add hl,hl
        ld (dividend),hl
        ld hl,(dividend+2)
        adc hl,hl
        ld (dividend+2),hl
        ld hl,(rest)
        adc hl,hl
        ld (rest),hl
        ld hl,(rest+2)
        adc hl,hl
        ld (rest+2),hl
        ld hl,(rest)
        ld de,(divisor)
        or a
        sbc hl,de
        push hl
        ld hl,(rest+2)
        ld de,(divisor+2)
        sbc hl,de
        pop de
        jr c,smaller
        ld (rest+2),hl
        ld (rest),de
        ld hl,dividend
        inc (hl)
smaller:
        djnz divideNext
        ret

; control block: what every system keeps in it
logBlock:
        call fetchWord
        push de
        pop ix
        ex de,hl
        ld b,20
blockNext:
        ld a,(hl)
        call note
        inc hl
        djnz blockNext
        ld a,(ix+24)
        and 80h
        call note
        ld de,12
        add hl,de
        ld b,5
blockNext2:
        ld a,(hl)
        call note
        inc hl
        djnz blockNext2
        ret

; address of what a search has found, without time, date and cluster
logFound:
        call fetchWord
        ex de,hl
        ld b,23
        call foundNext
        ld de,6
        add hl,de
        ld b,4
foundNext:
        ld a,(hl)
        call note
        inc hl
        djnz foundNext
        ret

; number of a block: it is open if the last call gave 0
markValid:
        call validity
        ld a,(lastA)
        or a
        ld (hl),0
        ret nz
        ld (hl),1
        ret
; number of a block, length: passes over so much of the script if it is not open
guard:  call validity
        call fetchWord
        ld a,(hl)
        call note
        or a
        ret nz
        ld hl,(next)
        add hl,de
        ld (next),hl
        ret
invalidate:
        call validity
        ld (hl),0
        ret
validity:
        call fetch
        ld hl,valid
        add a,l
        ld l,a
        ret nc
        inc h
        ret

finish: pop hl
        ld hl,(logEnd)
        ld de,LOG
        or a
        sbc hl,de
        ld b,h
        ld c,l
        ex de,hl
        ld a,(0007h)
        cp 0D1h
        jr c,print
        out (2Fh),a
        jp 0
print:  push hl
        push bc
        ld hl,marker
        ld b,4
markerNext:
        ld e,(hl)
        inc hl
        push hl
        push bc
        ld c,5
        call BDOS
        pop bc
        pop hl
        djnz markerNext
        pop bc
        pop hl
printNext:
        ld a,b
        or c
        jp z,0
        ld e,(hl)
        inc hl
        push hl
        dec bc
        push bc
        ld c,5
        call BDOS
        pop bc
        pop hl
        jr printNext

marker: db "LOG:"
next:   dw 0
logEnd: dw 0
results: db 0
lastA:  db 0
size:   dw 0
way:    db 0
number: dw 0,0
dividend: dw 0,0
divisor: dw 0,0
rest:   dw 0,0
valid:  ds 16
end_of_program:
        ds SCRIPT-end_of_program
