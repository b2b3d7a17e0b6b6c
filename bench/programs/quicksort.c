#include "bench.h"
#define N 1000
int a[N + 1];
int i, seed, wrong;
static void sort(int low, int high) {
  int i = low, j = high, middle, t;
  middle = a[(low + high) / 2];
  do {
    while (a[i] < middle) i++;
    while (middle < a[j]) j--;
    if (i <= j) {
      t = a[i]; a[i] = a[j]; a[j] = t;
      i++; j--;
    }
  } while (i <= j);
  if (low < j) sort(low, j);
  if (i < high) sort(i, high);
}
void program(void) {
  seed = 4711;
  for (i = 1; i <= N; i++) {
    seed = seed * 25173 + 13849;
    a[i] = seed;
  }
  sort(1, N);
  for (i = 2; i <= N; i++)
    if (a[i - 1] > a[i]) wrong++;
  number(a[1]); text(" "); number(a[N]); text(" "); number(wrong); line();
}
