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
    const char *loaded, *unloaded, *exists, *inserted, *removed, *cleared, *modified;
    const char *air_now, *air_lock, *air_next; // the last two of play lists only

    // Where they are kept.
    Shelf<std::vector<Element>> ServerState::*saved;
    std::optional<LoadedList> Channel::*on_channel;
    std::optional<ListDraft> Session::*draft;
    std::optional<Reordering> Session::*reordering;
};

inline constexpr ListKind play_list_kind = {
    .noun = "play list",
    .id = "ListID",
    .from = "ListFromID",
    .to = "ListToID",
    .index = "ListIndex",
    .element = "ListElement",
    .change = "ListElementChange",
    .air = "ListPlaybackIndex",
    .id_reply = "listid",
    .element_reply = "list_element",
    .created = "playlist_created",
    .changed = "playlist_changed",
    .deleted = "playlist_deleted",
    .loaded = "channel_listplay_list",
    .unloaded = "channel_listplay_unloaded",
    .exists = "channel_listplay_item_exists",
    .inserted = "channel_listplay_item_insert",
    .removed = "channel_listplay_item_remove",
    .cleared = "channel_listplay_clear_all",
    .modified = "channel_listplay_modified",
    .air_now = "channel_listplay_air_now",
    .air_lock = "channel_listplay_air_lock",
    .air_next = "channel_listplay_air_next",
    .saved = &ServerState::play_lists,
    .on_channel = &Channel::play_list,
    .draft = &Session::play_list_draft,
    .reordering = &Session::play_list_reordering,
};

inline constexpr ListKind chase_list_kind = {
    .noun = "chase list",
    .id = "ChaseID",
    .from = "ChaseFromID",
    .to = "ChaseToID",
    .index = "ChaseIndex",
    .element = "ChaseElement",
    .change = "ChaseElementChange",
    .air = "ChasePlaybackIndex",
    .id_reply = "chaseid",
    .element_reply = "chase_element",
    .created = "chaselist_created",
    .changed = "chaselist_changed",
    .deleted = "chaselist_deleted",
    .loaded = "channel_chaseplay_chase",
    .unloaded = "channel_chaseplay_unloaded",
    .exists = "channel_chaseplay_item_exists",
    .inserted = "channel_chaseplay_item_insert",
    .removed = "channel_chaseplay_item_remove",
    .cleared = "channel_chaseplay_clear_all",
    .modified = "channel_chaseplay_modified",
    .air_now = "channel_chaseplay_air_now",
    .air_lock = nullptr,
    .air_next = nullptr,
    .saved = &ServerState::chase_lists,
    .on_channel = &Channel::chase_list,
    .draft = &Session::chase_list_draft,
    .reordering = &Session::chase_list_reordering,
};

// Which element is meant; without an index none is.
Element air_tag(const ListKind& kind, const std::optional<quint32>& index);

Refusal no_such_list(const ListKind& kind, const QString& id);

} // namespace simulator
