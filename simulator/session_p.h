// What the server remembers of one client, for as long as its connection lasts.
#pragma once

#include <simulator/commands/export_p.h>
#include <simulator/commands/lists_p.h>
#include <simulator/commands/vclips_p.h>

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <set>

namespace simulator {

struct Session
{
    // Puts bytes on the client's wire, past the answers that wait.
    std::function<void(const QByteArray&)> send;
    QByteArray outbox; // reports that leave when the command that caused them is done

    // What it asked to be told of.
    quint32 report_classes = 0;                              // a bit for each ReportType
    std::array<quint16, channel_count> channel_classes = {}; // for each ChannelReportType
    std::map<QString, std::set<QString>> watched_metadata;   // prefixes by database
    std::set<QString> watched_keys;                          // of the user dictionary

    std::map<QString, QString> legacy; // what keys of the user dictionary get when the client goes

    // Sequences that it has begun.
    std::optional<ListDraft> play_list_draft, chase_list_draft;
    std::optional<Reordering> play_list_reordering, chase_list_reordering;
    std::optional<ExportDraft> export_draft;
    std::map<QString, VirtualClip> vclip_edits;
};

} // namespace simulator
