; DOS2CASH: what a build in DOSBox needs before and after the compiler.
;
; Without a name, as the first line of the build's script, TURBOPC.BAT, it makes the current folder ready:
;
; 1. DOSBox is locked (Z:\CONFIG.COM -securemode): whatever a project brings along and a build starts by mistake can then
;    mount no other folder of the host. Elsewhere than in DOSBox there is no such program, and nothing to lock.
;
; 2. A build that was killed leaves its outcome behind: an errors.txt that the next build did not write would be
;    shown as that build's error, and a result.txt as its sizes. So both go before the compiler starts, and with
;    them the compiler's half-written output. The line that starts the compiler makes its own result.txt only after
;    this program has ended. Other files of the folder are the user's.
;
; 3. The script glues library and program with
;        copy runtime.com/b + NAME.chn/b NAME.com
;    which DOSBox 0.74 does not understand, and which also runs when the compiler has failed. So that line of the script's
;    copy in this folder becomes a call of this program, in its place and of the same length, for the script is being read
;    while this program runs:
;        DOS2CASH NAME
;    A script without that line makes no program. It gets a last line that only checks:
;        DOS2CASH /H
;
; With a name, after the compiler: when it has succeeded, NAME.COM becomes RUNTIME.COM and NAME.CHN, or is not there at
; all. A compiler that did not come to its end, and a disk that does not hold the program, are told in errors.txt, which
; is where a build's errors are looked for.
;
; No output; exit code 0, or 1 when a file is there and cannot be deleted, or when there is no program.
;
; nasm -f bin dos2cash.asm -o DOS2CASH.COM

        org     100h
        cpu     8086

COMMAND_TAIL    equ 80h                 ; its length, then the text and a CR
SCRIPT_SPACE    equ 1024                ; bytes of the script that are read
CHUNK           equ 16384               ; bytes copied at once
LONGEST_NAME    equ 8
STACK_SPACE     equ 512

        cld
        mov     sp, stack_end
        mov     bx, (program_end - $$ + 100h + 15) / 16
        mov     ah, 4Ah                 ; the rest of memory is for CONFIG
        int     21h

        mov     si, COMMAND_TAIL + 1
.blanks:
        lodsb
        cmp     al, ' '
        je      .blanks
        cmp     al, 13
        je      ready_folder
        jmp     finish_program

ready_folder:
        call    lock_dosbox
        mov     dx, errors_name
        call    delete
        mov     dx, result_name
        call    delete
        mov     dx, temporary_name
        call    delete
        call    mend_script
exit:
        mov     al, [exit_code]
        mov     ah, 4Ch
        int     21h

; Runs CONFIG -securemode, its words to the NUL device.
lock_dosbox:
        mov     ah, 45h                 ; a second handle keeps standard output
        mov     bx, 1
        int     21h
        jc      .run
        mov     [kept_output], ax
        mov     ax, 3D01h
        mov     dx, nul_name
        int     21h
        jc      .run
        mov     bx, ax
        mov     cx, 1
        mov     ah, 46h
        int     21h
        mov     ah, 3Eh
        int     21h
.run:
        mov     [parameters.tail + 2], cs
        mov     [parameters.first + 2], cs
        mov     [parameters.second + 2], cs
        mov     [kept_stack], sp
        mov     dx, config_name
        mov     bx, parameters
        mov     ax, 4B00h
        int     21h
        mov     ax, cs                  ; DOS 2 gives back no register
        cli
        mov     ss, ax
        mov     sp, [cs:kept_stack]
        sti
        mov     ds, ax
        mov     es, ax
        mov     bx, [kept_output]
        or      bx, bx
        jz      .done
        mov     cx, 1
        mov     ah, 46h
        int     21h
        mov     ah, 3Eh
        int     21h
.done:
        ret

; Deletes the file of the name at DX; there need not be one.
delete:
        mov     ah, 41h
        int     21h
        jnc     .done
        cmp     ax, 2                   ; not found
        je      .done
        mov     byte [exit_code], 1
.done:
        ret

