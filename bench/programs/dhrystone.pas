program Dhrystone;
{ the synthetic mix of statements of system programs: records, pointers, strings, calls }
const Runs = 100;
type Ident = (Ident1, Ident2, Ident3, Ident4, Ident5);
     String30 = string[30];
     RecordPointer = ^RecordType;
     RecordType = record
       next: RecordPointer;
       discriminant: Ident;
       enumeration: Ident;
       number: Integer;
       text: String30;
     end;
     Vector = array[1..50] of Integer;
     Square = array[1..50, 1..50] of Integer;
var global, nextGlobal: RecordPointer;
    intGlobal: Integer;
    boolGlobal: Boolean;
    char1Global, char2Global: Char;
    vectorGlobal: Vector;
    squareGlobal: Square;
    run, int1, int2, int3: Integer;
    index: Char;
    enumLocal: Ident;
    string1, string2: String30;

procedure Proc7(a, b: Integer; var sum: Integer);
begin
  sum := b + a + 2;
end;

function Func1(a, b: Char): Ident;
var c1, c2: Char;
begin
  c1 := a;
  c2 := c1;
  if c2 <> b then Func1 := Ident1
  else begin char1Global := c1; Func1 := Ident2 end;
end;

function Func2(var a, b: String30): Boolean;
var i: Integer; c: Char;
begin
  i := 2;
  c := 'A';
  while i <= 2 do
    if Func1(a[i], b[i + 1]) = Ident1 then begin c := 'A'; i := i + 1 end;
  if (c >= 'W') and (c < 'Z') then i := 7;
  if c = 'R' then Func2 := True
  else if a > b then begin i := i + 7; intGlobal := i; Func2 := True end
  else Func2 := False;
end;

function Func3(e: Ident): Boolean;
var local: Ident;
begin
  local := e;
  Func3 := local = Ident3;
end;

procedure Proc6(e: Ident; var result: Ident);
begin
  result := e;
  if not Func3(e) then result := Ident4;
  case e of
    Ident1: result := Ident1;
    Ident2: if intGlobal > 100 then result := Ident1 else result := Ident4;
    Ident3: result := Ident2;
    Ident4: ;
    Ident5: result := Ident3;
  end;
end;

procedure Proc3(var p: RecordPointer);
begin
  if global <> nil then p := global^.next;
  Proc7(10, intGlobal, global^.number);
end;

procedure Proc1(p: RecordPointer);
var n: RecordPointer;
begin
  n := p^.next;
  p^.next^ := global^;
  p^.number := 5;
  n^.number := p^.number;
  n^.next := p^.next;
  Proc3(n^.next);
  if n^.discriminant = Ident1 then
  begin
    n^.number := 6;
    Proc6(p^.enumeration, n^.enumeration);
    n^.next := global^.next;
    Proc7(n^.number, 10, n^.number);
  end
  else p^ := p^.next^;
end;

procedure Proc2(var i: Integer);
var j: Integer; e: Ident;
begin
  j := i + 10;
  e := Ident2;
  repeat
    if char1Global = 'A' then
    begin
      j := j - 1;
      i := j - intGlobal;
      e := Ident1;
    end;
  until e = Ident1;
end;

procedure Proc4;
begin
  boolGlobal := (char1Global = 'A') or boolGlobal;
  char2Global := 'B';
end;

procedure Proc5;
begin
  char1Global := 'A';
  boolGlobal := False;
end;

procedure Proc8(var a: Vector; var b: Square; x, y: Integer);
var at, i: Integer;
begin
  at := x + 5;
  a[at] := y;
  a[at + 1] := a[at];
  a[at + 30] := at;
  for i := at to at + 1 do b[at, i] := at;
  b[at, at - 1] := b[at, at - 1] + 1;
  b[at + 20, at] := a[at];
  intGlobal := 5;
end;

begin
  New(nextGlobal);
  New(global);
  global^.next := nextGlobal;
  global^.discriminant := Ident1;
  global^.enumeration := Ident3;
  global^.number := 40;
  global^.text := 'DHRYSTONE PROGRAM, SOME STRING';
  string1 := 'DHRYSTONE PROGRAM, 1''ST STRING';
  squareGlobal[8, 7] := 10;
  for run := 1 to Runs do
  begin
    Proc5;
    Proc4;
    int1 := 2;
    int2 := 3;
    string2 := 'DHRYSTONE PROGRAM, 2''ND STRING';
    enumLocal := Ident2;
    boolGlobal := not Func2(string1, string2);
    while int1 < int2 do
    begin
      int3 := 5 * int1 - int2;
      Proc7(int1, int2, int3);
      int1 := int1 + 1;
    end;
    Proc8(vectorGlobal, squareGlobal, int1, int3);
    Proc1(global);
    for index := 'A' to char2Global do
      if enumLocal = Func1(index, 'C') then Proc6(Ident1, enumLocal);
    int2 := int2 * int1;
    int1 := int2 div int3;
    int2 := 7 * (int2 - int3) - int1;
    Proc2(int1);
  end;
  WriteLn(intGlobal, ' ', Ord(boolGlobal), ' ', char1Global, char2Global, ' ', vectorGlobal[8], ' ',
          squareGlobal[8, 7], ' ', global^.number, ' ', nextGlobal^.number, ' ', int1, ' ', int2, ' ', int3);
end.
