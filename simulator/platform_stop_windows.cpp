// The console's own handler thread, which Qt's queued calls cross.
#include <simulator/platform_stop_p.h>

#include <QMetaObject>

#include <windows.h>

namespace simulator {

namespace {
StopSignal* instance = nullptr;

BOOL WINAPI on_console_event(DWORD)
{
    QMetaObject::invokeMethod(instance, &StopSignal::stop, Qt::QueuedConnection);
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
}

} // namespace simulator
