// The verb info: several questions at once, and one answer.
#include <skuanctl/arguments.h>
#include <skuanctl/dialogue.h>
#include <skuanctl/message_text.h>
#include <skuanctl/run.h>

namespace {

class Info : public Dialogue
{
public:
    using Dialogue::Dialogue;

    bool prepare() override
    {
        const char* const questions[] = {"get_computer_name",    "get_version_info", "get_video_standard",
                                         "get_reference_source", "get_disk_usage",   "get_io_latency",
                                         "get_compression_info"};
        std::vector<XMLTree> commands;
        for (const char* const question : questions)
            commands.push_back(XMLTree(AString(question)));
        set_steps(commands);
        return true;
    }

private:
    void show_reply(const XMLTree&, const XMLTree& body, const Reply* reply) override
    {
        if (!reply)
            return;
        // The latency comes under the tag of a position.
        const bool is_latency = reply->name == QLatin1String("io_latency");
        QStringList lines = lines_of(body, reply->parts, 0);
        if (is_latency)
            lines.replaceInStrings(QStringLiteral("ClipPosition"), latency_);
        lines_ += lines;
        const QJsonObject values = values_of(body, reply->parts);
        for (auto value = values.begin(); value != values.end(); ++value)
            object_.insert(is_latency ? latency_ : value.key(), value.value());
    }

    void finish() override
    {
        run_.lines(lines_, object_);
        run_.done();
    }

    const QString latency_ = QStringLiteral("Latency");
    QStringList lines_;
    QJsonObject object_;
};

} // namespace

std::unique_ptr<Verb> make_info(Run& run)
{
    return std::make_unique<Info>(run);
}
