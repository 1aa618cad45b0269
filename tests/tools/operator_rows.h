// An operator's day, step by step: each in the words of the command line and by the typed functions of the
// library.
#pragma once

#include <skuan/protocol/kvrp3_api_qt.h>

#include <vector>

namespace operator_day {

using namespace KVRP3;

/// The server, and where its answers go.
struct To
{
    APIQt& server;
    AFunction ok;
    AFunction2<AString, ErrorCode> no;
    AFunction1<AString> text;

    APIQt* operator->() const { return &server; }
};

struct Row
{
    const char* words;           ///< `step N` lets fields pass, `? command` looks at the server's state
    void (*act)(To) = nullptr;   ///< the same without the command line
    const char* input = nullptr; ///< what the command line reads
};

constexpr Channel A = Channel_A, B = Channel_B, C = Channel_C, D = Channel_D;

inline int speed(double multiple)
{
    return static_cast<int>(multiple * 65536);
}
inline ChannelSet both()
{
    ChannelSet set(C);
    set.add_to_set(D);
    return set;
}
inline TrackSet tracks()
{
    TrackSet set(TrackType_video);
    set.add_to_set(TrackType_audio);
    return set;
}
inline ContentID clip(const AString& name)
{
    ContentID content;
    content.set_clipid(name);
    return content;
}
inline ListElement element(const AString& name, unsigned from, unsigned to)
{
    ListElement made;
    made.content_id = clip(name);
    made.set_goto_field(from);
    made.set_cue_end_field(to);
    return made;
}
inline ListElement dissolved(ListElement made, unsigned fields)
{
    made.set_transition({TransitionType_dissolve, true, fields});
    return made;
}
inline ChaseElement chased(const AString& name, unsigned trigger)
{
    ChaseElement made;
    made.content_id = clip(name);
    made.set_tc_start_trigger(trigger);
    return made;
}
inline Timecode timecode(int field)
{
    Timecode made;
    made.valid = true;
    made.set_position(field);
    return made;
}
inline void save(To t, const AString& id, const std::vector<ListElement>& elements)
{
    t->cmd_list_save_start(id);
    for (const ListElement& one : elements)
        t->cmd_list_save_element(one);
    t->cmd_list_save_end(t.ok, t.no);
}
inline void set_segment(To t, const AString& name, unsigned from, unsigned at)
{
    t->cmd_vclip_modification_start(L"promo");
    t->cmd_vclip_add_segment(L"promo", name, from, tracks(), at, 25);
    t->cmd_vclip_modification_end(L"promo", t.ok, t.no);
}

// clang-format off
inline const std::vector<Row> rows = {
    // In the morning
    {"clip list", [](To t) { t->cmd_download_clipids(t.ok, t.text, t.no); }},
    {"dir list", [](To t) { t->cmd_download_directory_names(t.ok, t.text, t.no); }},
    {"dict set show evening", [](To t) { t->cmd_userdict_set(L"show", L"evening", t.ok, t.no); }},
    {"meta set rundown 1=opening 2=harbour", [](To t) { t->cmd_metadata_set(L"rundown", {{L"1", L"opening"}, {L"2", L"harbour"}}, t.ok, t.no); }},
    {"config set ReferenceSource input1", [](To t) { t->cmd_set_configuration(L"ReferenceSource", L"input1", t.ok, t.no); }},
    {"config set Nothing x", [](To t) { t->cmd_set_configuration(L"Nothing", L"x", t.ok, t.no); }},

    // A recording, watched while it grows, and what is noted about it
    {"record A news/harbour --length 100 --tracks video,audio", [](To t) { t->cmd_create_clip(L"news/harbour", tracks(), 100, A, t.ok, t.no); }},
    {"step 60"},
    {"live B --clip news/harbour --delay 25", [](To t) { t->cmd_go_live(B, true, L"news/harbour", false, 0, true, 25, false, false, t.ok, t.no); }},
    {"step 10"},
    {"clip delete news/harbour", [](To t) { t->cmd_delete_clip(L"news/harbour", t.ok, t.no); }},
    {"? get_volatile_file_info ClipID=news/harbour"},
    {"step 40"},
    {"stop B", [](To t) { t->cmd_stop(B, t.ok, t.no); }},
    {"unload B", [](To t) { t->cmd_unload(B, t.ok, t.no); }},
    {"unload A", [](To t) { t->cmd_unload(A, t.ok, t.no); }},
    {"clip set news/harbour --title Harbour --trim-start 10 --trim-end 5 --metadata reel=7", [](To t) {
        ClipAttrChange change;
        change.set_title(L"Harbour");
        change.set_trim_start(10);
        change.set_trim_end(5);
        change.set_set_metadata({{L"reel", L"7"}});
        t->cmd_modify_clip_attributes(L"news/harbour", change, t.ok, t.no);
    }},
    {"? get_clip_info ClipID=news/harbour"},
    {"clip rename news/harbour news/late/fire", [](To t) { t->cmd_rename_clip(L"news/harbour", L"news/late/fire", t.ok, t.no); }},
    {"clip child news/late/fire_b news/late/fire --angle 2", [](To t) { t->cmd_create_child_clip(L"news/late/fire_b", L"news/late/fire", 2, t.ok, t.no); }},
    {"dir create vault", [](To t) { t->cmd_create_directory(L"vault", t.ok, t.no); }},
    {"dir rename news/late vault/fires", [](To t) { t->cmd_rename_dir(L"news/late", L"vault/fires", t.ok, t.no); }},
    {"clip list vault/fires", [](To t) { t->cmd_download_clipids(L"vault/fires", t.ok, t.text, t.no); }},

    // Playing it, to and fro
    {"cue A nothing", [](To t) { t->cmd_cue_clip(A, L"nothing", t.ok, t.no); }},
    {"cue A vault/fires/fire --loop off --at 5", [](To t) { t->cmd_cue_clip(A, L"vault/fires/fire", Loop_off, 5, t.ok, t.no); }},
    {"step 3"},
    {"play A", [](To t) { t->cmd_play(A, t.ok, t.no); }},
    {"step 20"},
    {"jog A -10", [](To t) { t->cmd_jog(A, -10, t.ok, t.no); }},
    {"goto A 60", [](To t) { t->cmd_gotocmd(A, 60, t.ok, t.no); }},
    {"play A --speed -0.5", [](To t) { t->cmd_play(A, speed(-0.5), t.ok, t.no); }},
    {"step 20"},
    {"play A --at 10 --speed 2", [](To t) { t->cmd_go_at(A, 10, speed(2), t.ok, t.no); }},
    {"step 5"},
    {"loop in A 10", [](To t) { t->cmd_set_loop_in(A, 10, t.ok, t.no); }},
    {"loop out A 30", [](To t) { t->cmd_set_loop_out(A, 30, t.ok, t.no); }},
    {"loop mode A pingpong", [](To t) { t->cmd_set_loop(A, Loop_pingpong, t.ok, t.no); }},
    {"step 15"},
    {"loop mode A off", [](To t) { t->cmd_set_loop(A, Loop_off, t.ok, t.no); }},
    {"loop in A off", [](To t) { t->cmd_clear_loop_in(A, t.ok, t.no); }},
    {"loop out A off", [](To t) { t->cmd_clear_loop_out(A, t.ok, t.no); }},
    {"play A --at 0 --speed 1", [](To t) { t->cmd_go_at(A, 0, speed(1), t.ok, t.no); }},
    {"out A 12", [](To t) { t->cmd_set_out_point(A, 12, t.ok, t.no); }},
    {"step 20"},
    {"out A off", [](To t) { t->cmd_clear_out_point(A, t.ok, t.no); }},

    // One clip after the other
    {"precue A news/one --when end_of_clip", [](To t) { t->cmd_precue(A, L"news/one", PrecueCondition_end_of_clip, t.ok, t.no); }},
    {"play A --at 70", [](To t) { t->cmd_go_at(A, 70, t.ok, t.no); }},
    {"step 30"},
    {"precue A news/two", [](To t) { t->cmd_precue(A, L"news/two", t.ok, t.no); }},
    {"precue activate A", [](To t) { t->cmd_precue_activate(A, t.ok, t.no); }},
    {"precue A news/three", [](To t) { t->cmd_precue(A, L"news/three", t.ok, t.no); }},
    {"precue clear A", [](To t) { t->cmd_precue_clear(A, t.ok, t.no); }},
    {"precue A ident", [](To t) { t->cmd_precue(A, L"ident", t.ok, t.no); }},
    {"take A --transition dissolve --duration 10", [](To t) { t->cmd_take(A, TransitionType_dissolve, 10, t.ok, t.no); }},
    {"step 12"},
    {"unload A", [](To t) { t->cmd_unload(A, t.ok, t.no); }},

    // Two channels as one
    {"cue C news/one", [](To t) { t->cmd_cue_clip(C, L"news/one", t.ok, t.no); }},
    {"cue D news/two", [](To t) { t->cmd_cue_clip(D, L"news/two", t.ok, t.no); }},
    {"step 2"},
    {"gang play C,D --speed 1", [](To t) { t->cmd_gang_play(both(), speed(1), t.ok, t.no); }},
    {"step 5"},
    {"gang stop C,D", [](To t) { t->cmd_gang_stop(both(), t.ok, t.no); }},
    {"gang jog C,D 5", [](To t) { t->cmd_gang_jog(both(), 5, t.ok, t.no); }},
    {"gang goto C,D 100", [](To t) { t->cmd_gang_gotocmd(both(), 100, t.ok, t.no); }},
    {"gang ee C,D 3", [](To t) { t->cmd_gang_ee(both(), 3, false, t.ok, t.no); }},
    {"insert D 1", [](To t) { t->cmd_insert_edit(D, 1, t.ok, t.no); }},
    {"step 10"},
    {"stop D", [](To t) { t->cmd_stop(D, t.ok, t.no); }},
    {"unload C", [](To t) { t->cmd_unload(C, t.ok, t.no); }},
    {"unload D", [](To t) { t->cmd_unload(D, t.ok, t.no); }},

    // The evening as a play list
    {"list save evening", [](To t) { save(t, L"evening", {element(L"news/one", 0, 20), dissolved(element(L"news/two", 50, 70), 5), element(L"news/three", 0, 30)}); },
     R"({"ContentID":{"ClipID":"news/one"},"GotoPosition":0,"ClipPosition":20}
{"ContentID":{"ClipID":"news/two"},"GotoPosition":50,"ClipPosition":70,"Transition":{"TransitionType":"dissolve","TransitionDuration":5}}
{"ContentID":{"ClipID":"news/three"},"GotoPosition":0,"ClipPosition":30})"},
    {"list rename evening night", [](To t) { t->cmd_list_rename(L"evening", L"night", t.ok, t.no); }},
    {"list list", [](To t) { t->cmd_download_listids(t.ok, t.text, t.no); }},
    {"? download_list ListID=night"},
    {"list load A night", [](To t) { t->cmd_list_load(A, L"night", t.ok, t.no); }},
    {"list take A", [](To t) { t->cmd_list_take(A, t.ok, t.no); }},
    {"step 30"},
    {"list insert A 3 ident --at 10 --out 40", [](To t) { t->cmd_list_insert(A, 3, element(L"ident", 10, 40), t.ok, t.no); }},
    {"list set A 3 --end pause", [](To t) {
        ListElementChange change;
        change.set_list_element_at_end(ListElementAtEnd_pause);
        t->cmd_list_play_modify_item(A, 3, change, t.ok, t.no);
    }},
    {"list reorder A 0 3", [](To t) {
        t->cmd_list_play_reorder_start(A);
        t->cmd_list_play_reorder_item(3);
        t->cmd_list_play_reorder_finish(0, t.ok, t.no);
    }},
    {"list now A 3 --jog 5", [](To t) { t->cmd_list_play_now(A, 3, Roll_roll, 5, t.ok, t.no); }},
    {"list next A 0", [](To t) { t->cmd_list_play_next(A, 0, Roll_roll, t.ok, t.no); }},
    {"list remove A 1", [](To t) { t->cmd_list_remove_item(A, 1, t.ok, t.no); }},
    {"list accept A", [](To t) { t->cmd_list_play_clear_modified(A, t.ok, t.no); }},
    {"list loop A loop", [](To t) { t->cmd_list_set_loop(A, Loop_loop, t.ok, t.no); }},
    {"list bed A ident", [](To t) {
        ListElement bed;
        bed.content_id = clip(L"ident");
        t->cmd_list_bed(A, bed, t.ok, t.no);
    }},
    {"step 100"},
    {"list unload A", [](To t) { t->cmd_list_unload(A, t.ok, t.no); }},
    {"unload A", [](To t) { t->cmd_unload(A, t.ok, t.no); }},
    {"list delete night", [](To t) { t->cmd_list_delete(L"night", t.ok, t.no); }},

    // A chase
    {"chase save pursuit", [](To t) {
        t->cmd_chase_save_start(L"pursuit");
        t->cmd_chase_save_element(chased(L"news/one", 1000));
        t->cmd_chase_save_element(chased(L"news/two", 1050));
        t->cmd_chase_save_end(t.ok, t.no);
    }, R"({"ContentID":{"ClipID":"news/one"},"TcStartTrigger":1000}
{"ContentID":{"ClipID":"news/two"},"TcStartTrigger":1050})"},
    {"chase rename pursuit hunt", [](To t) { t->cmd_chase_rename(L"pursuit", L"hunt", t.ok, t.no); }},
    {"chase load B hunt", [](To t) { t->cmd_chase_load(B, L"hunt", t.ok, t.no); }},
    {"chase insert B 2 ident --trigger 1060", [](To t) { t->cmd_chase_insert(B, 2, chased(L"ident", 1060), t.ok, t.no); }},
    {"chase set B 2 --end pause", [](To t) {
        ChaseElementChange change;
        change.set_chase_element_at_end(ChaseElementAtEnd_pause);
        t->cmd_chase_play_modify_item(B, 2, change, t.ok, t.no);
    }},
    {"call sending_chase_ltcin Timecode.Valid=true Timecode.FieldNumber=1020", [](To t) { t->cmd_sending_chase_ltcin(timecode(1020), t.ok, t.no); }},
    {"step 5"},
    {"call sending_chase_ltcin Timecode.Valid=true Timecode.FieldNumber=1055", [](To t) { t->cmd_sending_chase_ltcin(timecode(1055), t.ok, t.no); }},
    {"step 10"},
    {"chase remove B 0", [](To t) { t->cmd_chase_remove_item(B, 0, t.ok, t.no); }},
    {"chase accept B", [](To t) { t->cmd_chase_play_clear_modified(B, t.ok, t.no); }},
    {"chase unload B", [](To t) { t->cmd_chase_unload(B, t.ok, t.no); }},
    {"unload B", [](To t) { t->cmd_unload(B, t.ok, t.no); }},
    {"chase delete hunt", [](To t) { t->cmd_chase_delete(L"hunt", t.ok, t.no); }},

    // A clip put together from others, and files of one
    {"vclip create promo 50", [](To t) { t->cmd_vclip_create(L"promo", 50, t.ok, t.no); }},
    {"vclip add promo news/one 0 video,audio 0 25", [](To t) { set_segment(t, L"news/one", 0, 0); }},
    {"vclip add promo news/two 100 video,audio 25 25", [](To t) { set_segment(t, L"news/two", 100, 25); }},
    {"vclip ripple promo audio 25 -5", [](To t) {
        t->cmd_vclip_modification_start(L"promo");
        t->cmd_vclip_ripple(L"promo", TrackType_audio, 25, -5);
        t->cmd_vclip_modification_end(L"promo", t.ok, t.no);
    }},
    {"cue A promo --vclip", [](To t) {
        t->cmd_cue_clip(A, L"promo", false, {}, false, 0, false, 0, false, 0, false, {}, false, 0, true, ClipScope_vclip, false, 0,
                        false, 0, false, false, t.ok, t.no);
    }},
    {"play A", [](To t) { t->cmd_play(A, t.ok, t.no); }},
    {"step 60"},
    {"unload A", [](To t) { t->cmd_unload(A, t.ok, t.no); }},
    {"vclip free promo", [](To t) { t->cmd_vclip_free(L"promo", t.ok, t.no); }},
    {"export vault/fires/fire=fire.mxf --length 20", [](To t) {
        t->cmd_export_start();
        t->cmd_export_add(L"vault/fires/fire", L"fire.mxf", false, 0, true, 20, false, 0);
        t->cmd_export_end(t.ok, t.no);
    }},
    {"export request A", [](To t) { t->cmd_export_initiate(A, t.ok, t.no); }},

    // At night
    {"meta erase rundown 2", [](To t) { t->cmd_metadata_erase(L"rundown", {L"2"}, t.ok, t.no); }},
    {"? download_metadata MetadataDatabase=rundown"},
    {"dict erase show", [](To t) { t->cmd_userdict_erase(L"show", t.ok, t.no); }},
    {"clip delete vault/fires/fire_b", [](To t) { t->cmd_delete_clip(L"vault/fires/fire_b", t.ok, t.no); }},
    {"clip delete vault/fires/fire", [](To t) { t->cmd_delete_clip(L"vault/fires/fire", t.ok, t.no); }},
};
// clang-format on

} // namespace operator_day
