// A TCP connection as one who stands between needs it: bytes and ends pass in each direction by themselves.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <deque>

/// A connected socket; destruction closes it, and what it has not sent is lost. Main thread. It may be
/// deleted only later (`deleteLater`) from within its signals.
class Wire : public QObject
{
    Q_OBJECT
public:
    static constexpr int most_read = 64 * 1024; ///< bytes that one `received` brings

    /// Takes the socket over, and reads from now on.
    explicit Wire(qintptr socket);
    ~Wire() override;

    /// In the order of the calls. Who sends much looks at `unsent`.
    void send(const QByteArray& bytes);
    qint64 unsent() const { return unsent_; }

    /// Ends this side's sending, behind what is unsent.
    void end();

    /// While it does not read, the other side is held up as soon as the system's own buffers are full.
    void set_reading(bool on);

    bool is_lost() const { return lost_; }

Q_SIGNALS:
    void received(const QByteArray& bytes);
    void sent();  ///< less is unsent than before
    void ended(); ///< the other side's sending; this side's goes on
    void lost();  ///< both directions; nothing comes after it
private:
    void read_on();
    bool read();
    bool write();
    void lose();

    const qintptr socket_;
    QSocketNotifier readable_;
    QSocketNotifier writable_;
    QTimer looking_;
    std::deque<QByteArray> waiting_; // chunk by chunk, so that each leaves in a write of its own
    qint64 unsent_ = 0;
    bool ends_ = false;
    bool has_ended_ = false; // the other side
    bool lost_ = false;
};
