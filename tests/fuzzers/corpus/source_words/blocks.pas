program P;
var a, b: byte;
procedure A; forward;
begin { x }
  case a of 1: begin end end;
  repeat (* y *) until a = 1;
  b := 2
end.
