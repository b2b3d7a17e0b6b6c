program Output;
{ a table as text }
var i: Integer;
begin
  for i := 1 to 300 do
  begin
    Write('line ', i, ': ', i * 97, ' and ');
    WriteLn(-i);
  end;
end.
