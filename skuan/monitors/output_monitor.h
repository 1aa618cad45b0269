// One video output of a server as signals, for programs that make their monitors themselves.
#pragma once

#include <skuan/monitors/channel_signals.h>

#include <QPointer>

#include <array>

class CFChannelConfig;
class ChannelMonitor;

/// Passes on the signals of the channel that the configuration routes to an output, through any number of
/// reroutings. Those of the channel's monitor are connected only while the same signal here has a receiver.
/// Nothing is told when the source changes: a receiver hears the next report of the new one.
///
/// Belongs to its maker. Lives on the thread of the monitors it is given, where everything here belongs;
/// they and the configuration are the caller's, and may go before it.
class SKUAN_EXPORT OutputMonitor : public ChannelSignals
{
    Q_OBJECT

public:
    /// The monitors of channels 0 to 11, null ones among them or not. A count other than 12 is reported; too
    /// few are filled up with null, too many are cut. A null configuration is reported: no source, ever.
    OutputMonitor(unsigned output, const CFChannelConfig* config, ChannelMonitor* const* monitors,
                  unsigned count, QObject* parent = nullptr);
    ~OutputMonitor() override;

private Q_SLOTS:
    void sig_attach(const QByteArray& sig);
    void sig_detach(const QByteArray& sig);
    void cf_changed();

private:
    const unsigned output_;
    const QPointer<const CFChannelConfig> config_;
    std::array<QPointer<ChannelMonitor>, 12> monitors_;
    QPointer<ChannelMonitor> source_;
};
