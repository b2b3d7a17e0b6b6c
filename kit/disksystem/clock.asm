; Date and time: the clock chip's, or without one a count of frames from 1 January 1984 on.

; Registers of the chip: seconds, minutes, hours from 0 on, then day of the week, day, month, year since 1980, the ones first.
clockSecond     equ 0
clockMinute     equ 2
clockHour       equ 4
clockDay        equ 7
clockMonth      equ 9
clockYear       equ 11
clockMode       equ 13          ; bit 3: the clock runs; bits 1-0: block
clockReset      equ 15

; Bytes of softClock.
softSecond      equ softClock
softMinute      equ softClock + 1
softHour        equ softClock + 2
softDay         equ softClock + 3
softMonth       equ softClock + 4
softYear        equ softClock + 5

; findClock: notes whether there is a clock chip, and starts the count without one. Changes all.
findClock:
        ld      a,1
        ld      (softDay),a
        ld      (softMonth),a
        ld      a,4
        ld      (softYear),a
        ; the chip's alarm registers, in block 1, hold four bits; without a chip nothing answers
        ld      a,clockMode
        out     (clockAddress),a
        ld      a,9                     ; it runs, block 1
        out     (clockData),a
        ld      a,clockSecond + 2
        out     (clockAddress),a
        in      a,(clockData)
        ld      b,a
        ld      a,5
        call    _holds
        ld      a,10 - 8
        call    z,_holds
        push    af
        ld      a,b
        out     (clockData),a
        ld      a,clockMode
        out     (clockAddress),a
        ld      a,8
        out     (clockData),a
        pop     af
        ret     nz
        ld      a,1
        ld      (clockPresent),a
        ret
_holds:
        ld      c,a
        out     (clockData),a
        in      a,(clockData)
        and     15
        cp      c
        ret

; readPair: In: A = register of the ones. Out: A = the number. Changes F, BC.
readPair:
        ld      b,a
        inc     a
        call    readClock
        ld      c,a
        add     a,a
        add     a,a
        add     a,c
        add     a,a
        ld      c,a
        ld      a,b
        call    readClock
        add     a,c
        ret

; readClock: In: A = register. Out: A = its four bits. Changes F.
readClock:
        out     (clockAddress),a
        in      a,(clockData)
        and     15
        ret

; now: Out: softClock = the time, read twice from the chip where a second ends in between. Changes AF, BC, HL.
now:
        ld      a,(clockPresent)
        or      a
        ret     z
        ld      a,clockMode
        out     (clockAddress),a
        ld      a,8
        out     (clockData),a
_again:
        ld      a,clockSecond
        call    readPair
        ld      (softSecond),a
        ld      a,clockMinute
        call    readPair
        ld      (softMinute),a
        ld      a,clockHour
        call    readPair
        ld      (softHour),a
        ld      a,clockDay
        call    readPair
        ld      (softDay),a
        ld      a,clockMonth
        call    readPair
        ld      (softMonth),a
        ld      a,clockYear
        call    readPair
        ld      (softYear),a
        ld      a,clockSecond
        call    readPair
        ld      hl,softSecond
        cp      (hl)
        jr      nz,_again
        ret

; 2A: Out: HL = year, D = month, E = day, A = day of the week, 0 for Sunday.
functionGetDate:
        call    now
        call    dayOfWeek
        push    af
        ld      a,(softYear)
        ld      l,a
        ld      h,0
        ld      de,1980
        add     hl,de
        ld      a,(softMonth)
        ld      d,a
        ld      a,(softDay)
        ld      e,a
        pop     af
        ld      b,h
        jp      giveAll

; 2C: Out: H = hours, L = minutes, D = seconds, E = 0.
functionGetTime:
        call    now
        ld      a,(softHour)
        ld      h,a
        ld      a,(softMinute)
        ld      l,a
        ld      a,(softSecond)
        ld      d,a
        ld      e,0
        xor     a
        ld      b,h
        jp      giveAll

