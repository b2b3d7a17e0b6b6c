# DOS programs: 32-bit code without an operating system, made by the compiler for 32-bit Windows, which brings
# the headers of the standard library. kit/dos carries it into a DOS executable.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR i386)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_OBJCOPY i686-w64-mingw32-objcopy)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

# DOS gives no exceptions, no threads and no stack that grows. The string class must be made from its
# headers: the one in the library throws.
set(CMAKE_CXX_FLAGS_INIT "-march=i386 -mtune=i486 -ffreestanding -fno-exceptions -fno-rtti -fno-threadsafe-statics \
-mno-stack-arg-probe -fno-asynchronous-unwind-tables -fno-stack-protector -fno-ident -ffunction-sections \
-fdata-sections -D_GLIBCXX_EXTERN_TEMPLATE=0")
# Without "-Os means NDEBUG": nothing here uses assert, and the size is what counts.
set(CMAKE_CXX_FLAGS_MINSIZEREL "-Os")
set(CMAKE_EXECUTABLE_SUFFIX_CXX ".elf")
