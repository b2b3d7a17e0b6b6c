#include "bench.h"
#define N 24
int a[N + 1][N + 1], b[N + 1][N + 1], c[N + 1][N + 1];
int i, j, k, sum;
void program(void) {
  for (i = 1; i <= N; i++)
    for (j = 1; j <= N; j++) {
      a[i][j] = i + j;
      b[i][j] = i - j;
    }
  for (i = 1; i <= N; i++)
    for (j = 1; j <= N; j++) {
      sum = 0;
      for (k = 1; k <= N; k++) sum += a[i][k] * b[k][j];
      c[i][j] = sum;
    }
  sum = 0;
  for (i = 1; i <= N; i++)
    for (j = 1; j <= N; j++) sum ^= c[i][j] + i * j;
  number(sum); line();
}
