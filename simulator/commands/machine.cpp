// Questions about the machine: name, version, disk, standard, reference, timecode, melts.
#include <simulator/commands/machine_p.h>

#include <simulator/catalogue_p.h>
#include <simulator/commands/channels_p.h>
#include <simulator/commands/clips_p.h>
#include <simulator/server_state_p.h>

#include <algorithm>

namespace simulator {

namespace {

constexpr quint32 io_latency = 4; // fields

Refusal get_computer_name(Call& call)
{
    call.reply("computername", {{"ComputerName", call.state.configuration.effective("ComputerName")}});
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
    const std::vector<Element> info = {
        {"CompressionYSize", decimal(160'000)},
        {"CompressionCSize", decimal(80'000)},
        {"CompressionKSize", decimal(0)},
        {"AudioTrackCount", call.state.configuration.effective("AudioTrackCount")},
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
    call.reply("disk_usage", {{"TotalDiskSpace", decimal(call.state.machine.disk_size)},
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
    const Channel& channel = call.deck().channel();
    call.reply("channel_current_timecode", {child(call.arguments, "Channel"),
                                            {"DisplayTimecode", display_timecode(call.state, channel)},
                                            {"ClipLength", decimal(channel.cue.length)},
                                            {"ClipPosition", decimal(channel.motion.field())}});
    return {};
}

// A clip may have gone since it was put into a melt.
Refusal download_melts(Call& call)
{
    for (const auto& [client, melts] : call.state.machine.melts) {
        call.reply("melt_flags", {melts.flags});
        for (const Element& item : melts.items)
            if (call.state.clips.has_clip(text(item, "ClipID")))
                call.reply("melt_item", {item});
    }
    return {};
}

} // namespace

quint64 available_space(const ServerState& state)
{
    const quint64 size = state.machine.disk_size;
    return size - std::min(size, state.clips.field_count() * field_size);
}

std::vector<Element> no_timecode()
{
    return {{"Valid", truth(false)}};
}

std::vector<Element> display_timecode(ServerState& state, const Channel& channel)
{
    if (channel.cue.clip.isEmpty())
        return no_timecode();
    quint32 field = channel.motion.field();
    if (const Clip* clip = channel.cue.is_virtual ? nullptr : state.clips.clip(channel.cue.clip))
        field += first_field(*clip); // wraps, as a field number does
    const QString standard = state.configuration.effective("VideoStandard");
    return {{"Valid", truth(true)},
            {"VideoStandard", standard},
            {"FieldNumber", QString::number(static_cast<qint32>(field))},
            drop_frame_flag(standard)};
}

Element disk_space(const ServerState& state)
{
    return {"DiskSpaceChange",
            {{"TotalDiskSpace", decimal(state.machine.disk_size)},
             {"AvailableDiskSpace", decimal(available_space(state))}}};
}

void tell_machine(Call& call, const QString& report_class)
{
    const Machine& machine = call.state.machine;
    const auto tell = [&](const char* report, const Element& field) {
        call.audience.report_to(call.session, report, {field});
    };
    if (report_class == QLatin1String("disk_space"))
        tell("disk_space_changed", disk_space(call.state));
    if (report_class == QLatin1String("temperature"))
        tell("temperature", {"Temperature10", decimal(machine.temperature)});
    if (report_class == QLatin1String("ltc_input"))
        tell("ltc_timecode", {"Timecode", input_timecode(call.state)});
    if (report_class == QLatin1String("melt"))
        for (const auto& [client, melts] : machine.melts)
            tell("melt_available", {"MeltClientID", decimal(client)});
    if (report_class == QLatin1String("alerts"))
        for (const auto& [name, alert] : machine.alerts)
            tell("alert", {"Alert", alert});
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
