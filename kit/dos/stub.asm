; Carries a 32-bit image in a DOS executable.
;
; DOS starts this in real mode. It goes to 32-bit protected mode with segments that begin at the image, so
; that the image is linked at 0 and needs no relocation, and jumps to its first byte. A far call to 18h:0
; goes back to real mode for one INT 21h. Interrupts are off in protected mode.
;
; Memory, from the load address up: this stub, the image with its zeroed data, free memory, the stack, the
; transfer buffer through which INT 21h gets and gives its data. Memory above 1 MB is taken where there is
; some: the largest block of XMS, or what INT 15h tells of; it is given back at the end.
;
; At the image's first instruction EAX holds the image address of the transfer buffer, which is the top of
; the stack too; the buffer holds the 128 bytes of the command tail, its length first. EBX holds the image
; address of the extended memory and ECX its size in kB, 0 when there is none. EDX is what linear address 0
; is in the image.
;
; nasm -f bin -DIMAGE='"file"' -DTRANSFER_SIZE=bytes stub.asm -o NAME.EXE

HEADER_SIZE     equ 32
MINIMUM_MEMORY  equ 192 * 1024 / 16     ; paragraphs behind the file's end without which it does not start

IMAGE_CODE      equ 08h                 ; selectors
IMAGE_DATA      equ 10h
STUB_CODE       equ 18h
STUB_DATA       equ 20h
REAL_CODE       equ 28h                 ; 64 kB limit and 16 bits: what real mode expects to find
REAL_DATA       equ 30h

EXIT_EXCEPTION  equ 253                 ; exit codes
EXIT_NOT_REAL   equ 252

REGISTER_COUNT  equ 7                   ; EAX EBX ECX EDX ESI EDI flags

section .header start=0
        dw      5A4Dh                   ; "MZ"
        dw      (HEADER_SIZE + STUB_SIZE) % 512
        dw      (HEADER_SIZE + STUB_SIZE + 511) / 512
        dw      0                       ; no relocations
        dw      HEADER_SIZE / 16
        dw      MINIMUM_MEMORY
        dw      0FFFFh                  ; as much as there is
        dw      0, real_stack_top       ; SS:SP
        dw      0
        dw      entry, 0                ; IP, CS
        dw      1Ch
        dw      0
        times   HEADER_SIZE - ($ - $$) db 0

section .stub start=HEADER_SIZE vstart=0
stub_start:

bits 32
; The image's way to DOS: far call, EAX = address of its register record. Changes EAX, ECX, EDX only.
service:
        push    ebx
        push    esi
        push    edi
        push    ebp
        mov     edx, STUB_DATA
        mov     es, edx
        mov     [es:image_esp], esp
        mov     [es:record_address], eax
        mov     esi, eax
        mov     edi, record
        mov     ecx, REGISTER_COUNT
        cld
        rep     movsd
        jmp     REAL_CODE:leave_protected_mode

bits 16
leave_protected_mode:
        mov     ax, REAL_DATA
        mov     ds, ax
        mov     es, ax
        mov     ss, ax
        mov     fs, ax
        mov     gs, ax
        mov     eax, cr0
        and     al, 0FEh
        mov     cr0, eax
        db      0EAh                    ; jmp stub:in_real_mode
        dw      in_real_mode
real_segment:
        dw      0
in_real_mode:
        mov     ax, cs
        mov     ds, ax
        mov     ss, ax
        mov     sp, real_stack_top
        lidt    [real_idt]
        cmp     byte [record + 1], 4Ch
        jne     .goes_on
        call    release_extended
.goes_on:
        cmp     byte [failed], 0
        jne     report_exception
        mov     es, [transfer_segment]
        mov     eax, [record]
        mov     ebx, [record + 4]
        mov     ecx, [record + 8]
        mov     edx, [record + 12]
        mov     esi, [record + 16]
        mov     edi, [record + 20]
        mov     ds, [transfer_segment]
        sti
        int     21h
        cli
        mov     [cs:record], eax
        mov     [cs:record + 4], ebx
        mov     [cs:record + 8], ecx
        mov     [cs:record + 12], edx
        mov     [cs:record + 16], esi
        mov     [cs:record + 20], edi
        pushf
        pop     ax
        mov     [cs:record + 24], ax
        mov     ax, cs
        mov     ds, ax
        lidt    [protected_idt]
        mov     eax, cr0
        or      al, 1
        mov     cr0, eax
        jmp     dword STUB_CODE:back_in_protected_mode

