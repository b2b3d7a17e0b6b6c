#include "bench.h"
#include <string.h>
#define RUNS 100
enum { Ident1, Ident2, Ident3, Ident4, Ident5 };
typedef unsigned char Ident;
typedef struct Record {
  struct Record *next;
  Ident discriminant;
  Ident enumeration;
  int number;
  char text[31];
} Record;
static Record records[2];
Record *global, *next_global;
int int_global;
unsigned char bool_global;
char char1_global, char2_global;
int vector_global[51];
int square_global[51][51];
int run, int1, int2, int3;
char letter;
Ident enum_local;
char string1[31], string2[31];

static void proc7(int a, int b, int *sum) { *sum = b + a + 2; }

static Ident func1(char a, char b) {
  char c1 = a, c2 = c1;
  if (c2 != b) return Ident1;
  char1_global = c1;
  return Ident2;
}

static unsigned char func2(char *a, char *b) {
  int i = 2;
  char c = 'A';
  while (i <= 2)
    if (func1(a[i], b[i + 1]) == Ident1) { c = 'A'; i++; }
  if (c >= 'W' && c < 'Z') i = 7;
  if (c == 'R') return 1;
  if (strcmp(a, b) > 0) { i += 7; int_global = i; return 1; }
  return 0;
}

static unsigned char func3(Ident e) {
  Ident local = e;
  return local == Ident3;
}

static void proc6(Ident e, Ident *result) {
  *result = e;
  if (!func3(e)) *result = Ident4;
  switch (e) {
  case Ident1: *result = Ident1; break;
  case Ident2: *result = int_global > 100 ? Ident1 : Ident4; break;
  case Ident3: *result = Ident2; break;
  case Ident4: break;
  case Ident5: *result = Ident3; break;
  }
}

static void proc3(Record **p) {
  if (global != 0) *p = global->next;
  proc7(10, int_global, &global->number);
}

static void proc1(Record *p) {
  Record *n = p->next;
  *p->next = *global;
  p->number = 5;
  n->number = p->number;
  n->next = p->next;
  proc3(&n->next);
  if (n->discriminant == Ident1) {
    n->number = 6;
    proc6(p->enumeration, &n->enumeration);
    n->next = global->next;
    proc7(n->number, 10, &n->number);
  } else
    *p = *p->next;
}

static void proc2(int *i) {
  int j = *i + 10;
  Ident e = Ident2;
  do {
    if (char1_global == 'A') {
      j--;
      *i = j - int_global;
      e = Ident1;
    }
  } while (e != Ident1);
}

static void proc4(void) {
  bool_global = (char1_global == 'A') | bool_global;
  char2_global = 'B';
}

static void proc5(void) {
  char1_global = 'A';
  bool_global = 0;
}

static void proc8(int *a, int b[51][51], int x, int y) {
  int at = x + 5, i;
  a[at] = y;
  a[at + 1] = a[at];
  a[at + 30] = at;
  for (i = at; i <= at + 1; i++) b[at][i] = at;
  b[at][at - 1]++;
  b[at + 20][at] = a[at];
  int_global = 5;
}

void program(void) {
  next_global = &records[0];
  global = &records[1];
  global->next = next_global;
  global->discriminant = Ident1;
  global->enumeration = Ident3;
  global->number = 40;
  strcpy(global->text, "DHRYSTONE PROGRAM, SOME STRING");
  strcpy(string1, "DHRYSTONE PROGRAM, 1'ST STRING");
  square_global[8][7] = 10;
  for (run = 1; run <= RUNS; run++) {
    proc5();
    proc4();
    int1 = 2;
    int2 = 3;
    strcpy(string2, "DHRYSTONE PROGRAM, 2'ND STRING");
    enum_local = Ident2;
    bool_global = !func2(string1, string2);
    while (int1 < int2) {
      int3 = 5 * int1 - int2;
      proc7(int1, int2, &int3);
      int1++;
    }
    proc8(vector_global, square_global, int1, int3);
    proc1(global);
    for (letter = 'A'; letter <= char2_global; letter++)
      if (enum_local == func1(letter, 'C')) proc6(Ident1, &enum_local);
    int2 = int2 * int1;
    int1 = int2 / int3;
    int2 = 7 * (int2 - int3) - int1;
    proc2(&int1);
  }
  number(int_global); text(" "); number(bool_global); text(" ");
  { char pair[3]; pair[0] = char1_global; pair[1] = char2_global; pair[2] = 0; text(pair); }
  text(" "); number(vector_global[8]); text(" "); number(square_global[8][7]); text(" ");
  number(global->number); text(" "); number(next_global->number); text(" ");
  number(int1); text(" "); number(int2); text(" "); number(int3); line();
}
