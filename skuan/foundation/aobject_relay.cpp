#include <skuan/foundation/aobject_relay.h>

#include <skuan/foundation/assertfail.h>

AObjectRelay::AObjectRelay(QObject* parent) : QObject(parent) {}

QByteArray AObjectRelay::sig_name(unsigned n)
{
    return QByteArray("2sigXXXXX ()").replace("XXXXX", QByteArray::number(n));
}

QByteArray AObjectRelay::slot_name(unsigned n)
{
    return QByteArray("1slotXXXXX ()").replace("XXXXX", QByteArray::number(n));
}

#define RELAY_MEMBER_OF_SLOT(n) &AObjectRelay::slot##n,
#define RELAY_MEMBER_OF_SIGNAL(n) &AObjectRelay::sig##n,
#define RELAY_DEFINE_SLOT(n)                                                                                 \
    void AObjectRelay::slot##n()                                                                             \
    {                                                                                                        \
        Q_EMIT sig(n);                                                                                       \
    }

AObjectRelay::Method AObjectRelay::slot_method(unsigned n)
{
    static constexpr Method slot_of_number[count] = {SKUAN_RELAY_ALL(RELAY_MEMBER_OF_SLOT)};
    return SKUAN_CHECK(n < count) ? slot_of_number[n] : nullptr;
}

void AObjectRelay::slot(unsigned n)
{
    static constexpr Method signal_of_number[count] = {SKUAN_RELAY_ALL(RELAY_MEMBER_OF_SIGNAL)};
    if (n >= count)
        return;
    const Method signal = signal_of_number[n];
    (this->*signal)();
}

SKUAN_RELAY_ALL(RELAY_DEFINE_SLOT)
