program Strings;
{ builds words, looks them up in a text, takes them out and compares them }
type Text = string[80];
     Word = string[10];
var line, rest: Text;
    w: Word;
    i, j, found, length_sum: Integer;
procedure MakeWord(n: Integer; var w: Word);
begin
  w := '';
  repeat
    w := w + Chr(Ord('a') + n mod 26);
    n := n div 26;
  until n = 0;
end;
begin
  found := 0; length_sum := 0;
  for i := 1 to 100 do
  begin
    line := '';
    for j := 1 to 10 do
    begin
      MakeWord(i * j * 7, w);
      line := line + w + ' ';
    end;
    MakeWord(i * 35, w);
    j := Pos(w, line);
    if j > 0 then
    begin
      rest := Copy(line, j, 80);
      if rest > 'm' then found := found + 1;
      Delete(line, 1, j);
    end;
    for j := 1 to Length(line) do
      if line[j] = 'c' then length_sum := length_sum + 1;
    length_sum := length_sum + Length(line);
  end;
  WriteLn(found, ' ', length_sum);
end.
