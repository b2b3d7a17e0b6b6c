program Fannkuch;
{ the greatest number of prefix reversals over all permutations of seven }
const N = 7;
type Row = array[1..N] of Integer;
var p, q, count: Row;
    i, flips, most, first, r, low, high, t, checksum, parity: Integer;
    done: Boolean;
begin
  for i := 1 to N do begin p[i] := i; count[i] := i end;
  most := 0; checksum := 0; parity := 0; done := False;
  repeat
    if p[1] <> 1 then
    begin
      for i := 1 to N do q[i] := p[i];
      flips := 0;
      first := q[1];
      while first <> 1 do
      begin
        low := 1; high := first;
        while low < high do
        begin
          t := q[low]; q[low] := q[high]; q[high] := t;
          low := low + 1; high := high - 1;
        end;
        flips := flips + 1;
        first := q[1];
      end;
      if flips > most then most := flips;
      if Odd(parity) then checksum := checksum - flips else checksum := checksum + flips;
    end;
    r := 2;
    repeat
      if r > N then done := True
      else
      begin
        t := p[1];
        for i := 1 to r - 1 do p[i] := p[i + 1];
        p[r] := t;
        count[r] := count[r] - 1;
        if count[r] = 0 then r := r + 1 else t := -1;
      end;
    until done or (t < 0);
    for i := 2 to r - 1 do count[i] := i;
    parity := parity + 1;
  until done;
  WriteLn(checksum, ' ', most);
end.
