// The streams of a program carry UTF-8 and lines that end in \n, on every system: what one writes is the
// same, byte for byte, wherever it ran. Only who sits at a terminal is shown it in the system's own way.
#pragma once

#include <QByteArray>

#include <cstdio>

/// Once, before anything is read or written.
void prepare_streams();

/// True if what is written to `stream` is shown on a terminal.
bool is_terminal(std::FILE* stream);

/// Writes it all, as far as the stream does not keep it for later; if not, false, and `errno` says why.
bool write_stream(std::FILE* stream, const QByteArray& utf8);

/// Writes what the stream has kept. The same holds; and a reader that has gone is EPIPE.
bool flush_stream(std::FILE* stream);

/// Waits for what comes next, which is nothing at the end. Sets `*failed` if it ends for another reason.
QByteArray read_standard_stream(bool* failed);
