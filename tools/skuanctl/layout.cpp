// The verb layout: which user channel and angle feeds which output.
#include <skuanctl/layout_drawing.h>
#include <skuanctl/mirror_verb.h>
#include <skuanctl/run.h>

#include <skuan/config/cf_channel_config.h>
#include <skuan/config/cf_model.h>

#include <QJsonArray>

using namespace ChannelCF;

namespace {

const char* const board_names = "sorrel, tansy1, tansy2, tansy3";

QJsonArray numbers(const std::vector<unsigned>& outputs)
{
    QJsonArray array;
    for (const unsigned output : outputs)
        array.append(static_cast<int>(output));
    return array;
}

QJsonObject object_of(const ChannelConfigSpec& spec)
{
    QJsonArray sets, channels;
    for (const ConfigType type : spec.values)
        sets.append(QString(ConfigType_to_string(type)));
    for (const unsigned channel : user_channels(spec)) {
        QJsonArray angles;
        for (const AngleOutputs& angle : angles_of(spec, channel))
            angles.append(QJsonObject{{"video", numbers(angle.video)}, {"key", numbers(angle.key)}});
        channels.append(QJsonObject{
            {"user_channel", static_cast<int>(channel)}, {"is_4K", spec.is4K(channel)}, {"angles", angles}});
    }
    return {{"board", QString(BoardType_to_string(spec.board))}, {"sets", sets}, {"user_channels", channels}};
}

class Layout : public MirrorVerb
{
public:
    using MirrorVerb::MirrorVerb;

private:
    bool ask() override // the session asks for what it takes
    {
        const Options& options = run_.options();
        if (!options.has("board"))
            return true;
        board_ = string_to_BoardType(AString(options.value("board")));
        return board_ != BoardType_invalid || refuse(QStringLiteral("'%1' is no board, which is one of %2")
                                                         .arg(options.value("board"), board_names));
    }

    void know() override
    {
        ChannelConfigSpec spec = session_.channel_config()->spec();
        if (board_ != BoardType_invalid)
            spec.board = board_;
        if (spec.board == BoardType_invalid)
            return run_.fail({exit_server_error,
                              QStringLiteral("the server does not tell which board it has; say it with "
                                             "--board, one of %1")
                                  .arg(board_names),
                              {}});
        if (!session_.cf_model()->get_item(QStringLiteral("ChannelConfigurationSet0"))->have_cf())
            return run_.fail(
                {exit_server_error, QStringLiteral("the server does not tell how its channels are set"), {}});
        run_.lines(layout_drawing(spec), object_of(spec));
        run_.done();
    }

    BoardType board_ = BoardType_invalid;
};

} // namespace

std::unique_ptr<Verb> make_layout(Run& run)
{
    return std::make_unique<Layout>(run);
}
