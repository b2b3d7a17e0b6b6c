; CONSOLE.COM ARGUMENTS: runs TP3.EXE with these arguments and its standard error output, which would go to the console,
; in CONSOLE.TXT. The exit code is that of TP3.EXE.
        org     100h
        mov     sp,stack_end
        mov     bx,(stack_end - $$ + 100h + 15) / 16
        mov     ah,4Ah                  ; keep this much memory, the rest is for TP3.EXE
        int     21h
        xor     cx,cx
        mov     dx,console
        mov     ah,3Ch                  ; make the file
        int     21h
        jc      failed
        mov     bx,ax
        mov     cx,2
        mov     ah,46h                  ; the handle of errors becomes that of the file
        int     21h
        jc      failed
        mov     [tail_segment],cs
        mov     [block1_segment],cs
        mov     [block2_segment],cs
        mov     bx,parameters
        mov     dx,program
        mov     ax,4B00h                ; run it
        int     21h
        jc      failed
        mov     ah,4Dh                  ; its exit code
        int     21h
        mov     ah,4Ch
        int     21h
failed: mov     ax,4CFFh
        int     21h

program:        db "TP3.EXE",0
console:        db "CONSOLE.TXT",0
parameters:     dw 0                    ; this program's environment
                dw 80h
tail_segment:   dw 0
                dw 5Ch
block1_segment: dw 0
                dw 6Ch
block2_segment: dw 0
stack:          times 256 db 0
stack_end:
