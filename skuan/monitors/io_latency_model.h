// How long a picture takes from the server's input to its output.
#pragma once

#include <skuan/export.h>
#include <skuan/protocol/kvrp3_callback_groups.h>

#include <QObject>

class Spark;

/// Asks once on each connection, and never in between. Belongs to whoever makes it, lives on the session's
/// thread, and may not outlive the session.
class SKUAN_EXPORT IOLatencyModel : public QObject
{
    Q_OBJECT

public:
    /// Asks at once. A null session is reported.
    explicit IOLatencyModel(Spark* spark, QObject* parent = nullptr);

    /// In fields; 0 until the server has answered, and what it said last if it fails to.
    unsigned get_value() const { return value_; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void fetch_value();
    void update(unsigned value);

private:
    Spark* const spark_;
    KVRP3::CallbackGroup_set23 answers_;
    unsigned value_ = 0;
};