bits 32
back_in_protected_mode:
        mov     eax, STUB_DATA
        mov     ds, eax
        mov     edx, IMAGE_DATA
        mov     ss, edx
        mov     esp, [image_esp]
        mov     es, edx
        mov     fs, edx
        mov     gs, edx
        mov     esi, record
        mov     edi, [record_address]
        mov     ecx, REGISTER_COUNT
        cld
        rep     movsd
        mov     ds, edx
        pop     ebp
        pop     edi
        pop     esi
        pop     ebx
        retf

; An exception of the processor is a fault of the program: say so and end, nothing can be mended.
%assign vector 0
%rep 32
exception_ %+ vector:
        mov     al, vector
        jmp     exception
%assign vector vector + 1
%endrep

exception:
        mov     edx, STUB_DATA
        mov     ds, edx
        aam                             ; AH = tens, AL = ones
        add     ax, '00'
        xchg    al, ah
        mov     [exception_number], ax
        mov     byte [failed], 1
        jmp     REAL_CODE:leave_protected_mode

bits 16
report_exception:
        call    release_extended
        sti
        mov     dx, exception_text
        mov     cx, exception_text_end - exception_text
        mov     al, EXIT_EXCEPTION
        jmp     say_and_end

not_real_mode:
        mov     dx, mode_text
        mov     cx, mode_text_end - mode_text
        mov     al, EXIT_NOT_REAL

; Writes CX bytes at CS:DX to the standard output and ends with exit code AL.
say_and_end:
        push    ax
        mov     bx, cs
        mov     ds, bx
        mov     bx, 1
        mov     ah, 40h
        int     21h
        pop     ax
        mov     ah, 4Ch
        int     21h

entry:
        smsw    ax
        test    al, 1
        jnz     not_real_mode
        ; The transfer buffer ends where DOS's gift ends. DS is still the program's prefix.
        mov     bx, [2]
        sub     bx, TRANSFER_SIZE / 16
        mov     [cs:transfer_segment], bx
        mov     es, bx
        mov     si, 80h
        xor     di, di
        mov     cx, 64
        cld
        rep     movsw
        mov     ax, cs
        mov     ds, ax
        mov     [real_segment], ax
        movzx   ecx, ax
        movzx   eax, bx
        sub     eax, ecx
        shl     eax, 4
        sub     eax, image - stub_start
        mov     [transfer_offset], eax
        shl     ecx, 4                  ; linear address of the stub
        mov     di, stub_code_descriptor
        call    set_base
        mov     di, stub_data_descriptor
        call    set_base
        mov     di, real_code_descriptor
        call    set_base
        mov     di, real_data_descriptor
        call    set_base
        add     [gdt_register + 2], ecx
        add     [protected_idt + 2], ecx
        add     ecx, image - stub_start
        mov     [image_base], ecx
        mov     di, image_code_descriptor
        call    set_base
        mov     di, image_data_descriptor
        call    set_base
        call    find_extended
        cli
        lgdt    [gdt_register]
        lidt    [protected_idt]
        mov     eax, cr0
        or      al, 1
        mov     cr0, eax
        jmp     dword STUB_CODE:start_image

; Takes the memory above 1 MB: its linear address and its kB, which stay 0 when there is none. A20 is opened
; for as long as the program runs.
find_extended:
        mov     ax, 4300h
        int     2Fh
        cmp     al, 80h
        jne     .no_xms
        mov     ax, 4310h
        int     2Fh
        mov     [xms_entry], bx
        mov     [xms_entry + 2], es
        mov     ah, 08h                 ; the largest free block
        call    far [xms_entry]
        test    ax, ax
        jz      .none
        mov     [extended_size], ax
        mov     dx, ax
        mov     ah, 09h                 ; is ours now
        call    far [xms_entry]
        cmp     ax, 1
        jne     .forget
        mov     [xms_handle], dx
        mov     byte [xms_taken], 1
        mov     ah, 05h                 ; A20
        call    far [xms_entry]
        cmp     ax, 1
        jne     .give_back
        mov     dx, [xms_handle]
        mov     ah, 0Ch                 ; lock: it stays where it is
        call    far [xms_entry]
        cmp     ax, 1
        jne     .give_back
        mov     [extended_base], bx
        mov     [extended_base + 2], dx
        ret
