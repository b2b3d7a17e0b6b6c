program Reals;
{ sums of reals as in scientific programs: polynomials, quotients, roots and transcendental functions }
var x, y, sum: Real;
    i: Integer;
    a: array[1..4] of Real;
begin
  sum := 0.0;
  for i := 1 to 50 do
  begin
    x := i / 8.0;
    y := ((x * 0.5 - 1.25) * x + 3.0) * x - 0.75;
    sum := sum + y / (x + 1.0);
  end;
  a[1] := 1.0; a[2] := -1.0; a[3] := -1.0; a[4] := -1.0;
  for i := 1 to 50 do
  begin
    a[1] := (a[1] + a[2] + a[3] - a[4]) * 0.499975;
    a[2] := (a[1] + a[2] - a[3] + a[4]) * 0.499975;
    a[3] := (a[1] - a[2] + a[3] + a[4]) * 0.499975;
    a[4] := (-a[1] + a[2] + a[3] + a[4]) * 0.499975;
  end;
  sum := sum + a[1] + a[2] + a[3] + a[4];
  x := 0.5;
  for i := 1 to 10 do
    x := 0.5 * ArcTan(2.0 * Sin(x) * Cos(x) / (Cos(x + x) + 1.5));
  for i := 1 to 10 do
    sum := sum + Sqrt(Exp(Ln(x + i) / 0.50000025));
  WriteLn(Trunc(sum));
end.
