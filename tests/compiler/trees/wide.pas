{ Parts of the language that the shipped compiler holds back: sets and reals. }
program Wide;
type Color = (red, green, blue); Colors = set of Color; Digits = set of '0'..'9';
const
  Half = 0.5; MinusOne = -1.0;
  Table: array[1..3] of real = (1, -1.5, 1E10);
  Odds: set of 1..20 = [1, 3, 5..9];
var
  r, x: real; c: Colors; d: Digits; i: integer; ch: char; f: boolean; k: Color; ch2: string[10];
function Mean(a, b: real): real;
begin Mean := (a + b) / 2 end;
begin
  r := i; r := i / 2 + Half; r := -r * MinusOne; r := Pi;
  i := trunc(r) + round(x * i); f := r < i; r := sqr(x) + sqrt(2) + random;
  r := Mean(i, 1); r := abs(r); i := abs(i);
  c := []; c := [red, blue] + c - [green]; c := [red..k]; f := k in c; f := ch in ['a'..'z', '_', ch];
  f := c <= [red]; d := d * ['1'];
  writeln(r, r:8, r:8:2); read(r); val('1.5', r, i); str(r:8:2, ch2);
end.
