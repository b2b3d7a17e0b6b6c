{ Drawing on screen 5: 256 by 212 dots, each in one of 16 colours, and each of these colours one out of 512.

  The picture is drawn once. What moves afterwards is the palette: a colour that changes, changes wherever it is seen. }
program Graphics;

{ The libraries lie beside this file. Whatever of them is not used takes no room in the program. }
{$I MSX.LIB}
{$I DRAW.LIB}

const
  Horizon = 130;
  SunX = 70;
  { The colours of this picture. }
  FirstSky = 1;
  Bands = 6;        { colours 1 to 6, from above to the horizon }
  Sun = 7;
  Sea = 8;
  Wave = 9;
  FarHills = 10;
  NearHills = 11;
  Letters = 15;

var
  Key: Char;
  Hour: Integer;

{ The sky: bands that become brighter towards the horizon. }
procedure DrawSky;
var
  Band, Height: Integer;
begin
  Height := Horizon div Bands;
  for Band := 0 to Bands - 1 do
    FillBox(0, Band * Height, 255, (Band + 1) * Height, FirstSky + Band)
end;

{ Hills are lines from the ground up. How high they are is the sum of two waves, a long and a short one. A wave needs no
  sine, which would take long: what pulls a point back grows with its distance. The numbers are 32 times too large, so
  that nothing of their fractions is lost. }
procedure DrawHills(Middle, Height, Length: Integer; Color: Byte);
var
  X, Top: Integer;
  Long, LongSpeed, Short, ShortSpeed: Integer;
begin
  Long := 32 * Height;
  LongSpeed := 0;
  Short := 0;
  ShortSpeed := 8 * Height;
  for X := 0 to 255 do
  begin
    LongSpeed := LongSpeed - Long div Length;
    Long := Long + LongSpeed div Length;
    ShortSpeed := ShortSpeed - 4 * Short div Length;
    Short := Short + 4 * ShortSpeed div Length;
    Top := Horizon - Middle - (Long + Short) div 32;
    Line(X, Horizon, X, Top, Color)
  end
end;

{ The sea with the light of the sun in it. }
procedure DrawSea;
var
  Y, X, Width: Integer;
begin
  FillBox(0, Horizon, 255, 211, Sea);
  Randomize;
  for Y := Horizon + 1 to 211 do
  begin
    Width := 4 + (Y - Horizon) div 3;
    X := SunX - Width + Random(Width);
    Line(X, Y, X + Random(Width) + 2, Y, Wave)
  end
end;

{ The palette at an hour from 0 (day) to 14 (evening). }
procedure SetSky(Hour: Integer);
var
  Band, Red, Blue: Integer;
begin
  for Band := 0 to Bands - 1 do
  begin
    Red := Hour div 2 * (Band + 1) div Bands;
    Blue := 7 - Hour div 2 + (Bands - Band) div 3;
    if Blue > 7 then
      Blue := 7;
    SetPalette(FirstSky + Band, Red, (14 - Hour) * (Band + 2) div 20, Blue)
  end;
  SetPalette(Sun, 7, 7 - Hour div 4, 3 - Hour div 5);
  SetPalette(Sea, Hour div 7, 3 - Hour div 5, 5 - Hour div 4);
  SetPalette(Wave, 6, 6 - Hour div 4, 5 - Hour div 4);
  SetPalette(FarHills, 2, 3 - Hour div 7, 4 - Hour div 5);
  SetPalette(NearHills, 1, 3 - Hour div 5, 1)
end;

begin
  Screen(5);
  Color(15, 0, 0);
  SetPalette(00,0,0,0);
  SetPalette(15,7,7,7);
  SetSky(0);
  DrawSky;
  FillCircle(SunX, Horizon - 42, 24, Sun);
  DrawHills(34, 18, 31, FarHills);
  DrawHills(16, 9, 19, NearHills);
  DrawSea;
  { Letters may lie on the picture, or have a colour of their own behind them. }
  DrawText(8, 8, 'Screen 5, 16 colours', Letters);
  TextPaper := 0;
  DrawText(8, 200, ' Press a key ', Letters);
  { The evening comes, and the morning. }
  Hour := 0;
  while not KeyPressed do
  begin
    FrameSync(12);
    Hour := Hour + 1;
    if Hour >= 28 then
      Hour := 0;
    SetSky(14 - Abs(14 - Hour))
  end;
  Read(Kbd, Key);
  { Text and colours as MSX-DOS knows them. }
  Screen(0)
end.
