program Empty;

begin
end.
