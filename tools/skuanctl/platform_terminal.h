// Whether somebody is looking, and through what.
#pragma once

#include <cstdio>

/// True if what is written to `stream` is shown on a terminal.
bool is_terminal(std::FILE* stream);

/// Whether it also follows the escape sequences that move a cursor. To be asked before one is written: some
/// systems have to be told that they come.
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
