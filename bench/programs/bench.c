#include "bench.h"
/* Output as any library does it: digits by division, each character by a call of the system. */
void character(char c) __naked __sdcccall(1) {
  (void)c;
  __asm
    push ix
    ld e, a
    ld c, #2
    call 5
    pop ix
    ret
  __endasm;
}
void text(const char *s) {
  while (*s != 0) character(*s++);
}
void number(int n) {
  char digits[6];
  unsigned char count = 0;
  unsigned int rest = (unsigned int)n;
  if (n < 0) {
    character('-');
    rest = (unsigned int)-n;
  }
  do {
    digits[count++] = (char)('0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  while (count != 0) character(digits[--count]);
}
void line(void) {
  character('\r');
  character('\n');
}
