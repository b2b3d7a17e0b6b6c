; DOS2CASH: clears the current folder before a build.
;
; A build that was killed leaves its outcome behind: an errors.txt that the next build did not write would be
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

errors_name:            db "ERRORS.TXT", 0
result_name:            db "RESULT.TXT", 0
temporary_names:        db "*.$$$", 0
exit_code:              db 0
search_record:
