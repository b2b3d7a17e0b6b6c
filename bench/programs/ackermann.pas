program Ackermann;
{ recursion in its own argument }
function A(m, n: Integer): Integer;
begin
  if m = 0 then A := n + 1
  else if n = 0 then A := A(m - 1, 1)
  else A := A(m - 1, A(m, n - 1));
end;
begin
  WriteLn(A(2, 50), ' ', A(3, 4));
end.
