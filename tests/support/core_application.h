// The application object and the event loop that tests of Qt classes need.
#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

namespace support {

/// A fixture that makes the one application object of the test program. Its thread is the main one.
class CoreApplication : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        static int argc = 1;
        static char name[] = "test";
        static char* argv[] = {name, nullptr};
        static QCoreApplication application(argc, argv);
    }

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
