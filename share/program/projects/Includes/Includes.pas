{ A program in several files: a word has to be found, letter by letter.

  An include stands alone in its line. The compiler reads the file as if it stood there; so what one of them declares can be
  used by those that follow. The tree at the left shows them, with those that they include themselves below them. }
program Includes;

{$I GLOBALS.INC}
{$I TALK.INC}
{$I RULES.INC}

begin
  ClrScr;
  ChooseWord;
  Greet;
  repeat
    ShowState;
    GuessLetter
  until Found or (Tries = 0);
  SayResult
end.
