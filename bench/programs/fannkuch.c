#include "bench.h"
#define N 7
int p[N + 1], q[N + 1], count[N + 1];
int i, flips, most, first, r, low, high, t, checksum, parity;
unsigned char done;
void program(void) {
  for (i = 1; i <= N; i++) { p[i] = i; count[i] = i; }
  do {
    if (p[1] != 1) {
      for (i = 1; i <= N; i++) q[i] = p[i];
      flips = 0;
      first = q[1];
      while (first != 1) {
        low = 1; high = first;
        while (low < high) {
          t = q[low]; q[low] = q[high]; q[high] = t;
          low++; high--;
        }
        flips++;
        first = q[1];
      }
      if (flips > most) most = flips;
      if (parity & 1) checksum -= flips; else checksum += flips;
    }
    r = 2;
    do {
      if (r > N) done = 1;
      else {
        t = p[1];
        for (i = 1; i <= r - 1; i++) p[i] = p[i + 1];
        p[r] = t;
        count[r]--;
        if (count[r] == 0) r++; else t = -1;
      }
    } while (!done && t >= 0);
    for (i = 2; i <= r - 1; i++) count[i] = i;
    parity++;
  } while (!done);
  number(checksum); text(" "); number(most); line();
}
