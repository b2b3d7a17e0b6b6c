{ A complete game: a ship among meteors, with sprites, joystick, sound and a palette that moves.

  The cursor keys or a joystick steer, the space bar or the button fires, ESC ends. A meteor that is hit brings points,
  the faster the more; every 500 points bring another ship. }
program Game;

{$I MSX.LIB}
{$I DRAW.LIB}
{$I SPRITE.LIB}
{$I SOUND.LIB}
{$I INPUT.LIB}

const
  { Sprites with small numbers lie in front of the others. }
  ShipSprite = 0;
  FirstShot = 1;
  LastShot = 3;
  FirstMeteor = 4;
  LastMeteor = 11;
  { Numbers of the patterns. }
  ShipPattern = 0;
  MeteorPattern = 1;
  ShotPattern = 2;
  BoomPattern = 3;
  { Colours 8 to 13 are the stars: see MoveStars. }
  FirstStar = 8;
  StarColors = 6;
  { The lines that belong to the score. }
  TopLines = 12;
  { How far the directions 0 to 8 of a joystick go. }
  StepX: array[0..8] of Integer = (0, 0, 3, 3, 3, 0, -3, -3, -3);
  StepY: array[0..8] of Integer = (0, -2, -2, 0, 2, 2, 2, 0, -2);
  { Each dot of a sprite is a bit; the pictures behind the numbers show them. }
  ShipDots: SpritePattern16 = (
    $0180, { .......##....... }
    $0180, { .......##....... }
    $03C0, { ......####...... }
    $03C0, { ......####...... }
    $07E0, { .....######..... }
    $0660, { .....##..##..... }
    $0C30, { ....##....##.... }
    $0C30, { ....##....##.... }
    $1E78, { ...####..####... }
    $3FFC, { ..############.. }
    $7FFE, { .##############. }
    $FFFF, { ################ }
    $EE77, { ###.###..###.### }
    $CE73, { ##..###..###..## }
    $8421, { #....#....#....# }
    $0420  { .....#....#..... });
  { A meteor. }
  MeteorDots: SpritePattern16 = (
    $07E0, { .....######..... }
    $1FF8, { ...##########... }
    $3CFC, { ..####..######.. }
    $787E, { .####....######. }
    $7FF6, { .###########.##. }
    $FFC3, { ##########....## }
    $F7C7, { ####.#####...### }
    $E3FF, { ###...########## }
    $F7FF, { ####.########### }
    $FFFF, { ################ }
    $7E7E, { .######..######. }
    $7C3E, { .#####....#####. }
    $3E7C, { ..#####..#####.. }
    $3FFC, { ..############.. }
    $0FF0, { ....########.... }
    $03C0  { ......####...... });
  { A shot. }
  ShotDots: SpritePattern16 = (
    $0000, { ................ }
    $0000, { ................ }
    $0000, { ................ }
    $0180, { .......##....... }
    $0180, { .......##....... }
    $03C0, { ......####...... }
    $03C0, { ......####...... }
    $03C0, { ......####...... }
    $03C0, { ......####...... }
    $0180, { .......##....... }
    $0180, { .......##....... }
    $0000, { ................ }
    $0000, { ................ }
    $0000, { ................ }
    $0000, { ................ }
    $0000  { ................ });
  { What is left of both. }
  BoomDots: SpritePattern16 = (
    $8101, { #......#.......# }
    $4102, { .#.....#......#. }
    $2444, { ..#..#...#...#.. }
    $0910, { ....#..#...#.... }
    $27C8, { ..#..#####..#... }
    $07D2, { .....#####.#..#. }
    $2FE0, { ..#.#######..... }
    $EFF7, { ###.########.### }
    $1FE8, { ...########.#... }
    $4FC0, { .#..######...... }
    $1790, { ...#.####..#.... }
    $2244, { ..#...#..#...#.. }
    $0910, { ....#..#...#.... }
    $2108, { ..#....#....#... }
    $4102, { .#.....#......#. }
    $8001  { #..............# });
  { Sprites of mode 2 have a colour in each line. }
  ShipColors: SpriteLines = (15, 15, 15, 14, 14, 7, 7, 7, 7, 5, 5, 5, 5, 4, 9, 9);
  MeteorColors: SpriteLines = (6, 6, 6, 6, 3, 3, 3, 3, 3, 3, 2, 2, 2, 2, 2, 2);
  Best: Integer = 0;

type
  Thing = record
    X, Y: Integer;
    SpeedX, SpeedY: Integer;
    Exists: Boolean;
    Burning: Integer; { frames that an explosion still lasts }
  end;

var
  { Shots and meteors, by the numbers of their sprites. }
  Things: array[FirstShot..LastMeteor] of Thing;
  ShipX, ShipY: Integer;
  Score, Ships, NextShip, Level: Integer;
  Safe: Integer;        { frames during which nothing can hit the ship }
  Reload: Integer;      { frames until it can fire again }
  StarTime: Integer;
  ShotSound, BoomSound: Integer;
  Finished: Boolean;    { ESC has been pressed }

{ The colours; the palette converter of the Tools menu writes such lines from a picture. }
procedure SetColors;
begin
  SetPalette(00,0,0,1);
  SetPalette(01,0,0,0);
  SetPalette(02,2,1,1);
  SetPalette(03,4,2,1);
  SetPalette(04,1,2,5);
  SetPalette(05,2,3,6);
  SetPalette(06,6,4,2);
  SetPalette(07,4,5,7);
  SetPalette(14,6,7,7);
  SetPalette(15,7,7,7)
end;

{ Draws the stars: columns of dots that take the star colours in turn from top to bottom. }
procedure DrawStars;
var
  X, Y, Phase, Distance: Integer;
  Dark: Boolean;
begin
  X := 3;
  while X < 256 do
  begin
    { Stars that are far away take small steps. }
    Distance := 3 + 3 * Random(2);
    Phase := Random(StarColors);
    Dark := False;
    Y := TopLines + Random(Distance);
    while Y < 212 do
    begin
      if not Dark then
        PSet(X, Y, FirstStar + Phase);
      Phase := Phase + 1;
      if Phase = StarColors then
      begin
        Phase := 0;
        Dark := Random(5) < 2
      end;
      Y := Y + Distance
    end;
    X := X + 5 + Random(9)
  end
end;

{ Lets the stars fall without drawing a dot: one of their colours is bright, and it is the next one each time. }
procedure MoveStars;
var
  Star, Age: Integer;
begin
  StarTime := StarTime + 1;
  if StarTime >= 3 * StarColors then
    StarTime := 0;
  if StarTime mod 3 = 0 then
    for Star := 0 to StarColors - 1 do
    begin
      Age := StarTime div 3 - Star;
      if Age < 0 then
        Age := Age + StarColors;
      case Age of
        0: SetPalette(FirstStar + Star, 6, 6, 7);
        1: SetPalette(FirstStar + Star, 1, 1, 3)
        else SetPalette(FirstStar + Star, 0, 0, 1)
      end
    end
end;

{ Writes a number with leading zeros. }
procedure ShowNumber(X, Number: Integer);
var
  Digits: DrawString;
begin
  Str(Number, Digits);
  while Length(Digits) < 5 do
    Digits := '0' + Digits;
  TextPaper := 0;
  DrawText(X, 2, Digits, 15);
  TextPaper := -1
end;

procedure ShowScore;
begin
  ShowNumber(48, Score)
end;

procedure ShowShips;
begin
  TextPaper := 0;
  DrawChar(152, 2, Chr(48 + Ships), 15);
  TextPaper := -1
end;

procedure DrawScreen;
begin
  ClearPage(0);
  DrawText(0, 2, 'SCORE', 7);
  DrawText(104, 2, 'SHIPS', 7);
  DrawText(168, 2, 'BEST', 7);
  ShowNumber(208, Best);
  Line(0, TopLines - 1, 255, TopLines - 1, 5);
  DrawStars
end;

{ A new meteor above the screen. }
procedure StartMeteor(Number: Integer);
begin
  with Things[Number] do
  begin
    X := Random(240);
    Y := -16 - Random(60);
    SpeedX := Random(3) - 1;
    SpeedY := 1 + Random(2) + Random(Level);
    Exists := True;
    Burning := 0;
    PutSprite(Number, X, Y, 6, MeteorPattern);
    SpriteColors(Number, MeteorColors)
  end
end;

procedure Explode(Number: Integer);
begin
  with Things[Number] do
  begin
    Burning := 16;
    PutSprite(Number, X, Y, 15, BoomPattern)
  end;
  BoomSound := 15
end;

procedure AddScore(Points: Integer);
begin
  Score := Score + Points;
  ShowScore;
  { A level more for each 250 points: more meteors, and faster ones. }
  Level := 1 + Score div 250;
  if Level > 5 then
    Level := 5;
  if (Score >= NextShip) and (Ships < 9) then
  begin
    NextShip := NextShip + 500;
    Ships := Ships + 1;
    ShowShips
  end
end;

procedure PlaceShip;
begin
  ShipX := 120;
  ShipY := 180;
  PutSprite(ShipSprite, ShipX, ShipY, 15, ShipPattern);
  SpriteColors(ShipSprite, ShipColors);
  Safe := 100
end;

procedure Fire;
var
  Number: Integer;
begin
  Number := FirstShot;
  while (Number < LastShot) and Things[Number].Exists do
    Number := Number + 1;
  with Things[Number] do
    if not Exists then
    begin
      X := ShipX;
      Y := ShipY - 8;
      SpeedX := 0;
      SpeedY := -6;
      Exists := True;
      Burning := 0;
      PutSprite(Number, X, Y, 14, ShotPattern);
      Reload := 8;
      ShotSound := 12
    end
end;

procedure MoveShip;
var
  Direction: Integer;
begin
  Direction := Stick(0);
  if Direction = 0 then
    Direction := Stick(1);
  ShipX := ShipX + StepX[Direction];
  ShipY := ShipY + StepY[Direction];
  if ShipX < 0 then
    ShipX := 0;
  if ShipX > 240 then
    ShipX := 240;
  if ShipY < 60 then
    ShipY := 60;
  if ShipY > 194 then
    ShipY := 194;
  { A ship that nothing can hit blinks. }
  if Safe > 0 then
    Safe := Safe - 1;
  if Odd(Safe shr 2) then
    HideSprite(ShipSprite)
  else
    MoveSprite(ShipSprite, ShipX, ShipY);
  if Reload > 0 then
    Reload := Reload - 1
  else if Trigger(0) or Trigger(1) then
    Fire
end;

procedure MoveShots;
var
  Number: Integer;
begin
  for Number := FirstShot to LastShot do
    with Things[Number] do
      if Exists then
      begin
        Y := Y + SpeedY;
        if Y < TopLines then
        begin
          Exists := False;
          HideSprite(Number)
        end
        else
          MoveSprite(Number, X, Y)
      end
end;

{ Whether a shot hits this meteor; the shot is gone then. }
function ShotDown(Meteor: Integer): Boolean;
var
  Number: Integer;
begin
  ShotDown := False;
  for Number := FirstShot to LastShot do
    if Things[Number].Exists then
      if (Abs(Things[Number].X - Things[Meteor].X) < 10) and (Abs(Things[Number].Y - Things[Meteor].Y) < 12) then
      begin
        Things[Number].Exists := False;
        HideSprite(Number);
        ShotDown := True
      end
end;

procedure LoseShip;
begin
  Ships := Ships - 1;
  ShowShips;
  if Ships > 0 then
    PlaceShip
  else
    HideSprite(ShipSprite)
end;

procedure MoveMeteors;
var
  Number, Last: Integer;
begin
  Last := FirstMeteor + 2 + Level;
  for Number := FirstMeteor to Last do
    with Things[Number] do
      if not Exists then
        StartMeteor(Number)
      else if Burning > 0 then
      begin
        Burning := Burning - 1;
        if Burning = 0 then
        begin
          Exists := False;
          HideSprite(Number)
        end
      end
      else
      begin
        X := X + SpeedX;
        Y := Y + SpeedY;
        if (X < 0) or (X > 240) then
          SpeedX := -SpeedX;
        if Y > 211 then
          StartMeteor(Number)
        else
        begin
          MoveSprite(Number, X, Y);
          if ShotDown(Number) then
          begin
            AddScore(10 * SpeedY);
            Explode(Number)
          end
          else if Safe = 0 then
            { Smaller than the pictures, so that a near miss is one. }
            if (Abs(X - ShipX) < 11) and (Abs(Y - ShipY) < 11) then
            begin
              Explode(Number);
              LoseShip
            end
        end
      end
end;

{ One frame of the sounds: a shot is a tone that falls, an explosion noise that fades. }
procedure MakeSounds;
begin
  if ShotSound > 0 then
  begin
    ShotSound := ShotSound - 1;
    Tone(0, 400 - 25 * ShotSound);
    Volume(0, ShotSound)
  end;
  if BoomSound > 0 then
  begin
    BoomSound := BoomSound - 1;
    Noise(31 - BoomSound);
    Volume(1, BoomSound)
  end
end;

procedure PlayGame;
var
  Number: Integer;
begin
  Score := 0;
  Ships := 3;
  NextShip := 500;
  Level := 1;
  Reload := 0;
  ClearSprites;
  DrawScreen;
  ShowScore;
  ShowShips;
  for Number := FirstShot to LastMeteor do
    Things[Number].Exists := False;
  PlaceShip;
  LastFrame := Jiffy;
  repeat
    MoveShip;
    MoveShots;
    MoveMeteors;
    MoveStars;
    MakeSounds;
    { Everything above is done once in a frame: that keeps the game's pace. }
    FrameSync(1);
    Finished := KeyHeld(KeyEsc)
  until Finished or (Ships = 0);
  if Score > Best then
    Best := Score
end;

{ Shows a text until the fire button is pressed. }
procedure Announce(First, Second: DrawString);
begin
  FillBox(40, 80, 215, 130, 1);
  Box(40, 80, 215, 130, 7);
  DrawText(128 - 4 * Length(First), 92, First, 15);
  DrawText(128 - 4 * Length(Second), 110, Second, 14);
  { The button that fired last must be let go first. }
  repeat
    MoveStars;
    MakeSounds;
    FrameSync(1)
  until not (Trigger(0) or Trigger(1));
  repeat
    MoveStars;
    MakeSounds;
    FrameSync(1);
    Finished := KeyHeld(KeyEsc)
  until Finished or Trigger(0) or Trigger(1)
end;

begin
  Randomize;
  Screen(5);
  Color(15, 0, 1);
  ClearSprites;
  SpriteSize(True, False);
  LargePattern(ShipPattern, ShipDots);
  LargePattern(MeteorPattern, MeteorDots);
  LargePattern(ShotPattern, ShotDots);
  LargePattern(BoomPattern, BoomDots);
  SetColors;
  Mix(0, True, False);
  Mix(1, False, True);
  StarTime := 0;
  ShotSound := 0;
  BoomSound := 0;
  DrawScreen;
  Announce('METEORS', 'Press SPACE to fire');
  while not Finished do
  begin
    PlayGame;
    if not Finished then
      Announce('GAME OVER', 'SPACE: once more')
  end;
  SoundOff;
  ForgetKeys;
  Screen(0)
end.
