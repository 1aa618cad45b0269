// Many signals without arguments through one with a number, and back.
#pragma once

#include <skuan/export.h>

#include <QByteArray>
#include <QObject>

// M(0) to M(100), as tens from their first digit, which the moc expands like any compiler.
#define SKUAN_RELAY_TEN(M, t) M(t##0) M(t##1) M(t##2) M(t##3) M(t##4) M(t##5) M(t##6) M(t##7) M(t##8) M(t##9)
#define SKUAN_RELAY_50(M, a, b, c, d, e)                                                                     \
    SKUAN_RELAY_TEN(M, a)                                                                                    \
    SKUAN_RELAY_TEN(M, b) SKUAN_RELAY_TEN(M, c) SKUAN_RELAY_TEN(M, d) SKUAN_RELAY_TEN(M, e)
#define SKUAN_RELAY_ALL(M) SKUAN_RELAY_50(M, , 1, 2, 3, 4) SKUAN_RELAY_50(M, 5, 6, 7, 8, 9) M(100)

/// Gathers: each source is connected to a slot of its own, and `sig(unsigned)` tells which one it
/// was. Fans out: `slot(n)` emits the signal of that number. Used on the thread it lives on.
class SKUAN_EXPORT AObjectRelay : public QObject
{
    Q_OBJECT

public:
    static constexpr unsigned count = 101; ///< numbers are below this

    explicit AObjectRelay(QObject* parent = nullptr);

    /// The name of `sigN` as QObject::connect takes it, such as "2sig7 ()". Any number gets one, also
    /// when there is no such signal. Any thread.
    static QByteArray sig_name(unsigned n);
    /// The name of `slotN` as QObject::connect takes it, such as "1slot7 ()".
    static QByteArray slot_name(unsigned n);

    using Method = void (AObjectRelay::*)();
    /// `slotN`; null, and an assertion, for a number of 101 or more. Any thread.
    static Method slot_method(unsigned n);

Q_SIGNALS:
    void sig(unsigned n);
#define SKUAN_RELAY_SIGNAL(n) void sig##n();
    SKUAN_RELAY_ALL(SKUAN_RELAY_SIGNAL)

public Q_SLOTS:
    /// Emits the signal number `n`; nothing for a number of 101 or more.
    void slot(unsigned n);
#define SKUAN_RELAY_SLOT(n) void slot##n();
    SKUAN_RELAY_ALL(SKUAN_RELAY_SLOT)
};

#undef SKUAN_RELAY_SIGNAL
#undef SKUAN_RELAY_SLOT
