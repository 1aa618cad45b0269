// What the server remembers of one client, for as long as its connection lasts.
#pragma once

#include <simulator/commands/export_p.h>
#include <simulator/commands/lists_p.h>
#include <simulator/commands/vclips_p.h>

#include <array>
#include <functional>
#include <optional>

namespace simulator {

// What a client can make the server remember is paid for from the budget `state`, and what waits for the
// client from `backlog`. Both outlive it.
struct Remembered
{
    Remembered(Budget& state, Budget& backlog)
        : outbox_share(backlog),
          watched_metadata(state),
          watched_keys(state),
          legacy(state),
          vclip_edits(state)
    {
    }

    QByteArray outbox; // reports that leave when the command that caused them is done
    Share outbox_share;
    bool is_overrun = false; // reports did not fit in the outbox

    // What it asked to be told of.
    quint32 report_classes = 0;                              // a bit for each ReportType
    std::array<quint16, channel_count> channel_classes = {}; // for each ChannelReportType
    Shelf<std::set<QString>> watched_metadata;               // prefixes by database
    Shelf<Nothing> watched_keys;                             // of the user dictionary

    Shelf<QString> legacy; // what keys of the user dictionary get when the client goes

    // Sequences that it has begun.
    std::optional<ListDraft> play_list_draft, chase_list_draft;
    std::optional<Reordering> play_list_reordering, chase_list_reordering;
    std::optional<ExportDraft> export_draft;
    Shelf<VirtualClip> vclip_edits;
};

struct Session : Remembered
{
    using Remembered::Remembered;

    // Forgets it all, and gives back what it took. Not the functions, one of which may be running.
    void forget(Budget& state, Budget& backlog) { Remembered::operator=({state, backlog}); }

    // Puts bytes on the client's wire, past the answers that wait.
    std::function<void(const QByteArray&)> send;
    std::function<void()> overrun; // for when more would wait for the client than may: ends its connection
};

} // namespace simulator
