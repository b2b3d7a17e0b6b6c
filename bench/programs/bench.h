/* What the peers' programs need of the system: text on the console. */
void text(const char* s);
void number(int n);
void line(void);
void program(void);
