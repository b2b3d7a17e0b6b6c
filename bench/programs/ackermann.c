#include "bench.h"
static int a(int m, int n) {
  if (m == 0) return n + 1;
  if (n == 0) return a(m - 1, 1);
  return a(m - 1, a(m, n - 1));
}
void program(void) { number(a(2, 50)); text(" "); number(a(3, 4)); line(); }
