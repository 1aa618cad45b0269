// One plain signal under a number, and back.
#pragma once

#include <skuan/export.h>

#include <QObject>

/// Stands between one source and one target: tags a plain signal with a number on the way out, and
/// lets a numbered one through on the way in if it is for this number. Used on the thread it lives
/// on. Its slots are private: connect them by name.
class SKUAN_EXPORT AObjectNumberedRelay : public QObject
{
    Q_OBJECT

public:
    explicit AObjectNumberedRelay(unsigned number, QObject* parent = nullptr)
        : QObject(parent), number_(number)
    {
    }

Q_SIGNALS:
    void sig();
    void sig(unsigned number);

private Q_SLOTS:
    void slot() { Q_EMIT sig(number_); }
    void slot(unsigned n)
    {
        if (n == number_)
            Q_EMIT sig();
    }

private:
    const unsigned number_;
};
