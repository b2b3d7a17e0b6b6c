{ A pair of programs: this one does its part, then the second one takes its place in the memory.

  A large program can be cut that way: only one part is in the memory, and what is in the shared variables stays. The
  second part is SECOND.PAS beside this file. To make it: File > Open > Pascal file, SECOND.PAS, then "Compile to CHN"
  (F7). A .CHN has no run-time library, since the first part has brought it along. Then open this project again. }
program FirstPart;

{ The same declarations, in front of all others, in both parts: so both find them at the same place. }
{$I SHARED.INC}

var
  Second: file;
  Round: Integer;

begin
  WriteLn('This is the first part.');
  Title := SharedTitle;
  Count := 10;
  for Round := 1 to Count do
    Values[Round] := Round * Round;
  WriteLn('It has worked out ', Count, ' numbers.');
  Assign(Second, 'SECOND.CHN');
  {$I-} Chain(Second) {$I+};
  { Who comes here has not gone over. }
  if IOresult <> 0 then
    WriteLn('SECOND.CHN is not there: open SECOND.PAS and press F7.')
end.
