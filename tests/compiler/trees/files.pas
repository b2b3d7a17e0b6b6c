{ Files: what is selected, checked, held in hidden variables, looked up once. }
program Files(input, output);
type
  Item = record n: integer; s: string[8] end;
  Items = file of Item;
  Name = string[12];
var
  t: text; f: Items; u: file; g: file of byte;
  all: array[1..3] of text; p: ^Items;
  r, q: Item; i, n: integer; b: byte; c: char; s: Name; x: real; a: array[1..4] of char;
  buffer: array[0..127] of byte;
function Next(k: integer): integer;
begin writeln('next'); Next := k + 1 end;
procedure Copy2(var from, into: text; var data: Items);
begin
  while not eof(from) do begin readln(from, s); writeln(into, s) end;
  write(data, r)
end;
begin
  assign(t, 'A.TXT'); assign(f, s + '.DAT'); assign(u, 'Z'); reset(t); rewrite(f); reset(u); reset(g);
  {$I-} reset(t) {$I+}; if ioresult <> 0 then halt;
  write(t, 'a', c, i:5, x:8:2, b:Next(i), Next(1), i = 1, a); writeln(t); writeln(t, s:10);
  writeln(output, s); write(con, i); writeln(lst); read(kbd, c); readln(input, i); readln(input); read(input);
  read(t, i, x, s, c); readln(t, a[Next(1)], i); read(t); readln(t);
  writeln(all[i], 'x', Next(i)); read(p^, r, q); write(f, r); read(g, b, buffer[3]);
  if eof or eoln or eof(f) or eoln(t) or seekeof(t) or seekeoln then close(t);
  seek(f, filesize(f)); seek(u, 3); i := filepos(f) + filesize(u); flush(f); erase(u); rename(t, c);
  blockread(u, buffer, 1); blockwrite(u, buffer, n div 2, i); {$I-} blockread(u, mem[$C000], 1, b); {$I+}
  chain(u); execute(t); ovrdrive(1); Copy2(kbd, all[2], p^);
  heapptr := stackptr - recurptr; buflen := 20; conoutptr := addr(Next); cbreak := true;
  i := sizeof(t) + sizeof(f) + sizeof(all)
end.
