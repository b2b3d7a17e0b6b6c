{ Sound: music for three voices, and effects over it. The keys 1 to 4 make a sound, ESC ends.

  The sound generator makes its tones alone: a program only says when something changes. So the main loop calls UpdateMusic
  over and over, and has all its time for itself otherwise. }
program Sound;

{$I MSX.LIB}
{$I SOUND.LIB}
{$I INPUT.LIB}

const
  { The music pauses on this channel while an effect is heard. }
  EffectChannel = 2;

type
  EffectKind = (Nothing, Laser, Bang, Bell, Siren);

var
  Effect: EffectKind;
  Age: Integer;          { frames since it began }
  Frame: Integer;        { the interrupt count of the last frame }
  Levels: array[0..1] of Integer;

{ The notes: C to B with + or -, a length behind it (8 is an eighth), O octave, L length, V loudness, T tempo, S how fast a
  note fades: frames for each step. The voices must be equally long, for each begins again when it ends. }
procedure SetTune;
begin
  SetMusic(0, 'T132O5L8V13S4 E4DCEG4. A4GEDC4. F4EDC<B4>R C4<BAG4.R>'
    + ' E4DCEG4. A4GEA>C4.< B4RAF4AG ED4<B>C2');
  SetMusic(1, 'T132O3L8V11S6 CGEGCGEG <A>ECE<A>ECE DAFADAFA <G>D<B>D<G>D<B>D'
    + ' CGEGCGEG F>C<A>C<F>C<A>C< <G>DFD<G>DFD CGEGC4R4');
  MusicRepeats := True;
  StartMusic
end;

procedure StartEffect(Kind: EffectKind);
begin
  Effect := Kind;
  Age := 0;
  case Kind of
    Laser, Siren:
      Mix(EffectChannel, True, False);
    Bang:
      begin
        Mix(EffectChannel, False, True);
        Noise(20);
        { Shape 0 of the envelope falls once and stays silent. }
        Volume(EffectChannel, 16);
        Envelope(0, 4000)
      end;
    Bell:
      begin
        Mix(EffectChannel, True, False);
        Tone(EffectChannel, NotePeriod(76));
        Volume(EffectChannel, 16);
        Envelope(0, 9000)
      end
  end
end;

{ What changes in an effect from one frame to the next. }
procedure UpdateEffect;
begin
  Age := Age + 1;
  case Effect of
    Laser:
      begin
        Tone(EffectChannel, 60 + 20 * Age);
        Volume(EffectChannel, 15 - Age div 2);
        if Age = 30 then
          Effect := Nothing
      end;
    Siren:
      begin
        Tone(EffectChannel, 300 + 8 * Abs(16 - Age mod 32));
        Volume(EffectChannel, 12);
        if Age = 96 then
        begin
          Effect := Nothing;
          Volume(EffectChannel, 0)
        end
      end
    else
      if Age = 100 then
        Effect := Nothing
  end
end;

{ A bar for the level of a voice, drawn again where it has changed. }
procedure ShowLevel(Voice: Integer);
var
  Place: Integer;
begin
  if Voices[Voice].Level <> Levels[Voice] then
  begin
    Levels[Voice] := Voices[Voice].Level;
    GotoXY(11, 10 + 2 * Voice);
    for Place := 1 to 15 do
      if Place <= Levels[Voice] then
        Write('#')
      else
        Write('.')
  end
end;

procedure DrawScreen;
begin
  TextWidth(40);
  Color(15, 4, 4);
  ClrScr;
  GotoXY(3, 2);
  Write('Music for two voices, effects on top');
  GotoXY(3, 4);
  Write('1 laser   2 bang   3 bell   4 siren');
  GotoXY(3, 6);
  Write('ESC ends');
  GotoXY(3, 10);
  Write('Melody');
  GotoXY(3, 12);
  Write('Bass');
  Levels[0] := -1;
  Levels[1] := -1
end;

begin
  DrawScreen;
  SoundOff;
  SetMusic(2, '');
  SetTune;
  Effect := Nothing;
  Frame := Jiffy;
  repeat
    UpdateMusic;
    if Jiffy <> Frame then
    begin
      Frame := Jiffy;
      if Effect <> Nothing then
        UpdateEffect;
      ShowLevel(0);
      ShowLevel(1);
      if KeyHeld(KeyOf('1')) then
        StartEffect(Laser);
      if KeyHeld(KeyOf('2')) then
        StartEffect(Bang);
      if KeyHeld(KeyOf('3')) then
        StartEffect(Bell);
      if KeyHeld(KeyOf('4')) and (Effect <> Siren) then
        StartEffect(Siren)
    end
  until KeyHeld(KeyEsc);
  StopMusic;
  ForgetKeys;
  Screen(0)
end.
