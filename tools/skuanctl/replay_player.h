// Plays one side of a recorded conversation, and holds what the other side says against the record.
#pragma once

#include <skuanctl/conversation.h>
#include <skuanctl/dial.h>
#include <skuanctl/failure.h>
#include <skuanctl/replay_place.h>
#include <skuanctl/wire.h>

#include <QElapsedTimer>
#include <QJsonObject>
#include <QTimer>

#include <chrono>
#include <deque>
#include <memory>

/// What is played, and to whom.
struct Play
{
    Side side;
    std::optional<int> connection; ///< none: all of them
    bool paced;                    ///< not before the recorded time has passed
    QString host;                  ///< of the server, for the client's side

    /// For the connection, and then for each thing that the other side has to do: so much longer than it
    /// took when it was recorded.
    std::chrono::milliseconds limit;
};

/// The first difference between the record and the other side.
struct Difference
{
    int line; ///< of the file
    int connection;
    int message; ///< the number among the other side's, from 1
    qint64 byte; ///< the number among the other side's, from 0
    QString expected, got;
};

/// Goes through the file once, record by record. A record of the played side is done; at one of the other
/// side's it waits until that has come, byte for byte. So each thing is said when all has come that had
/// come before it, on whatever connection. Main thread; it may be deleted only later from within its signals.
class Player : public QObject
{
    Q_OBJECT
public:
    /// `file` has been read to its end before, without an error.
    Player(const QString& file, Play play);
    ~Player() override;

    /// From the event loop.
    void start() { step(); }

    /// A client that has come, for the server's side. Takes the socket over.
    void take_client(qintptr socket);

    int connections() const { return connections_; } ///< played so far
    qint64 bytes() const { return bytes_; }          ///< that the other side has said as recorded

Q_SIGNALS:
    // One of them, once.
    void same();
    void differs(const Difference& difference);
    void failed(const Failure& failure);

private:
    enum Progress { done, waits, waits_for_its_time };

    struct Talk : QObject
    {
        explicit Talk(qintptr socket) : wire(socket) {}

        Wire wire;
        QByteArray heard;       // and not yet compared
        bool heard_end = false; // or loss
        bool is_client_over = false, is_server_over = false;
        ReplayPlace place; // of the other side
    };

    void step();
    bool fetch();
    Progress perform(const Record& record);
    Progress open(const Record& record);
    Progress dial(const Record& record);
    Progress say(Talk& talk, const Record& record);
    Progress hear(Talk& talk, const Record& record);
    Progress compare(Talk& talk, const Record& record);
    Progress end(Talk& talk, const Record& record);
    Progress finish();
    bool is_early(const Record& record) const;
    void start_talk(int connection, qintptr socket);
    void wait(Progress progress);
    void on_alarm();
    void differ(const Talk& talk, const QByteArray& expected, const QByteArray& got);
    void fail(ExitCode code, const QString& why);

    ConversationReader file_;
    const Play play_;
    std::optional<Record> record_;                   // the one at hand
    int compared_ = 0;                               // of its bytes
    std::chrono::microseconds before_{0}, first_{0}; // when the record before, and the first, were made
    std::map<int, std::unique_ptr<Talk>> talks_;
    std::unique_ptr<Dial> dial_;
    std::deque<qintptr> clients_; // who have come too early
    QElapsedTimer clock_;         // since the first record
    QTimer alarm_;
    bool alarm_is_limit_ = false;
    bool over_ = false;
    int connections_ = 0;
    qint64 bytes_ = 0;
};
