// Moving connections from one channel's monitor to another's.
#include <skuan/monitors/output_monitor.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/monitors/channel_monitor.h>
#include <skuan/monitors/channel_values_p.h>
#include <skuan/monitors/output_source_p.h>

#include <algorithm>

OutputMonitor::OutputMonitor(unsigned output, const CFChannelConfig* config, ChannelMonitor* const* monitors,
                             unsigned count, QObject* parent)
    : ChannelSignals(parent), output_(output), config_(config)
{
    setObjectName(QStringLiteral("OutputMonitor%1").arg(output));
    (void)SKUAN_CHECK(count == monitors_.size());
    if (monitors)
        std::copy_n(monitors, std::min<std::size_t>(count, monitors_.size()), monitors_.begin());
    for (const ChannelValue value : skuan::all_channel_values)
        add_sig_monitor(signature(value), "1sig_attach (QByteArray)", "1sig_detach (QByteArray)");
    if (SKUAN_CHECK(config != nullptr))
        connect(config, &CFChannelConfig::changed, this, &OutputMonitor::cf_changed);
    cf_changed();
}

OutputMonitor::~OutputMonitor() = default;

// Each new receiver attaches, and one connection serves all of them.
void OutputMonitor::sig_attach(const QByteArray& sig)
{
    if (source_)
        connect(source_, sig, this, sig, Qt::UniqueConnection);
}

void OutputMonitor::sig_detach(const QByteArray& sig)
{
    if (source_)
        disconnect(source_, sig, this, sig);
}

void OutputMonitor::cf_changed()
{
    const auto channel = config_ ? skuan::output_source(*config_, output_) : AOption<unsigned>();
    ChannelMonitor* const source =
        channel && channel.value() < monitors_.size() ? monitors_[channel.value()].data() : nullptr;
    if (source == source_)
        return;
    if (source_)
        disconnect(source_, nullptr, this, nullptr);
    source_ = source;
    for (const ChannelValue value : skuan::all_channel_values)
        if (isSignalConnected(signal(value)))
            sig_attach(signature(value));
}
