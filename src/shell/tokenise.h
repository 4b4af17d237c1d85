// Splitting a command line into words, in place.
#pragma once

// Overwrites every blank, tab, line feed and carriage return of the text with
// a terminator and points tokens[i] at the start of each word. Returns the
// number of words. tokens must hold one pointer for every two characters of
// the text (plus one), since words and separators alternate at worst.
int tokenise(char* text, char** tokens);
