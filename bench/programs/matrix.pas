program Matrix;
{ the product of two matrices of 24 by 24 integers }
const N = 24;
type Square = array[1..N, 1..N] of Integer;
var a, b, c: Square;
    i, j, k, sum: Integer;
begin
  for i := 1 to N do
    for j := 1 to N do
    begin
      a[i, j] := i + j;
      b[i, j] := i - j;
    end;
  for i := 1 to N do
    for j := 1 to N do
    begin
      sum := 0;
      for k := 1 to N do sum := sum + a[i, k] * b[k, j];
      c[i, j] := sum;
    end;
  sum := 0;
  for i := 1 to N do
    for j := 1 to N do sum := sum xor (c[i, j] + i * j);
  WriteLn(sum);
end.