; 2B: In: HL = year, D = month, E = day. Out: A = 0, or 0FFh when there is no such day from 1980 to 2079.
functionSetDate:
        push    de
        ld      de,1980
        or      a
        sbc     hl,de
        pop     de
        jp      c,functionFails
        ld      a,h
        or      a
        jp      nz,functionFails
        ld      a,l
        cp      100
        jp      nc,functionFails
        ld      a,d
        dec     a
        cp      12
        jp      nc,functionFails
        ld      a,l
        ld      l,d
        call    daysOfMonth             ; A = year, L = month: C = days
        ld      b,a
        ld      a,e
        dec     a
        cp      c
        jp      nc,functionFails
        push    bc
        push    de
        call    now
        pop     de
        pop     bc
        ld      a,b
        ld      (softYear),a
        ld      a,d
        ld      (softMonth),a
        ld      a,e
        ld      (softDay),a
        call    writeClock
        xor     a
        ret

; 2D: In: H = hours, L = minutes, D = seconds. Out: A = 0, or 0FFh when there is no such time.
functionSetTime:
        ld      a,h
        cp      24
        jp      nc,functionFails
        ld      a,l
        cp      60
        jp      nc,functionFails
        ld      a,d
        cp      60
        jp      nc,functionFails
        push    hl
        push    de
        call    now
        pop     de
        pop     hl
        ld      a,h
        ld      (softHour),a
        ld      a,l
        ld      (softMinute),a
        ld      a,d
        ld      (softSecond),a
        call    writeClock
        xor     a
        ret

; daysOfMonth: In: A = year - 1980, L = month. Out: C = its days. Keeps A, DE; changes F, L, H.
daysOfMonth:
        push    af
        and     3
        ld      a,28
        jr      nz,_february
        inc     a
_february:
        ld      c,a
        ld      a,l
        cp      2
        jr      z,_end
        ld      c,30
        cp      4
        jr      z,_end
        cp      6
        jr      z,_end
        cp      9
        jr      z,_end
        cp      11
        jr      z,_end
        inc     c
_end:
        pop     af
        ret

; dayOfWeek: In: softClock. Out: A = 0 for Sunday to 6. Changes BC, DE, HL, F. 1 January 1980 was a Tuesday.
dayOfWeek:
        ld      a,(softYear)
        ld      e,a
        ld      d,0
        ld      hl,2
        add     hl,de                   ; each year moves the day by one,
        add     a,3
        rrca
        rrca
        and     3Fh
        ld      e,a
        add     hl,de                   ; each leap year before by one more
        ld      b,1
_month:
        ld      a,(softMonth)
        cp      b
        jr      z,_day
        push    hl
        ld      l,b
        ld      a,(softYear)
        call    daysOfMonth
        pop     hl
        ld      e,c
        add     hl,de
        inc     b
        jr      _month
_day:
        ld      a,(softDay)
        dec     a
        ld      e,a
        add     hl,de
        ld      de,7
_week:
        or      a
        sbc     hl,de
        jr      nc,_week
        add     hl,de
        ld      a,l
        ret

; writeClock: softClock into the chip, where there is one. Changes AF, BC, DE, HL.
writeClock:
        ld      a,(clockPresent)
        or      a
        ret     z
        ld      a,clockMode
        out     (clockAddress),a
        ld      a,9                     ; block 1: 24 hours, and the place in the cycle of leap years
        out     (clockData),a
        ld      a,10
        out     (clockAddress),a
        ld      a,1
        out     (clockData),a
        inc     a
        ld      a,11
        out     (clockAddress),a
        ld      a,(softYear)
        and     3
        out     (clockData),a
        ld      a,clockMode
        out     (clockAddress),a
        xor     a                       ; block 0, stopped while it changes
        out     (clockData),a
        ld      hl,clockSteps
_step:
        ld      a,(hl)
        inc     hl
        cp      0FFh
        jr      z,_start
        out     (clockAddress),a
        ld      a,(hl)
        inc     hl
        call    valueOfStep
        out     (clockData),a
        jr      _step
_start:
        call    dayOfWeek
        ld      b,a
        ld      a,6
        out     (clockAddress),a
        ld      a,b
        out     (clockData),a
        ld      a,clockMode
        out     (clockAddress),a
        ld      a,8
        out     (clockData),a
        ret

