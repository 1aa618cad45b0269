// Asking a program to end, as somebody at its terminal or its system does.
#pragma once

#include <QProcess>

namespace support {

enum class Wish {
    interrupt, ///< Ctrl-C
    end        ///< SIGTERM; where there is none, Ctrl-C too
};

/// Of a program that was started by this process and runs. It hears of it soon.
void ask_to_end(const QProcess& process, Wish wish);

} // namespace support
