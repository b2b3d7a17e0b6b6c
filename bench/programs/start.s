	.module start
	.globl _program
	.globl l__INITIALIZER
	.globl s__INITIALIZED
	.globl s__INITIALIZER
	.globl s__DATA
	.globl l__DATA
	.area _HEADER (ABS)
	.org 0x100
	ld hl, (6)
	ld sp, hl
	ld hl, #s__DATA
	ld bc, #l__DATA
clear:
	ld a, b
	or a, c
	jr z, cleared
	ld (hl), #0
	inc hl
	dec bc
	jr clear
cleared:
	ld bc, #l__INITIALIZER
	ld a, b
	or a, c
	jr z, ready
	ld de, #s__INITIALIZED
	ld hl, #s__INITIALIZER
	ldir
ready:
	call _program
	jp 0
	.area _HOME
	.area _CODE
	.area _INITIALIZER
	.area _GSINIT
	.area _GSFINAL
	.area _DATA
	.area _INITIALIZED
	.area _BSS
	.area _HEAP
