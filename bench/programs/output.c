#include "bench.h"
int i;
void program(void) {
  for (i = 1; i <= 300; i++) {
    text("line "); number(i); text(": "); number(i * 97); text(" and ");
    number(-i); line();
  }
}
