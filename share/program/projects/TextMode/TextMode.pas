{ A program for the text screen: a title, a frame with a text in it, and a wait for a key. }
program TextMode;

const
  Columns = 40;
  Rows = 24;

type
  Line = string[80];

{$I SCREEN.INC}

begin
  ClrScr;
  Centred(2, 'My program');
  Frame(5, 8, Columns - 5, 14);
  Centred(11, 'Hello, MSX!');
  Centred(Rows - 1, 'Press a key');
  repeat
  until KeyPressed;
  GotoXY(1, Rows);
end.