; Rewrites the line with COPY, or puts the line that checks behind the others. A script that is not there stays so.
mend_script:
        mov     ax, 3D02h
        mov     dx, script_name
        int     21h
        jc      .done
        mov     bx, ax
        mov     ah, 3Fh
        mov     cx, SCRIPT_SPACE
        mov     dx, script
        int     21h
        jc      .close
        mov     [script_length], ax
        mov     dx, ax
        add     dx, script              ; DX = end of the text
        mov     si, script
.search:
        mov     di, copy_words
        mov     cx, copy_words.end - copy_words
        mov     ax, si
        add     ax, cx
        cmp     ax, dx
        ja      .append                 ; the line is not in the script
        push    si
        repe    cmpsb
        pop     si
        je      .found
        inc     si
        jmp     .search
.found:
        mov     di, si
        add     si, copy_words.end - copy_words
        push    si
        mov     si, own_words
        mov     cx, own_words.end - own_words
        rep     movsb
        pop     si                      ; SI = the program's name, DI = where it goes
.copy:
        cmp     si, dx
        jae     .pad
        lodsb
        cmp     al, '.'                 ; of .chn/b
        je      .pad_line
        cmp     al, 13
        je      .line_end
        stosb
        jmp     .copy
.pad_line:
        cmp     si, dx
        jae     .pad
        lodsb
        cmp     al, 13
        jne     .pad_line
.line_end:
        dec     si
.pad:
        mov     cx, si
        sub     cx, di
        mov     al, ' '
        rep     stosb
        xor     cx, cx                  ; back to the start of the file
        xor     dx, dx
        mov     ax, 4200h
        int     21h
        jc      .close
        mov     cx, [script_length]
        mov     dx, script
        jmp     .write
.append:
        mov     cx, check_line.end - check_line
        mov     dx, check_line
.write:
        mov     ah, 40h
        int     21h
.close:
        mov     ah, 3Eh
        int     21h
.done:
        ret

; SI = after the first character of the name in the command tail.
finish_program:
        dec     si
        mov     ax, 3D00h
        mov     dx, errors_name
        int     21h
        jnc     no_program              ; the compiler has said why (DOS closes the file)
        cmp     byte [si], '/'
        je      .check
        call    take_name
        jc      no_program
        call    find_sizes
        jc      .not_compiled
        call    glue
        jnc     exit
        mov     dx, com_name
        call    delete                  ; first of all, for the record needs room too
        mov     dx, result_name
        call    delete
        mov     si, full_words
        call    write_record
        jmp     no_program
.check:
        call    find_sizes
        jnc     exit
.not_compiled:
        mov     si, unfinished_words
        call    write_record
no_program:
        mov     byte [exit_code], 1
        jmp     exit

; Makes the names of this program's files from the name at SI. Carry when no file can have it.
take_name:
        mov     cx, LONGEST_NAME + 1
        mov     di, chn_name
.next:
        lodsb
        cmp     al, ' '
        jbe     .end
        stosb
        loop    .next
        stc
        ret
.end:
        mov     cx, di
        sub     cx, chn_name            ; CX = its length
        push    cx
        mov     si, chn_ending
        call    put_ending
        pop     cx
        push    cx
        mov     si, chn_name
        mov     di, com_name
        rep     movsb
        mov     si, com_ending
        call    put_ending
        pop     cx
        mov     si, chn_name
        mov     di, record.file
        rep     movsb
        mov     si, pas_ending
        call    put_ending
        dec     di
        mov     [record_end], di
        clc
        ret

put_ending:
        mov     cx, 5
        rep     movsb
        ret

; Carry when the compiler's output has no sizes, which it prints last of all.
find_sizes:
        mov     ax, 3D00h
        mov     dx, result_name
        int     21h
        jc      .done
        mov     bx, ax
        mov     ah, 3Fh
        mov     cx, SCRIPT_SPACE
        mov     dx, script
        int     21h
        pushf
        push    ax
        mov     ah, 3Eh
        int     21h
        pop     dx
        popf
        jc      .done
        add     dx, script              ; DX = end of the text
        mov     si, script
.search:
        mov     ax, si
        add     ax, 4
        cmp     dx, ax
        jb      .done                   ; with carry
        cmp     word [si], 'Co'
        jne     .next
        cmp     word [si + 2], 'de'
        je      .done                   ; without
.next:
        inc     si
        jmp     .search
.done:
        ret

