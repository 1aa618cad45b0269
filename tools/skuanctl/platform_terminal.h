// The terminal that somebody looks at.
#pragma once

#include <cstdio>

/// Whether `stream` is shown on a terminal that follows the escape sequences that move a cursor. To be asked
/// before one is written: some systems have to be told that they come. How the terminal was before is put
/// back when the program ends.
bool can_move_cursor(std::FILE* stream);

struct TerminalSize
{
    int columns, lines;

    friend bool operator==(const TerminalSize& a, const TerminalSize& b)
    {
        return a.columns == b.columns && a.lines == b.lines;
    }
};

/// 80 by 24 where nobody knows.
TerminalSize terminal_size(std::FILE* stream);
