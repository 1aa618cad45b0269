// How a session stands with its server, for whoever shows it to an operator.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/aoption.h>
#include <skuan/protocol/kvrp3_api_qt.h>

#include <QObject>
#include <QString>

#include <chrono>
#include <cstdint>

class ATimer;
class Spark;

/// Looks at its session; nothing here changes it. Comes with Spark::status and lives as long as that, on its
/// thread, where everything here belongs.
class SKUAN_EXPORT SparkStatus : public QObject
{
    Q_OBJECT

public:
    enum class State {
        no_server, ///< none is set
        trying,
        connected,
    };
    struct Values
    {
        State state = State::no_server;
        std::uint64_t attempts = 0;    ///< so far, of those that the session makes by itself
        std::uint64_t connections = 0; ///< so far
        QString last_error;            ///< why the last attempt or connection ended; empty if none has failed
        KVRP3::Traffic traffic;
        unsigned outstanding_commands = 0;
    };

    /// As they are now.
    Values values() const;
    /// The time to the next attempt; nothing while one is under way, with a connection, or without a server.
    AOption<std::chrono::milliseconds> next_attempt() const;

Q_SIGNALS:
    /// The values differ from what they were at the last signal: soon after a change of the connection's
    /// state, and within 200 ms after any other, however many there were.
    void changed();

private:
    friend class Spark;
    explicit SparkStatus(Spark* spark);

    void look();
    void count_attempt();
    QString last_error() const;

    Spark* const spark_; ///< the parent
    ATimer* const look_soon_;
    std::uint64_t attempts_ = 0;
    QString error_before_; ///< of the sockets before the present one
    Values told_;
};