; Makes the program of library and chain image. Carry when that fails.
glue:
        mov     dx, com_name            ; a link would lead the bytes into another file
        call    delete
        mov     ah, 3Ch
        xor     cx, cx
        mov     dx, com_name
        int     21h
        jc      .done
        mov     [com_handle], ax
        mov     dx, runtime_name
        call    append
        jc      .close
        mov     dx, chn_name
        call    append
.close:
        pushf
        mov     bx, [com_handle]
        mov     ah, 3Eh
        int     21h
        popf
        jc      .done
        ; DOSBox writes only when the file is closed, and does not tell whether that went well.
        mov     ax, 3D00h
        mov     dx, com_name
        int     21h
        jc      .done
        mov     bx, ax
        mov     ax, 4202h
        xor     cx, cx
        xor     dx, dx
        int     21h
        push    ax
        push    dx
        mov     ah, 3Eh
        int     21h
        pop     dx
        pop     ax
        cmp     ax, [written]
        jne     .short
        cmp     dx, [written + 2]
        je      .done                   ; without carry
.short:
        stc
.done:
        ret

; Appends the file of the name at DX. Carry when that fails, or when it is empty.
append:
        mov     ax, 3D00h
        int     21h
        jc      .done
        mov     si, ax                  ; SI = its handle
        mov     byte [is_empty], 1
.chunk:
        mov     bx, si
        mov     ah, 3Fh
        mov     cx, CHUNK
        mov     dx, buffer
        int     21h
        jc      .close
        or      ax, ax
        jz      .end
        mov     byte [is_empty], 0
        mov     cx, ax
        add     [written], ax
        adc     word [written + 2], 0
        mov     bx, [com_handle]
        mov     ah, 40h
        int     21h
        jc      .close
        cmp     ax, cx                  ; carry when less was written
        jae     .chunk
        jmp     .close
.end:
        cmp     byte [is_empty], 1
        cmc                             ; carry when it is 1
.close:
        pushf
        mov     bx, si
        mov     ah, 3Eh
        int     21h
        popf
.done:
        ret

; Writes the error record that ends with the words at SI (up to a zero).
write_record:
        mov     di, [record_end]
.copy:
        lodsb
        stosb
        or      al, al
        jnz     .copy
        dec     di
        mov     ah, 3Ch
        xor     cx, cx
        mov     dx, errors_name
        int     21h
        jc      .done
        mov     bx, ax
        mov     cx, di
        mov     dx, record
        sub     cx, dx
        mov     ah, 40h
        int     21h
        mov     ah, 3Eh
        int     21h
.done:
        ret

config_name:            db "Z:\CONFIG.COM", 0
config_tail:            db .end - config_tail - 1, " -securemode"
.end:                   db 13
nul_name:               db "NUL", 0
script_name:            db "TURBOPC.BAT", 0
copy_words:             db "copy runtime.com/b + "
.end:
own_words:              db "DOS2CASH "
.end:
check_line:             db "DOS2CASH /H", 13, 10
.end:
errors_name:            db "ERRORS.TXT", 0
result_name:            db "RESULT.TXT", 0
temporary_name:         db "TP3OUT.$$$", 0      ; what the compiler writes before it takes its name
runtime_name:           db "RUNTIME.COM", 0
chn_ending:             db ".CHN", 0
com_ending:             db ".COM", 0
pas_ending:             db ".PAS", 0
full_words:             db '",1,1,94,"Disk full: there is no room for the program"', 13, 10, 0
unfinished_words:       db '",1,1,98,"The compiler did not come to its end"', 13, 10, 0
exit_code:              db 0
is_empty:               db 0
kept_output:            dw 0
kept_stack:             dw 0
script_length:          dw 0
com_handle:             dw 0
written:                dd 0
record_end:             dw record.file + 3      ; where the record's words begin
parameters:             dw 0                    ; the same environment
.tail:                  dw config_tail, 0
.first:                 dw 5Ch, 0
.second:                dw 6Ch, 0
chn_name:               times LONGEST_NAME + 6 db 0
com_name:               times LONGEST_NAME + 6 db 0
record:                 db '"'
.file:                  db "TP3", 0
; What follows is not in the file.
script                  equ record + 128
buffer                  equ script + SCRIPT_SPACE
stack_end               equ buffer + CHUNK + STACK_SPACE
program_end             equ stack_end
