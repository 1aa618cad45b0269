// The wish of whoever sits at the keyboard that the program end.
#pragma once

/// From now on the first Ctrl-C only makes `is_interrupted` true; a second one ends the process at once.
/// Where a console can be closed, that is such a wish, too.
void catch_interrupt();

bool is_interrupted();

/// Ctrl-C ends the process again.
void release_interrupt();
