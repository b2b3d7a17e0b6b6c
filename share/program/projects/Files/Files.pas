{ Files: a table of scores that is kept on the disk.

  SCORES.DAT is a typed file: its components are records, which are read and written whole, and Seek goes to any of them.
  SCORES.TXT is a text file: it has lines, and other programs can read it. }
program Files;

const
  DataName = 'SCORES.DAT';
  TextName = 'SCORES.TXT';
  Places = 5;

type
  PlayerName = string[12];
  Entry = record
    Name: PlayerName;
    Points: Integer;
  end;

var
  Data: file of Entry;
  Player: Entry;

{ Opens the table. The first time there is none: Reset fails then. With I- the program goes on, and IOresult tells it. }
procedure OpenTable;
var
  Place: Integer;
  Nobody: Entry;
begin
  Assign(Data, DataName);
  {$I-} Reset(Data) {$I+};
  if IOresult <> 0 then
  begin
    WriteLn('There is no table yet: a new one is made.');
    Rewrite(Data);
    Nobody.Name := 'Nobody';
    for Place := 1 to Places do
    begin
      Nobody.Points := 60 - 10 * Place;
      Write(Data, Nobody)
    end
  end
end;

{ Puts an entry where it belongs: those below it move down, and the last one is lost. }
procedure Enter(New: Entry);
var
  Place: Integer;
  Other: Entry;
begin
  { Components count from 0. Reading one goes on to the next. }
  Place := Places - 1;
  Seek(Data, Place);
  Read(Data, Other);
  if New.Points <= Other.Points then
    WriteLn('Not enough for the table.')
  else
  begin
    while (Place > 0) and (New.Points > Other.Points) do
    begin
      Place := Place - 1;
      Seek(Data, Place);
      Read(Data, Other);
      if New.Points > Other.Points then
        { The read went on by one: this is the component behind it. }
        Write(Data, Other)
    end;
    if New.Points <= Other.Points then
      Place := Place + 1;
    Seek(Data, Place);
    Write(Data, New);
    WriteLn('Place ', Place + 1, '.')
  end
end;

{ Writes the table as a text. }
procedure WriteTable;
var
  Lines: Text;
  Place: Integer;
  One: Entry;
begin
  Assign(Lines, TextName);
  Rewrite(Lines);
  Seek(Data, 0);
  Place := 0;
  while not Eof(Data) do
  begin
    Read(Data, One);
    Place := Place + 1;
    WriteLn(Lines, Place, '. ', One.Name, ' ':14 - Length(One.Name), One.Points:5)
  end;
  { What has been written is safe on the disk only behind Close. }
  Close(Lines)
end;

{ Shows any text, line by line. }
procedure ShowText(Name: PlayerName);
var
  Lines: Text;
  Line: string[80];
begin
  Assign(Lines, Name);
  Reset(Lines);
  while not Eof(Lines) do
  begin
    ReadLn(Lines, Line);
    WriteLn(Line)
  end;
  Close(Lines)
end;

begin
  OpenTable;
  Write('Your name: ');
  ReadLn(Player.Name);
  Write('Your points: ');
  {$I-} ReadLn(Player.Points) {$I+};
  if IOresult <> 0 then
    WriteLn('That is no number.')
  else
    Enter(Player);
  WriteTable;
  Close(Data);
  WriteLn;
  ShowText(TextName)
end.
