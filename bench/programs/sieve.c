#include "bench.h"
#define SIZE 8190
static unsigned char flags[SIZE + 1];
int i, prime, k, count, pass;
void program(void) {
  for (pass = 1; pass <= 10; pass++) {
    count = 0;
    for (i = 0; i <= SIZE; i++) flags[i] = 1;
    for (i = 0; i <= SIZE; i++)
      if (flags[i]) {
        prime = i + i + 3;
        k = i + prime;
        while (k <= SIZE) {
          flags[k] = 0;
          k += prime;
        }
        count++;
      }
  }
  number(count); text(" primes"); line();
}
