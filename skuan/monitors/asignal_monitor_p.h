// The hub of one monitored signal.
#pragma once

#include <QByteArray>
#include <QObject>

/// Those who want to know of the signal's receivers connect here, so that Qt itself keeps the list of them.
class ASignalMonitorInternal : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    void attach(const QByteArray& signal);
    void detach(const QByteArray& signal);
};
