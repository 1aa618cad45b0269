// The timecode at the server's LTC input.
#pragma once

#include <skuan/export.h>
#include <skuan/protocol/kvrp3_types.h>
#include <skuan/time/atimecode.h>

#include <QObject>

class Spark;

/// Has the server tell of it on each connection. Belongs to whoever makes it, lives on the session's thread,
/// and may not outlive the session. What one has the server tell, all see; nobody has it stop.
class SKUAN_EXPORT LTCModel : public QObject
{
    Q_OBJECT

public:
    /// A null session is reported.
    explicit LTCModel(Spark* spark, QObject* parent = nullptr);

    /// Undefined without a timecode, without a connection, and on a new one until the server has told.
    Vantor::ATimecode get() const { return value_; }

Q_SIGNALS:
    /// Another count of fields than before, or none any more.
    void changed();

private Q_SLOTS:
    void connected();
    void disconnected();
    void report_ltc_timecode(const KVRP3::Timecode& timecode);

private:
    void set(const Vantor::ATimecode& value);

    Spark* const spark_;
    Vantor::ATimecode value_;
};
