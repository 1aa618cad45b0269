// Who is told that a signal has got a receiver, and that it has none any more, whatever way the last one
// went.
#include <skuan/monitors/asignal_router.h>

#include <support/core_application.h>

#include <functional>
#include <memory>

namespace {

class Deck : public ASignalRouter
{
    Q_OBJECT

public:
    using ASignalRouter::isSignalConnected;

Q_SIGNALS:
    void speed(int speed);
    void other();
};

class Desk : public QObject
{
    Q_OBJECT

public:
    QStringList notes;

public Q_SLOTS:
    void attached(const QByteArray& sig) { notes += "+" + sig; }
    void detached() { notes += "-"; }
    void show(int speed) { notes += QString::number(speed); }
    void take() {}
};

class ASignalMonitor : public support::CoreApplication
{
protected:
    Deck deck;
    Desk desk;

    QStringList notes()
    {
        settle();
        return std::exchange(desk.notes, {});
    }
};

const QString attached = "+2speed(int)";

TEST_F(ASignalMonitor, tells_of_each_connection_and_once_that_none_is_left)
{
    deck.add_sig_monitor("2speed( int )", &desk, SLOT(attached(QByteArray)), SLOT(detached()));
    auto receiver = std::make_unique<Desk>();
    const auto by_name = [&] {
        return QObject::connect(&deck, SIGNAL(speed(int)), receiver.get(), SLOT(take()));
    };
    const std::function<void()> ways[] = {
        [&] { QObject::disconnect(&deck, SIGNAL(speed(int)), receiver.get(), SLOT(take())); },
        [&] { QObject::disconnect(&deck, SIGNAL(speed(int)), nullptr, nullptr); },
        [&] { QObject::disconnect(&deck, nullptr, receiver.get(), nullptr); },
        [&] { receiver = std::make_unique<Desk>(); },
    };
    for (const auto& way : ways) {
        by_name();
        by_name();
        const auto handle = QObject::connect(&deck, &Deck::speed, [] {});
        EXPECT_EQ(notes(), QStringList({attached, attached, attached}));
        QObject::disconnect(handle); // Qt holds its locks
        EXPECT_EQ(notes(), QStringList());
        way();
        EXPECT_EQ(notes(), QStringList("-"));
    }
    by_name();
    deck.remove_sig_monitor("2speed(int)", &desk, SLOT(attached(QByteArray)), SLOT(detached()));
    deck.disconnect();
    by_name();
    EXPECT_EQ(notes(), QStringList(attached));

    const auto early = QObject::connect(&deck, &Deck::other, [] {});
    deck.add_sig_monitor("2other()", &desk, SLOT(attached(QByteArray)), SLOT(detached()));
    QObject::disconnect(early);
    EXPECT_EQ(notes(), QStringList("-")); // although nobody was told that it came

    deck.add_sig_monitor("2speed(int)", &desk, SLOT(attached(QByteArray)), SLOT(detached()));
    deck.set_proxy(&desk);
    deck.disconnect();
    by_name();
    EXPECT_EQ(notes(), QStringList());
    for (const bool is_connected : {true, false}) {
        deck.proxy_connect_notify(is_connected, "2speed (int)");
        deck.proxy_disconnect_notify(is_connected, "2speed (int)");
    }
    EXPECT_EQ(notes(), QStringList({attached, "-"}));
}

TEST_F(ASignalMonitor, routes_only_while_somebody_listens)
{
    QObject listener;
    const QMetaMethod speed = QMetaMethod::fromSignal(&Deck::speed);
    const auto listen = [&] { QObject::connect(&deck, &Deck::speed, &listener, [] {}); };
    auto gone = std::make_unique<Desk>();
    deck.add_route("2speed (int)", &desk, "1show (int)");
    deck.add_route("2speed (int)", gone.get(), "1show (int)");
    gone.reset();
    EXPECT_FALSE(deck.isSignalConnected(speed));
    for (int round = 0; round != 3; ++round) {
        listen();
        listen();
        Q_EMIT deck.speed(round);
        EXPECT_EQ(notes(), QStringList(QString::number(round)));
        QObject::disconnect(&deck, round == 1 ? nullptr : SIGNAL(speed(int)), &listener, nullptr);
        settle();
        EXPECT_FALSE(deck.isSignalConnected(speed));
    }
    listen();
    deck.add_route("2speed(int)", &desk, "1take()", "1other()");
    deck.setObjectName("deck");
    desk.setObjectName("desk");
    EXPECT_EQ(deck.routes().last(), "deck 2speed(int) => desk 1take() 1other()");
    EXPECT_FALSE(deck.remove_route("2speed(int)", &desk, "1take()"));
    EXPECT_TRUE(deck.remove_route("2speed(int)", &desk, "1show(int)"));
    EXPECT_FALSE(deck.remove_route("2speed(int)", &desk, "1show(int)"));
    Q_EMIT deck.speed(9);
    EXPECT_EQ(notes(), QStringList());
}

} // namespace

#include "asignal_monitor_test.moc"
