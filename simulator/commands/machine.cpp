// Questions about the machine: name, version, disk, standard, reference, timecode, melts.
#include <simulator/commands/machine_p.h>

#include <simulator/catalogue_p.h>
#include <simulator/commands/channels_p.h>
#include <simulator/commands/clips_p.h>
#include <simulator/server_state_p.h>

#include <algorithm>

namespace simulator {

namespace {

constexpr quint64 disk_size = 8'000'000'000'000; // bytes
constexpr int temperature = 385;                 // tenths of a degree Celsius
constexpr quint32 io_latency = 4;                // fields
constexpr quint32 melt_client = 1;

Refusal get_computer_name(Call& call)
{
    call.reply("computername", {{"ComputerName", call.state.settings.computer_name}});
    return {};
}

Refusal get_version_info(Call& call)
{
    call.reply("version_info",
               {{"SVNVersion", call.state.settings.version}, {"SVNPath", call.state.settings.version_path}});
    return {};
}

Refusal get_compression_info(Call& call)
{
    const std::vector<Element> info = {{"CompressionYSize", decimal(160'000)},
                                       {"CompressionCSize", decimal(80'000)},
                                       {"CompressionKSize", decimal(0)},
                                       {"AudioTrackCount", decimal(audio_track_count)},
                                       {"CompressionVSymbol", "V"},
                                       {"CompressionKSymbol", "K"},
                                       {"CompressionASymbol", "A"},
                                       {"CompressionVFrameBased", truth(false)},
                                       {"CompressionKFrameBased", truth(false)},
                                       {"CompressionAFrameBased", truth(true)}};
    call.reply("compression_info", {{"CompressionInfo", info}});
    return {};
}

// "1080_59_94i" has the rate "59_94" and the resolution "1080i"; that of "4K_50p" is "4K".
Refusal get_video_standard(Call& call)
{
    const QString standard = call.state.configuration.effective("VideoStandard");
    const QString lines = standard.section(QLatin1Char('_'), 0, 0);
    const QString rest = standard.section(QLatin1Char('_'), 1);
    const bool is_4k = lines == QLatin1String("4K");
    call.reply("video_standard", {{"VideoStandard", standard},
                                  {"VideoRate", rest.left(rest.size() - 1)},
                                  {"VideoResolution", is_4k ? lines : lines + rest.right(1)}});
    return {};
}

Refusal get_reference_source(Call& call)
{
    call.reply("reference_source",
               {{"ReferenceSource", call.state.configuration.effective("ReferenceSource")}});
    return {};
}

Refusal get_disk_usage(Call& call)
{
    call.reply("disk_usage", {{"TotalDiskSpace", decimal(disk_size)},
                              {"AvailableDiskSpace", decimal(available_space(call.state))},
                              {"FieldSize", decimal(field_size)}});
    return {};
}

Refusal get_io_latency(Call& call)
{
    call.reply("io_latency", {{"ClipPosition", decimal(io_latency)}});
    return {};
}

Refusal get_current_timecode(Call& call)
{
    const Channel& channel = channel_at(call.state, named_channels(call).front());
    call.reply("channel_current_timecode", {child(call.arguments, "Channel"),
                                            {"DisplayTimecode", display_timecode(call.state, channel)},
                                            {"ClipLength", decimal(channel.cue.length)},
                                            {"ClipPosition", decimal(channel.motion.field())}});
    return {};
}

// One client's melt, of the first clips that there are.
Refusal download_melts(Call& call)
{
    const std::vector<Element> flags = {{"MeltClientID", decimal(melt_client)},
                                        Element("MeltFlagInhibitPortNumbering")};
    call.reply("melt_flags", {{"MeltFlags", flags}});
    quint32 element = 0;
    for (const QString& clip : call.state.clips.clips(2)) {
        const std::vector<Element> item = {
            {"MeltClientID", decimal(melt_client)},
            {"MeltListID", decimal(1)},
            {"MeltElementID", decimal(++element)},
            {"ClipID", clip},
            {"MeltInPoint", decimal(0)},
            {"MeltOutPoint", decimal(call.state.clips.clip(clip)->played_length())},
            {"MeltLabel", QStringLiteral("M%1").arg(element)}};
        call.reply("melt_item", {{"MeltItem", item}});
    }
    return {};
}

} // namespace

quint64 available_space(const ServerState& state)
{
    return disk_size - std::min(disk_size, state.clips.field_count() * field_size);
}

std::vector<Element> no_timecode()
{
    return {{"Valid", truth(false)}};
}

std::vector<Element> input_timecode(const ServerState&)
{
    return no_timecode();
}

std::vector<Element> display_timecode(ServerState& state, const Channel& channel)
{
    if (channel.cue.clip.isEmpty())
        return no_timecode();
    quint32 field = channel.motion.field();
    if (const Clip* clip = channel.cue.is_virtual ? nullptr : state.clips.clip(channel.cue.clip))
        field += first_field(*clip); // wraps, as a field number does
    return {{"Valid", truth(true)},
            {"VideoStandard", state.configuration.effective("VideoStandard")},
            {"FieldNumber", QString::number(static_cast<qint32>(field))},
            {"DropFrameFlag", "ndf"}};
}

Element disk_space(ServerState& state)
{
    return {
        "DiskSpaceChange",
        {{"TotalDiskSpace", decimal(disk_size)}, {"AvailableDiskSpace", decimal(available_space(state))}}};
}

void tell_machine(Call& call, const QString& report_class)
{
    const auto tell = [&](const char* report, const Element& field) {
        call.audience.report_to(call.session, report, {field});
    };
    if (report_class == QLatin1String("disk_space"))
        tell("disk_space_changed", disk_space(call.state));
    if (report_class == QLatin1String("temperature"))
        tell("temperature", {"Temperature10", decimal(temperature)});
    if (report_class == QLatin1String("ltc_input"))
        tell("ltc_timecode", {"Timecode", no_timecode()});
    if (report_class == QLatin1String("melt"))
        tell("melt_available", {"MeltClientID", decimal(melt_client)});
    if (report_class == QLatin1String("alerts"))
        tell("alert", {"Alert",
                       {{"AlertingPriority", "malfunction"},
                        {"AlertingLevel", "ok"},
                        {"AlertName", "Temperature"},
                        {"AlertNameDescription", "Temperature of the main board"},
                        {"AlertValueDescription", QStringLiteral("%1 °C").arg(temperature / 10.0)}}});
}

CommandRows machine_commands()
{
    return {
        {"get_computer_name", get_computer_name},
        {"get_version_info", get_version_info},
        {"get_compression_info", get_compression_info},
        {"get_video_standard", get_video_standard},
        {"get_reference_source", get_reference_source},
        {"get_disk_usage", get_disk_usage},
        {"get_io_latency", get_io_latency},
        {"get_current_timecode", get_current_timecode},
        {"download_melts", download_melts},
    };
}

} // namespace simulator
