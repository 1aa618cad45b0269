// The application object that Qt delivers events with.
#pragma once

#include <QCoreApplication>

namespace bench {

/// Made when it is first needed; its thread is the one that needs it.
inline void need_application()
{
    static int argc = 1;
    static char name[] = "bench";
    static char* argv[] = {name, nullptr};
    static QCoreApplication application(argc, argv);
}

} // namespace bench
