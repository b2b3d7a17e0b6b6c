program Fib;
{ recursion: the twentieth Fibonacci number }
function F(n: Integer): Integer;
begin
  if n < 2 then F := n else F := F(n - 1) + F(n - 2);
end;
begin
  WriteLn(F(20));
end.
