program QuickSort;
{ a thousand integers in order }
const N = 1000;
var a: array[1..N] of Integer;
    i, seed, wrong: Integer;
procedure Sort(low, high: Integer);
var i, j, middle, t: Integer;
begin
  i := low; j := high;
  middle := a[(low + high) div 2];
  repeat
    while a[i] < middle do i := i + 1;
    while middle < a[j] do j := j - 1;
    if i <= j then
    begin
      t := a[i]; a[i] := a[j]; a[j] := t;
      i := i + 1; j := j - 1;
    end;
  until i > j;
  if low < j then Sort(low, j);
  if i < high then Sort(i, high);
end;
begin
  seed := 4711;
  for i := 1 to N do
  begin
    seed := seed * 25173 + 13849;
    a[i] := seed;
  end;
  Sort(1, N);
  wrong := 0;
  for i := 2 to N do
    if a[i - 1] > a[i] then wrong := wrong + 1;
  WriteLn(a[1], ' ', a[N], ' ', wrong);
end.
