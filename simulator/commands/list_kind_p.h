// What tells play lists and chase lists apart: names. So each of their commands is written once, for both.
#pragma once

#include <simulator/commands/channels_p.h>
#include <simulator/server_state_p.h>
#include <simulator/session_p.h>

namespace simulator {

constexpr std::size_t most_list_elements = 65535; // as far as an index reaches

struct ListKind
{
    const char* noun;

    // Tags.
    const char *id, *from, *to, *index, *element, *change, *air;

    // Replies.
    const char *id_reply, *element_reply;

    // Reports of the saved lists, and of those on channels.
    const char *created, *changed, *deleted;
    const char *loaded, *unloaded, *exists, *inserted, *removed, *cleared, *air_now, *modified;

    // Where they are kept.
    Shelf<std::vector<Element>> ServerState::*saved;
    std::optional<LoadedList> Channel::*on_channel;
    std::optional<ListDraft> Session::*draft;
    std::optional<Reordering> Session::*reordering;
};

inline constexpr ListKind play_list_kind = {
    "play list",
    "ListID",
    "ListFromID",
    "ListToID",
    "ListIndex",
    "ListElement",
    "ListElementChange",
    "ListPlaybackIndex",
    "listid",
    "list_element",
    "playlist_created",
    "playlist_changed",
    "playlist_deleted",
    "channel_listplay_list",
    "channel_listplay_unloaded",
    "channel_listplay_item_exists",
    "channel_listplay_item_insert",
    "channel_listplay_item_remove",
    "channel_listplay_clear_all",
    "channel_listplay_air_now",
    "channel_listplay_modified",
    &ServerState::play_lists,
    &Channel::play_list,
    &Session::play_list_draft,
    &Session::play_list_reordering,
};

inline constexpr ListKind chase_list_kind = {
    "chase list",
    "ChaseID",
    "ChaseFromID",
    "ChaseToID",
    "ChaseIndex",
    "ChaseElement",
    "ChaseElementChange",
    "ChasePlaybackIndex",
    "chaseid",
    "chase_element",
    "chaselist_created",
    "chaselist_changed",
    "chaselist_deleted",
    "channel_chaseplay_chase",
    "channel_chaseplay_unloaded",
    "channel_chaseplay_item_exists",
    "channel_chaseplay_item_insert",
    "channel_chaseplay_item_remove",
    "channel_chaseplay_clear_all",
    "channel_chaseplay_air_now",
    "channel_chaseplay_modified",
    &ServerState::chase_lists,
    &Channel::chase_list,
    &Session::chase_list_draft,
    &Session::chase_list_reordering,
};

Refusal no_such_list(const ListKind& kind, const QString& id);

} // namespace simulator
