#include "bench.h"
#include <math.h>
float x, y, sum, a[5];
int i;
void program(void) {
  for (i = 1; i <= 50; i++) {
    x = i / 8.0f;
    y = ((x * 0.5f - 1.25f) * x + 3.0f) * x - 0.75f;
    sum = sum + y / (x + 1.0f);
  }
  a[1] = 1.0f; a[2] = -1.0f; a[3] = -1.0f; a[4] = -1.0f;
  for (i = 1; i <= 50; i++) {
    a[1] = (a[1] + a[2] + a[3] - a[4]) * 0.499975f;
    a[2] = (a[1] + a[2] - a[3] + a[4]) * 0.499975f;
    a[3] = (a[1] - a[2] + a[3] + a[4]) * 0.499975f;
    a[4] = (-a[1] + a[2] + a[3] + a[4]) * 0.499975f;
  }
  sum = sum + a[1] + a[2] + a[3] + a[4];
  x = 0.5f;
  for (i = 1; i <= 10; i++)
    x = 0.5f * atanf(2.0f * sinf(x) * cosf(x) / (cosf(x + x) + 1.5f));
  for (i = 1; i <= 10; i++)
    sum = sum + sqrtf(expf(logf(x + i) / 0.50000025f));
  number((int)sum); line();
}