.no_xms:
        mov     ah, 88h
        clc                             ; some leave the flag alone when they know the call
        int     15h
        jc      .none
        test    ax, ax
        jz      .none
        mov     [extended_size], ax
        mov     dword [extended_base], 100000h
        mov     ax, 2401h               ; A20, by the BIOS and by the port; the image looks whether it is open
        int     15h
        in      al, 92h
        test    al, 2
        jnz     .open
        or      al, 2
        and     al, 0FEh                ; bit 0 would be a reset
        out     92h, al
.open:
        ret
.give_back:
        call    release_extended
.forget:
        mov     word [extended_size], 0
.none:
        ret

; Gives the XMS block back. Interrupts may be on or off; changes AX, BX, DX.
release_extended:
        cmp     byte [xms_taken], 0
        je      .done
        mov     byte [xms_taken], 0
        mov     dx, [xms_handle]
        mov     ah, 0Dh                 ; unlock
        call    far [xms_entry]
        mov     dx, [xms_handle]
        mov     ah, 0Ah                 ; free
        call    far [xms_entry]
        mov     ah, 06h                 ; A20 as it was
        call    far [xms_entry]
.done:
        ret

; Puts the base ECX, which lies below 1 MB, into the descriptor at DI.
set_base:
        mov     [di + 2], cx
        mov     eax, ecx
        shr     eax, 16
        mov     [di + 4], al
        ret

bits 32
start_image:
        mov     eax, STUB_DATA
        mov     ds, eax
        mov     eax, [transfer_offset]
        mov     edx, IMAGE_DATA
        mov     ds, edx
        mov     es, edx
        mov     fs, edx
        mov     gs, edx
        mov     ss, edx
        mov     esp, eax
        mov     edi, STUB_DATA
        mov     es, edi
        xor     edx, edx
        sub     edx, [es:image_base]
        mov     ebx, [es:extended_base]
        add     ebx, edx
        mov     ecx, [es:extended_size]
        mov     edi, ds
        mov     es, edi
        jmp     IMAGE_CODE:0

        align   8
gdt:
        dq      0
image_code_descriptor:
        dw      0FFFFh, 0, 9A00h, 00CFh ; 4 GB, 32 bits; the bases are set at the start
image_data_descriptor:
        dw      0FFFFh, 0, 9200h, 00CFh
stub_code_descriptor:
        dw      0FFFFh, 0, 9A00h, 00CFh
stub_data_descriptor:
        dw      0FFFFh, 0, 9200h, 00CFh
real_code_descriptor:
        dw      0FFFFh, 0, 9A00h, 0
real_data_descriptor:
        dw      0FFFFh, 0, 9200h, 0
gdt_end:

idt:
%assign vector 0
%rep 32
        dw      exception_ %+ vector, STUB_CODE, 8E00h, 0
%assign vector vector + 1
%endrep
idt_end:

gdt_register:
        dw      gdt_end - gdt - 1
        dd      gdt
protected_idt:
        dw      idt_end - idt - 1
        dd      idt
real_idt:
        dw      3FFh
        dd      0

image_esp:              dd 0
record_address:         dd 0
record:                 times REGISTER_COUNT dd 0
transfer_offset:        dd 0
image_base:             dd 0            ; linear
extended_base:          dd 0            ; linear
extended_size:          dd 0            ; kB
xms_entry:              dd 0
xms_handle:             dw 0
xms_taken:              db 0
transfer_segment:       dw 0
failed:                 db 0

exception_text:         db 13, 10, "Internal error: processor exception "
exception_number:       db "00", 13, 10
exception_text_end:
mode_text:              db "This program needs a processor in real mode.", 13, 10
mode_text_end:

        align   16
        times   1024 db 0
real_stack_top:
        align   16
image:
        incbin  IMAGE
STUB_SIZE       equ $ - stub_start