; valueOfStep: In: A = second byte of a step. Out: A = value for the register. Changes F, BC, DE.
valueOfStep:
        cp      stepTens
        ret     c
        ld      b,a
        and     7
        add     a,low softClock
        ld      e,a
        ld      d,high softClock
        ld      a,(de)
        ld      c,0
_tens:
        sub     10
        jr      c,_ones
        inc     c
        jr      _tens
_ones:
        add     a,10
        bit     4,b
        ret     nz                      ; stepOnes
        bit     5,b
        jr      nz,_alone
        ld      a,c                     ; stepTens
        ret
_alone:
        inc     c
        dec     c
        ret     z
        xor     a
        ret

; Registers and their values: a digit, or with a byte of softClock its tens, its ones, or its ones where it has no tens, else 0.
; The chip holds a date and a time that there are after each step: one that there is not would become another.
stepTens        equ 80h
stepOnes        equ 90h
stepAlone       equ 0A0h
clockSteps:
        defb    clockDay + 1,1,clockDay,0       ; the tenth is in every month
        defb    clockYear,stepOnes + 5,clockYear + 1,stepTens + 5
        defb    clockMonth,1,clockMonth + 1,stepTens + 4,clockMonth,stepOnes + 4
        defb    clockDay,stepAlone + 3,clockDay + 1,stepTens + 3,clockDay,stepOnes + 3
        defb    clockHour + 1,0,clockHour,0,clockHour + 1,stepTens + 2,clockHour,stepOnes + 2
        defb    clockMinute + 1,stepTens + 1,clockMinute,stepOnes + 1
        defb    clockSecond + 1,stepTens,clockSecond,stepOnes
        defb    0FFh

; packedTime: Out: HL = time, DE = date, as directory entries hold them. Changes AF, BC.
packedTime:
        call    now
        ld      a,(softMinute)
        ld      l,a
        ld      h,0
        add     hl,hl
        add     hl,hl
        add     hl,hl
        add     hl,hl
        add     hl,hl
        ld      a,(softHour)
        add     a,a
        add     a,a
        add     a,a
        or      h
        ld      h,a
        ld      a,(softSecond)
        srl     a
        or      l
        ld      l,a
        push    hl
        ld      a,(softMonth)
        ld      l,a
        ld      h,0
        add     hl,hl
        add     hl,hl
        add     hl,hl
        add     hl,hl
        add     hl,hl
        ld      a,(softYear)
        add     a,a
        or      h
        ld      d,a
        ld      a,(softDay)
        or      l
        ld      e,a
        pop     hl
        ret

; hookTimer: from now on the BIOS's timer hook calls tick. Changes all.
hookTimer:
        ld      a,(identityByte)
        rlca
        ld      a,60
        jr      nc,_rate
        ld      a,50
_rate:
        ld      (frameRate),a
        ld      (clockFrames),a
        ld      hl,timerHook
        ld      de,tickTail
        ld      bc,5
        ldir
        ld      a,0C3h
        ld      (timerHook),a
        ld      hl,tick
        ld      (timerHook + 1),hl
        ret

; timePasses: motorFrames or clockFrames has got to 0. Changes all.
timePasses:
        ld      a,(motorFrames)
        or      a
        call    z,entryMotorOff
        ld      hl,clockFrames
        ld      a,(hl)
        or      a
        ret     nz
        ld      a,(frameRate)
        ld      (hl),a
        ; one second more
        ld      hl,softSecond
        call    _sixty
        ret     nz
        inc     hl
        call    _sixty
        ret     nz
        inc     hl
        inc     (hl)
        ld      a,(hl)
        sub     24
        ret     nz
        ld      (hl),a
        ld      a,(softMonth)
        ld      l,a
        ld      a,(softYear)
        call    daysOfMonth
        ld      hl,softDay
        inc     (hl)
        ld      a,c
        cp      (hl)
        ret     nc
        ld      (hl),1
        inc     hl
        inc     (hl)
        ld      a,12
        cp      (hl)
        ret     nc
        ld      (hl),1
        inc     hl
        inc     (hl)
        ret
_sixty:
        inc     (hl)
        ld      a,(hl)
        sub     60
        ret     nz
        ld      (hl),a
        ret
