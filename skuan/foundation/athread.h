// A thread that may be dropped at any moment: it ends itself first.
#pragma once

#include <skuan/export.h>

#include <QThread>

/// A QThread whose destructor asks its event loop to quit and waits for the end, with no time limit.
/// It must not be destroyed on the very thread that it runs.
class SKUAN_EXPORT AThread : public QThread
{
    Q_OBJECT

public:
    AThread() = default;
    explicit AThread(QObject* parent) : QThread(parent) {}
    ~AThread() override;
};
