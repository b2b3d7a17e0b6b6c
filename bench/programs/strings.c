#include "bench.h"
#include <string.h>
char text_line[81], rest[81], w[11];
int i, j, found, length_sum;
static void make_word(int n, char *word) {
  char *end = word;
  do {
    *end++ = (char)('a' + n % 26);
    n /= 26;
  } while (n != 0);
  *end = 0;
}
void program(void) {
  char *at;
  for (i = 1; i <= 100; i++) {
    text_line[0] = 0;
    for (j = 1; j <= 10; j++) {
      make_word(i * j * 7, w);
      strcat(text_line, w);
      strcat(text_line, " ");
    }
    make_word(i * 35, w);
    at = strstr(text_line, w);
    if (at != 0) {
      strcpy(rest, at);
      if (strcmp(rest, "m") > 0) found++;
      j = (int)(at - text_line) + 1;
      memmove(text_line, text_line + j, strlen(text_line) - j + 1);
    }
    for (j = 0; text_line[j] != 0; j++)
      if (text_line[j] == 'c') length_sum++;
    length_sum += (int)strlen(text_line);
  }
  number(found); text(" "); number(length_sum); line();
}
