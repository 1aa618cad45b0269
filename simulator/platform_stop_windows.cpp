// The console's own handler thread, which Qt's queued calls cross.
#include <simulator/platform_stop_p.h>

#include <QMetaObject>

#include <mutex>

#include <windows.h>

namespace simulator {

namespace {
std::mutex mutex;
StopSignal* instance = nullptr;

BOOL WINAPI on_console_event(DWORD event)
{
    {
        const std::lock_guard lock(mutex);
        if (instance)
            QMetaObject::invokeMethod(instance, &StopSignal::stop, Qt::QueuedConnection);
    }
    // Where the console goes, the process ends as soon as this returns.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        ::Sleep(INFINITE); // until the main thread, which may have a state to save, has ended it
    return TRUE;
}
} // namespace

StopSignal::StopSignal(QObject* parent) : QObject(parent)
{
    instance = this;
    ::SetConsoleCtrlHandler(on_console_event, TRUE);
}

StopSignal::~StopSignal()
{
    ::SetConsoleCtrlHandler(on_console_event, FALSE);
    const std::lock_guard lock(mutex);
    instance = nullptr;
}

} // namespace simulator
