program Game;
{$I PART.INC}
  procedure Draw(x, y: Integer);
function Max(a, b: Integer): Integer;
begin end.
