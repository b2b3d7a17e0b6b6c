{ Pictures from the disk, and pages.

  "Image Converter" in the Tools menu makes PICTURE.SC5 and PICTURE.PL5 from a photograph; put them into the folder of this
  project, and they are shown. Where there is none, this program draws one, and saves it for the next time. }
program Picture;

{$I MSX.LIB}
{$I DRAW.LIB}
{$I PICTURE.LIB}

const
  PictureFileName = 'PICTURE.SC5';
  PaletteFileName = 'PICTURE.PL5';
  { The last byte of the 212 lines of screen 5. }
  LastByte = $69FF;
  { The picture appears in blocks: 16 across, 53 down. }
  BlockWidth = 16;
  BlockHeight = 4;
  Blocks = 848;
  { Each time so many blocks on: as Blocks and this number have no common factor, each block comes once. }
  Stride = 389;

{ Circles that turn over what they cover: a pattern with all 16 colours. }
procedure DrawPattern;
var
  Ring: Integer;
begin
  ClearPage(0);
  DrawOp := OpXor;
  for Ring := 1 to 14 do
  begin
    FillCircle(70, 70, 8 * Ring, 1);
    FillCircle(190, 60, 8 * Ring, 2);
    FillCircle(128, 170, 8 * Ring, 4);
    FillCircle(128, 100, 8 * Ring, 8)
  end;
  DrawOp := OpSet
end;

{ A palette for the pattern: each of its four families of circles adds a light of its own. }
procedure SetPatternPalette;
var
  Index, Red, Green, Blue: Integer;
begin
  for Index := 0 to 15 do
  begin
    Red := 1 + 3 * (Index and 1) + 3 * (Index shr 3);
    Green := 2 * (Index shr 1 and 1) + 3 * (Index shr 3);
    Blue := 2 + 4 * (Index shr 2 and 1);
    SetPalette(Index, Red, Green, Blue)
  end
end;

{ Brings the picture to page 1 while page 0 is seen. }
procedure Prepare;
begin
  SetPage(0, 0);
  ClearPage(0);
  DrawText(8, 8, 'Loading ...', 15);
  SetPage(0, 1);
  if not LoadPicture(PictureFileName) then
  begin
    SetPage(0, 0);
    TextPaper := 0;
    DrawText(8, 8, 'Drawing ...', 15);
    TextPaper := -1;
    SetPage(0, 1);
    DrawPattern;
    if not SavePicture(PictureFileName, LastByte) then
      DrawText(8, 200, 'The disk is full.', 15)
  end;
  if not LoadPalette(PaletteFileName) then
    SetPatternPalette
end;

{ Copies page 1 to page 0, block by block in a wild order. In the commands of the video processor the lines of all pages
  count on: page 1 begins at line 256. }
procedure Appear;
var
  Block, Count, X, Y: Integer;
begin
  Block := 0;
  for Count := 1 to Blocks do
  begin
    X := BlockWidth * (Block mod 16);
    Y := BlockHeight * (Block div 16);
    CopyBlock(X, 256 + Y, BlockWidth, BlockHeight, X, Y);
    Block := (Block + Stride) mod Blocks
  end
end;

procedure AwaitKey;
var
  Key: Char;
begin
  Read(Kbd, Key)
end;

begin
  Screen(5);
  Color(15, 0, 0);
  Prepare;
  Appear;
  AwaitKey;
  Screen(0)
end.
