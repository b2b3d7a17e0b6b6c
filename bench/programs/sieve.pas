program Sieve;
{ the classic: ten passes over 8191 flags }
const Size = 8190;
var flags: array[0..Size] of Boolean;
    i, prime, k, count, pass: Integer;
begin
  for pass := 1 to 10 do
  begin
    count := 0;
    for i := 0 to Size do flags[i] := True;
    for i := 0 to Size do
      if flags[i] then
      begin
        prime := i + i + 3;
        k := i + prime;
        while k <= Size do
        begin
          flags[k] := False;
          k := k + prime;
        end;
        count := count + 1;
      end;
  end;
  WriteLn(count, ' primes');
end.
