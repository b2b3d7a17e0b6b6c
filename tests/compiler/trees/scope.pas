{ Names that hide each other, fields before variables, forward pointers, variants, aliases. }
program Scope;
const maxint = 5;
type
  Kinds = (number, text); Link = ^Item;
  Item = record
    next: Link;
    case kind: Kinds of
      number: (value: integer; low: byte);
      text: (letters: string[3]; case boolean of true: (a: char); false: (b, c: char));
  end;
  Pair = record left, right: Item end;
var
  value: integer; item1: Item; list: Link; pairs: array[1..3] of Pair; i: integer;
  top: byte absolute $F3B0; same: integer absolute value;
function Depth(p: Link): integer;
var value: char;
  function Depth2: integer;
  var integer: byte;
  begin integer := 1; value := 'x'; Depth2 := Depth(p^.next); Depth := 3 end;
begin
  if p = nil then Depth := 0 else Depth := Depth2 + 1
end;
procedure Fill(var a, b; n: integer);
var bytes: array[0..99] of byte absolute a;
begin
  move(a, b, n); bytes[n] := 0; fillchar(b, n, 0)
end;
begin
  value := maxint;
  with item1 do begin value := maxint; next := list; letters[0] := #3 end;
  {$W9} with pairs[i], left, list^ do begin value := sizeof(Item); right.value := 2 end;
  with pairs[2].left do kind := text;
  Fill(pairs, pairs[1].left.letters[1], 3);
  same := Depth(list) + Depth(nil) + top;
  write(list^.next^.letters:i + 1)
end.
