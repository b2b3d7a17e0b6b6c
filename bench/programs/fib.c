#include "bench.h"
static int f(int n) { return n < 2 ? n : f(n - 1) + f(n - 2); }
void program(void) { number(f(20)); line(); }
