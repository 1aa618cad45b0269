// The verb channel list: no command asks for the state of a channel, but who registers for its reports is
// told it at once.
#include <skuanctl/dialogue.h>
#include <skuanctl/message_text.h>
#include <skuanctl/report_classes.h>
#include <skuanctl/run.h>
#include <skuanctl/value_text.h>

#include <map>

namespace {

class ChannelList : public Dialogue
{
public:
    using Dialogue::Dialogue;

    bool prepare() override
    {
        const QStringList& channels = run_.options().arguments;
        Registration registration =
            registration_of({(channels.isEmpty() ? QStringLiteral("*") : channels.constFirst()) +
                             QStringLiteral(":status,clipid,speed,timecode,info")});
        if (!registration.error.isEmpty())
            return refuse(registration.error);
        registration.commands.push_back(
            XMLTree(AString::l1("sync"))); // what comes before its answer is the state
        set_steps(registration.commands);
        return true;
    }

private:
    void show_reply(const XMLTree&, const XMLTree&, const Reply*) override {}

    void show_report(const XMLTree&, const XMLTree& body) override
    {
        const Report* const report = find_row(catalogue().reports, body.get_tag());
        const Tag* const tag = report ? find_tag(report->parts, QStringLiteral("Channel")) : nullptr;
        const QString name = body.get_subnode(AString::l1("Channel")).get_content().despace();
        if (!tag || !is_value(*tag, name))
            return;
        QJsonObject& channel = channels_[name];
        const QJsonObject values = values_of(body, report->parts);
        for (auto value = values.begin(); value != values.end(); ++value)
            channel.insert(value.key(), value.value());
    }

    void finish() override
    {
        static const QStringList head{"CHANNEL", "STATUS", "CLIP", "POSITION", "LENGTH", "SPEED", "LOOP"};
        for (const auto& [name, channel] : channels_) {
            const QJsonObject information = channel["ChannelInformation"].toObject();
            const QJsonValue cells[] = {channel["ChannelStatus"],  channel["ClipID"], channel["ClipPosition"],
                                        information["ClipLength"], channel["Speed"],  information["Loop"]};
            QStringList row{name};
            for (const QJsonValue& cell : cells) {
                const QString text = cell.toVariant().toString();
                row += text.isEmpty() ? QStringLiteral("-") : text;
            }
            run_.row(head, row, channel);
        }
        run_.done();
    }

    std::map<QString, QJsonObject> channels_;
};

} // namespace

std::unique_ptr<Verb> make_channel_list(Run& run)
{
    return std::make_unique<ChannelList>(run);
}
