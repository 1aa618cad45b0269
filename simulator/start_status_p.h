// How far the server's start is, for those who wait for its control port: a stream of `status` messages.
#pragma once

#include <simulator/start_step.h>

#include <QTcpServer>

#include <optional>
#include <set>
#include <vector>

namespace simulator {

// Goes through the script of a start, field by field, and tells everybody who connects. Nobody is asked
// anything; when the start is done the streams end, and who comes later is told so and sent away. One thread.
class StartStatus : public QObject
{
    Q_OBJECT
public:
    explicit StartStatus(QObject* parent = nullptr);
    ~StartStatus() override;

    bool listen(const QHostAddress& address, quint16 port);
    QString errorString() const { return listener_.errorString(); }

    // A start begins. Without steps it is done at once.
    void begin(const std::vector<StartStep>& script);

    bool is_done() const { return step_ == script_.size(); }

    // A field is over. True while the start goes on.
    bool field();

Q_SIGNALS:
    void done(); // of a start with steps

private:
    void accept();
    void tell_all();
    QByteArray message() const;

    QTcpServer listener_;
    std::set<QTcpSocket*> listeners_; // children of the listener
    std::vector<StartStep> script_;
    std::size_t step_ = 0;
    std::optional<quint64> fields_left_; // of the step; none before the first field
};

} // namespace simulator
