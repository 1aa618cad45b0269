// Whether somebody is looking.
#pragma once

#include <cstdio>

/// True if what is written to `stream` is shown on a terminal.
bool is_terminal(std::FILE* stream);
