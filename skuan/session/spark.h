// One long-lived session with one server: it stays connected by itself and owns what mirrors the server.
#pragma once

#include <skuan/export.h>
#include <skuan/protocol/kvrp3_api_qt.h>

#include <QHostAddress>
#include <QString>

#include <array>
#include <atomic>
#include <cstdint>
#include <variant>

class CFChannelConfig;
class CFModel;
class USModel;

/// What a long-running operator program talks through. From its construction on it looks every 200 ms whether a
/// connection to its server has to be attempted, with no limit and no back-off; each attempt starts clean. All
/// commands that have no answer when a connection is lost fail at once, and nothing is sent a second time but
/// what the session itself registers for.
///
/// Threads: it lives on one thread, normally that of the user interface; the socket, all callbacks and all
/// signals are there. Commands may be issued on any thread: their bytes are handed over, in order, and whether
/// there is a connection is only seen there, so that a failure may come after the call has returned.
class SKUAN_EXPORT Spark : public KVRP3::APIQt
{
    Q_OBJECT

public:
    /// `local`: the server is on this machine, and the process-wide models serve it.
    explicit Spark(bool local, QObject* parent = nullptr);

    /// `local` if that is this machine's computer name. The name is only compared: which server it is to be is
    /// still for `set_server` to say.
    explicit Spark(const QString& server, QObject* parent = nullptr);

    ~Spark() override;

    /// Takes effect with the next attempt: a connection that stands stays. The same name again: nothing.
    void set_server(const QString& name);

    /// Attempts at once. To be called before the first connection: while there is a socket that is not
    /// unconnected, it is cut off from this object for good. That is meant. The same address again: nothing.
    void set_server(const QHostAddress& address);

    void set_server_localhost();

    /// Ends the connection, and attempts none until a server is set again.
    void forget_server();

    /// Commands of other threads are handed over from the beginning, so that there is nothing left to change.
    void enable_threading() { threading_enabled_ = true; }

    /// Has the server tell of melts, of exports: from now on, for good, on every connection.
    void require_melt_notification();
    void require_export_notification();

    /// Has the server tell of a channel's play list, or chase list, until it is unrequested as often. Channels
    /// are counted from 0 to 31. One count stands for both kinds: whoever mixes them on a channel finds that
    /// the last unrequest unregisters only its own kind. That is meant.
    void request_listplay_notification(unsigned channel);
    void unrequest_listplay_notification(unsigned channel);
    void request_chaseplay_notification(unsigned channel);
    void unrequest_chaseplay_notification(unsigned channel);

Q_SIGNALS:
    void indirect_send(const QByteArray& bytes); ///< internal: the hop to the session's thread

protected:
    void send(const void* data, unsigned length) override;

private Q_SLOTS:
    void slot_connected();
    void slot_indirect_send(const QByteArray& bytes);
    void stay_connected();

private:
    static constexpr unsigned most_counted_channels = 32;

    void require(bool& flag, KVRP3::ReportType type);
    void request(unsigned channel, KVRP3::ChannelReportType type);
    void unrequest(unsigned channel, KVRP3::ChannelReportType type);

    std::variant<std::monostate, QString, QHostAddress> server_;
    bool melt_notification_required_ = false;
    bool export_notification_required_ = false;
    std::array<unsigned, most_counted_channels> notification_counts_{};
    std::atomic<bool> threading_enabled_{true};
    std::uint64_t generation_ = 0; ///< of the connection, so far
    CFModel* cf_model_ = nullptr;
    USModel* us_model_ = nullptr;
    CFChannelConfig* channel_config_ = nullptr;
};
