// The application object and the event loop that tests of Qt classes need.
#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

namespace support {

/// Event loops, processes and servers need the one application object; its thread is the main one.
inline void need_application()
{
    static int argc = 1;
    static char name[] = "test";
    static char* argv[] = {name, nullptr};
    static QCoreApplication application(argc, argv);
}

/// A fixture that makes the application object.
class CoreApplication : public testing::Test
{
protected:
    static void SetUpTestSuite() { need_application(); }

    /// Runs an event loop until `condition` holds; the test's own time limit ends what never comes true.
    template <typename Condition>
    static void wait_until(Condition condition)
    {
        QEventLoop loop; // a real one: without it, objects are not deleted later
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &loop, [&] {
            if (condition())
                loop.quit();
        });
        look.start(1);
        loop.exec();
    }

    /// Handles the events that are due, and those that they bring about.
    static void settle()
    {
        for (int i = 0; i < 10; ++i) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }
};

} // namespace support
