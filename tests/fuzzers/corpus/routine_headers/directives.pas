{$i a.inc}{$I b.inc }
{$I}
 function x,y;z
PROCEDURE a
procedure a1(b);
procedure A;