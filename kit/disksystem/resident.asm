; The part of the system that lies in page 3: what must run while page 0 or 1 changes. start.asm copies it there and fills
; in the places whose names begin with "patch".
;
; "Changes all" means every register but SP.

        public  callBios,copyUser,peekUser,pokeUser
        public  systemCall,startProgram,warmStart,serveRam,leaveTo,pageRam,enableRam,enableRom,callProgram,pageForEntry,tick
        public  readSlot,writeSlot,enableSlot,callInline,callSlot,interrupt
        public  readHidden,writeHidden
        public  patchRomPrimary,patchRomSubslot,patchPageRom,patchPageUser,patchBiosSlot,patchInterruptSlot
        public  patchSlotBios,patchSlotRam,patchRamPrimary,patchSubslotTable
        public  patchTickPrimary,patchTickSubslot
        public  residentEnd

        include machine.asm
        include layout.asm

        org     residentBase
        defb    0,0,0,0,0,0
        jp      systemCall

        include resident_call.asm
        defs    biosTable - $,0
        include resident_table.asm
        include resident_program.asm
        include resident_interrupt.asm
        include resident_slots.asm
        include resident_tick.asm
        include resident_sector.asm
residentEnd:
