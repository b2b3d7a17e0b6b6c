; DOS2CASH: makes the current folder ready for a build.
;
; 1. The build's script, TURBOPC.BAT, glues library and program with
;        copy runtime.com/b + NAME.chn/b NAME.com
;    MS-DOS takes the blanks around the plus; DOSBox 0.74's COPY sees an empty name there, copies the library alone
;    and stops with "Illegal Path". So that line of the script's copy in this folder is put into the form that both
;    take, in its place and of the same length, for the script is being read while this program runs:
;        copy /b runtime.com+NAME.chn NAME.com
;
; 2. ; A build that was killed leaves its outcome behind: an errors.txt that the next build did not write would be
; shown as that build's error, and a result.txt as its sizes. So both go before the compiler starts, and with
; them temporary files (*.$$$), which are the compiler's half-written output. The line that starts the
; compiler makes its own result.txt only after this program has ended.
;
; No arguments, no output; exit code 0, or 1 when a file is there and cannot be deleted.
;
; nasm -f bin dos2cash.asm -o DOS2CASH.COM

        org     100h
        cpu     8086

SEARCH_NAME     equ 1Eh                 ; of a found file, in the search record
ATTRIBUTES      equ 1                   ; read-only files are found too: they are worth the exit code

        mov     ah, 1Ah                 ; the search record must not overwrite the command tail's page
        mov     dx, search_record
        int     21h

        mov     dx, errors_name
        call    delete_all
        mov     dx, result_name
        call    delete_all
        mov     dx, temporary_names
        call    delete_all
        call    mend_script

        mov     al, [exit_code]
        mov     ah, 4Ch
        int     21h

; Deletes the files that fit the pattern at DX.
delete_all:
        mov     ah, 4Eh
        mov     cx, ATTRIBUTES
.next:
        int     21h
        jc      .done
        mov     dx, search_record + SEARCH_NAME
        mov     ah, 41h
        int     21h
        jnc     .deleted
        mov     byte [exit_code], 1
.deleted:
        mov     ah, 4Fh
        jmp     .next
.done:
        ret

; Rewrites the line with COPY; a script that is not there or looks otherwise stays as it is.
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
        mov     di, plus_form
        mov     cx, plus_form.end - plus_form
        mov     ax, si
        add     ax, cx
        cmp     ax, dx
        ja      .close                  ; the line is not in the script
        push    si
        repe    cmpsb
        pop     si
        je      .found
        inc     si
        jmp     .search
.found:
        mov     di, si
        add     si, plus_form.end - plus_form
        push    si
        mov     si, joined_form
        mov     cx, joined_form.end - joined_form
        rep     movsb
        pop     si                      ; SI = the program's name, DI = where it goes
.copy:
        cmp     si, dx
        jae     .pad
        lodsb
        cmp     al, 13
        je      .line_end
        cmp     al, '/'
        jne     .keep
        inc     si                      ; leaves out /b
        jmp     .copy
.keep:
        stosb
        jmp     .copy
.line_end:
        dec     si
.pad:
        mov     cx, si
        sub     cx, di
        mov     al, ' '
        rep     stosb
        mov     ax, 4200h               ; back to the start of the file
        xor     cx, cx
        xor     dx, dx
        int     21h
        jc      .close
        mov     ah, 40h
        mov     cx, [script_length]
        mov     dx, script
        int     21h
.close:
        mov     ah, 3Eh
        int     21h
.done:
        ret

SCRIPT_SPACE            equ 1024

script_name:            db "TURBOPC.BAT", 0
plus_form:              db "copy runtime.com/b + "
.end:
joined_form:            db "copy /b runtime.com+"
.end:
errors_name:            db "ERRORS.TXT", 0
result_name:            db "RESULT.TXT", 0
temporary_names:        db "*.$$$", 0
exit_code:              db 0
script_length:          dw 0
search_record:
script                  equ search_record + 128
