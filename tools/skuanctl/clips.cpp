// The verb clips: prints each clip when it comes and keeps none, however many there are.
#include <skuanctl/program.h>

namespace {

class Clips : public Verb
{
public:
    using Verb::Verb;

    void start() override
    {
        const auto finished = AFunction::member<&Clips::finish>(this);
        const auto each = AFunction1<AString>::member<&Clips::show>(this);
        const auto error = AFunction2<AString, KVRP3::ErrorCode>::member<&Clips::on_error>(this);
        const QStringList& arguments = program_.options().arguments;
        if (arguments.isEmpty())
            program_.link().cmd_download_clipids(finished, each, error);
        else
            program_.link().cmd_download_clipids(AString(arguments.constFirst()), finished, each, error);
    }

private:
    void show(AString clip)
    {
        program_.output().line(clip, {{"clip", QString(clip)}});
        ++count_;
    }

    void finish()
    {
        program_.output().remark(count_ == 1 ? QStringLiteral("1 clip")
                                             : QStringLiteral("%1 clips").arg(count_));
        program_.done();
    }

    quint64 count_ = 0;
};

} // namespace

std::unique_ptr<Verb> make_clips(Program& program)
{
    return std::make_unique<Clips>(program);
}
