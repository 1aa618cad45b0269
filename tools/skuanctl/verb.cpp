// The table of verbs. Most stand for one command of the protocol: their arguments, options, values and help
// follow from it.
#include <skuanctl/run.h>
#include <skuanctl/verb.h>

namespace {

const char* const list_columns = "ContentID GotoPosition ClipPosition Speed Angle ListElementAtStart "
                                 "ListElementAtEnd TransitionType TransitionDuration";
const char* const chase_columns =
    "ContentID GotoPosition ClipPosition Speed Angle ChaseElementAtEnd ClipStartOffset TcStartTrigger";
const char* const config_columns = "ConfigurationItemName ConfigurationItemEffectiveValue "
                                   "ConfigurationItemSavedValue ConfigurationItemBootValue "
                                   "ConfigurationItemRequiresReboot ConfigurationItemAllowedValues";

} // namespace

const std::vector<VerbRow>& verb_rows()
{
    static const std::vector<VerbRow> rows = {
        {"info", "", "",
         "tell what the server is: name, version, standard, reference, disk, latency, compression",
         "what each of the questions answers, by tag", make_info},

        {"monitor", "", "[CHANNELS] [--columns=COLUMNS]",
         "follow the channels, field by field: a table on a terminal, and else a line whenever a channel "
         "changes",
         "channel; columns: status, clip, position, timecode, speed, loop, tally, input, length, with null "
         "for "
         "what is not known",
         make_monitor, Stay::always},

        {"channel list", "", "[CHANNELS]", "show what the channels do",
         "Channel, and what its reports tell, by tag", make_channel_list},
        {"channel timecode", "get_current_timecode", "Channel",
         "show the timecode of a channel, and where it is in its clip"},
        {"channel watch", "", "[CHANNELS]", "print what happens on the channels",
         "@:status,clipid,speed,info", make_watch, Stay::always},
        {"channel steal", "steal_channel", "Channel PlayOrRecord",
         "take a channel over, and hold it until the verb ends", "", make_recipe, Stay::holding},

        {"cue", "cue_clip", "Channel ClipID", "load a clip onto a channel"},
        {"play", "play|go_at", "Channel", "play; with --at, from there"},
        {"stop", "stop", "Channel", "stop, also a recording"},
        {"jog", "jog", "Channel JogDistance", "move by a number of fields"},
        {"goto", "gotocmd", "Channel GotoPosition", "go to a position"},
        {"live", "go_live", "Channel", "follow what is being recorded"},
        {"unload", "unload", "Channel", "take the clip off the channel"},
        {"out", "set_out_point|clear_out_point", "Channel ClipPosition|off", "set where the clip ends"},
        {"loop mode", "set_loop", "Channel Loop", "set how the clip repeats"},
        {"loop in", "set_loop_in|clear_loop_in", "Channel LoopIn|off", "set where the loop begins"},
        {"loop out", "set_loop_out|clear_loop_out", "Channel LoopOut|off", "set where the loop ends"},
        {"gang play", "gang_play|gang_go_at", "ChannelSet", "play channels together, all of them or none"},
        {"gang stop", "gang_stop", "ChannelSet", "stop channels together"},
        {"gang jog", "gang_jog", "ChannelSet JogDistance", "move channels by a number of fields together"},
        {"gang goto", "gang_gotocmd", "ChannelSet GotoPosition", "take channels to a position together"},
        {"gang activate", "gang_precue_activate", "ChannelSet",
         "have the precued clips of channels take over together"},
        {"gang ee", "gang_ee", "ChannelSet SonyEditMask AutoEE=false",
         "choose the tracks that are in E-to-E, on channels"},
        {"gang insert", "gang_insert_edit", "ChannelSet SonyEditMask",
         "choose the tracks of an insert edit, on channels"},
        {"precue", "precue", "Channel ClipID", "ready a clip to take over from the one on the channel"},
        {"precue activate", "precue_activate", "Channel", "have the precued clip take over"},
        {"precue clear", "precue_clear", "Channel", "give up what is precued"},
        {"take", "take", "Channel", "put on air what is next, by a cut or another transition"},
        {"angle", "iso_angle", "Channel Angle", "choose an angle of a clip with several"},
        {"ee", "ee", "Channel SonyEditMask AutoEE=false", "choose the tracks that are in E-to-E"},
        {"insert", "insert_edit", "Channel SonyEditMask", "choose the tracks of an insert edit"},
        {"record", "create_clip", "Channel ClipID TrackSet=video,audio,timecode [--wait]",
         "make a clip and record it; --wait stays until it is recorded", "", make_record},

        {"clip list", "download_clipids", "[DirectoryName]", "list the clips, of all directories or of one",
         "ClipID"},
        {"clip info", "get_clip_info", "ClipID", "tell everything about a clip"},
        {"clip exists", "clip_exists", "ClipID", "tell whether there is such a clip", "Exists"},
        {"clip files", "get_volatile_file_info", "ClipID", "tell how the files of a clip are laid out",
         "KeyList"},
        {"clip create", "create_clip", "ClipID TrackSet=video,audio !Channel", "make a clip"},
        {"clip child", "create_child_clip", "ClipID ParentClipID", "make a clip that belongs to another one"},
        {"clip set", "modify_clip_attributes", "ClipID",
         "change what is noted about a clip, its trims and loop"},
        {"clip rename", "rename_clip", "FromID ToID", "give a clip another name"},
        {"clip delete", "delete_clip", "ClipID...", "delete clips"},
        {"clip watch", "", "", "print what happens to clips", "clip_change", make_watch, Stay::always},

        {"dir list", "download_directory_names", "[DirectoryName]",
         "list the directories, all or those within one", "DirectoryName"},
        {"dir create", "create_directory", "DirectoryName", "make a directory"},
        {"dir rename", "rename_dir", "FromDir ToDir", "give a directory another name"},
        {"dir watch", "", "", "print what happens to directories", "directory_change", make_watch,
         Stay::always},

        {"list list", "download_listids", "", "list the play lists", "ListID"},
        {"list show", "download_list", "ListID", "show the elements of a play list", list_columns},
        {"list save", "list_save_element", "LIST [FILE] !ListElement",
         "save a play list; its elements are lines as `list show --json` prints them", "", make_list_save,
         Stay::never, true},
        {"list rename", "list_rename", "ListFromID ListToID", "give a play list another name"},
        {"list delete", "list_delete", "ListID...", "delete play lists"},
        {"list load", "list_load", "Channel ListID", "load a play list onto a channel"},
        {"list unload", "list_unload", "Channel", "take the play list off the channel"},
        {"list bed", "list_bed", "Channel ContentID", "give the loaded play list its bed"},
        {"list insert", "list_insert", "Channel ListIndex ContentID",
         "put an element into the loaded play list"},
        {"list set", "list_play_modify_item", "Channel ListIndex",
         "change an element of the loaded play list"},
        {"list remove", "list_remove_item", "Channel ListIndex",
         "take an element out of the loaded play list"},
        {"list reorder", "list_play_reorder_start|list_play_reorder_item", "Channel TO FROM... !ListIndex",
         "move elements of the loaded play list before another one", "", make_list_reorder},
        {"list take", "list_take", "Channel", "have the loaded play list take what comes next"},
        {"list now", "list_play_now", "Channel ListIndex Roll=roll",
         "go to an element of the loaded play list now"},
        {"list next", "list_play_next", "Channel ListIndex Roll=roll", "make an element the next one"},
        {"list loop", "list_set_loop", "Channel Loop", "set how the loaded play list repeats"},
        {"list accept", "list_play_clear_modified", "Channel",
         "have the loaded play list count as unmodified"},
        {"list watch", "", "[CHANNELS]", "print what happens to play lists, saved and loaded",
         "playlist_change @:listplay", make_watch, Stay::always},

        {"chase list", "download_chaseids", "", "list the chase lists", "ChaseID"},
        {"chase show", "download_chase", "ChaseID", "show the elements of a chase list", chase_columns},
        {"chase save", "chase_save_element", "CHASE [FILE] !ChaseElement",
         "save a chase list; its elements are lines as `chase show --json` prints them", "", make_list_save,
         Stay::never, true},
        {"chase rename", "chase_rename", "ChaseFromID ChaseToID", "give a chase list another name"},
        {"chase delete", "chase_delete", "ChaseID...", "delete chase lists"},
        {"chase load", "chase_load", "Channel ChaseID", "load a chase list onto a channel"},
        {"chase unload", "chase_unload", "Channel", "take the chase list off the channel"},
        {"chase insert", "chase_insert", "Channel ChaseIndex ContentID",
         "put an element into the loaded chase list"},
        {"chase set", "chase_play_modify_item", "Channel ChaseIndex",
         "change an element of the loaded chase list"},
        {"chase remove", "chase_remove_item", "Channel ChaseIndex",
         "take an element out of the loaded chase list"},
        {"chase reorder", "chase_play_reorder_start|chase_play_reorder_item",
         "Channel TO FROM... !ChaseIndex", "move elements of the loaded chase list before another one", "",
         make_list_reorder},
        {"chase accept", "chase_play_clear_modified", "Channel",
         "have the loaded chase list count as unmodified"},
        {"chase watch", "", "[CHANNELS]", "print what happens to chase lists, saved and loaded",
         "chaselist_change @:chaseplay", make_watch, Stay::always},

        {"vclip create", "vclip_create", "VClipID ClipLength", "make a virtual clip"},
        {"vclip free", "vclip_free", "VClipID...", "give up virtual clips"},
        {"vclip edit", "", "VCLIP [FILE]",
         "make edits that take effect together; each is a line like `add CLIP FROM ...`, a verb of this "
         "family without the name",
         "", make_vclip_edit, Stay::never, true},
        {"vclip add", "vclip_add_segment", "VClipID ClipID ClipPosition TrackSet VClipPosition ClipLength",
         "put a piece of a clip into tracks of a virtual clip", "", make_vclip_edit},
        {"vclip clear", "vclip_clear_segment", "VClipID TrackSet VClipPosition ClipLength",
         "empty a stretch of tracks", "", make_vclip_edit},
        {"vclip ripple", "vclip_ripple", "VClipID TrackSet VClipPosition VClipDistance",
         "move what stands in tracks from a position on", "", make_vclip_edit},
        {"vclip tracks", "vclip_cfg_tracks", "VClipID ClipID TrackSet", "set tracks up like those of a clip",
         "", make_vclip_edit},
        {"vclip enable", "vclip_track_enable", "VClipID TrackSet", "choose the tracks that are on", "",
         make_vclip_edit},

        {"dict get", "", "KEY", "print the text under a key of the user dictionary", "Key, Value",
         make_dict_get},
        {"dict set", "userdict_set", "Key Value", "put a text under a key"},
        {"dict own", "userdict_own", "Key Value", "hold a text that is put under the key when this verb ends",
         "", make_recipe, Stay::holding},
        {"dict erase", "userdict_erase", "Key...", "remove keys"},
        {"dict watch", "", "KEY...",
         "print the texts under keys, and then as they change, through lost connections too", "Key, Value",
         make_dict_watch, Stay::always},

        {"meta list", "download_metadata", "MetadataDatabase", "list the metadata of a database",
         "MetadataList"},
        {"meta set", "metadata_set", "MetadataDatabase MetadataList", "put texts under keys of a database"},
        {"meta erase", "metadata_erase", "MetadataDatabase KeyList", "remove keys of a database"},
        {"meta watch", "watch_metadata_database", "MetadataDatabase", "print what changes in a database", "",
         make_recipe, Stay::always},

        {"config list", "get_configuration", "", "list the configuration", config_columns},
        {"config get", "", "ITEM...", "print what configuration items are set to",
         "ConfigurationItemName, ConfigurationItemValue, ConfigurationItemAllowedValues", make_config_get},
        {"config set", "set_configuration", "ConfigurationItemName ConfigurationItemValue",
         "give a configuration item another value"},
        {"config watch", "", "[ITEM...]",
         "print what configuration items are set to, and then as it changes, through lost connections "
         "too; of all items only the changes",
         "ConfigurationItemName, ConfigurationItemValue", make_config_watch, Stay::always},
        {"layout", "", "[--board=BOARD]",
         "draw which user channel and angle feeds which output; the server tells which board it has only of "
         "some kinds",
         "board, sets, user_channels", make_layout},

        {"export", "export_add", "CLIP=FILE... !ClipID !Filename", "export clips, or a piece of each", "",
         make_export},
        {"export request", "export_initiate", "Channel", "ask for an export on a channel"},
        {"export watch", "", "", "print what exports are asked for", "export", make_watch, Stay::always},

        {"melt list", "download_melts", "", "list the melts, with the flags of their clients"},
        {"melt watch", "", "", "print when there are melts", "melt", make_watch, Stay::always},

        {"log write", "log", "LogText LogFilename=skuanctl LogLine=0 LogClient=skuanctl",
         "write an entry into the server's log"},
        {"log debug", "debug_label", "DebugString", "put a note into the server's debug log"},

        {"reports", "", "[CLASS...]",
         "print reports as they come, of these classes or of all; reports --help lists them", "",
         make_reports, Stay::always, false, reports_details, reports_candidates},
        {"call", "", "COMMAND [TAG=VALUE...]",
         "send one command and print its replies; call --help lists the commands, call COMMAND --help tells "
         "what one of them takes",
         "kind (reply), name, values (by tag)", make_call, Stay::never, false, call_details, call_candidates},
        {"raw", "", "[XML...]",
         "send <cmd> messages, from the arguments or else from standard input, and print each reply and "
         "report "
         "as one line of XML, until every command is answered; each is checked before any is sent, and then "
         "sent "
         "as it stands",
         "kind (reply or report), xid (of a reply), name, xml", make_raw, Stay::if_asked, true},

        {"capture", "", "FILE [--bind=ADDRESS]",
         "stand between clients and the server, and write what they say to a new file, until --count "
         "connections "
         "have closed, or Ctrl-C",
         "listening, port", make_capture, Stay::if_asked, true},
        {"replay", "", "FILE [--bind=ADDRESS] [--connection=N] [--paced]",
         "play the client's side of a captured conversation to the server, or with --bind the server's side "
         "to "
         "clients; the other side has to say the same as it did, byte for byte",
         "bytes, connections; or where it differs: line, connection, from, message (from 1), byte (from 0), "
         "expected, "
         "got; listening, port",
         make_replay, Stay::never, true},

        {"man", "", "", "print the manual page, in roff", "", make_man},
        {"complete", "", "WORD...",
         "print what the last word may become, for the completion of shells; the words stand behind --, and "
         "those "
         "before the last are those after skuanctl",
         "candidate", make_complete},
    };
    return rows;
}

const VerbRow* find_verb(const QString& name)
{
    for (const VerbRow& verb : verb_rows())
        if (name == QLatin1String(verb.name))
            return &verb;
    return nullptr;
}

std::vector<const VerbRow*> family(const QString& name)
{
    std::vector<const VerbRow*> verbs;
    for (const VerbRow& verb : verb_rows())
        if (QString::fromUtf8(verb.name).startsWith(name + ' '))
            verbs.push_back(&verb);
    return verbs;
}

bool Verb::refuse(const QString& why)
{
    run_.fail({exit_usage, why, {}});
    return false;
}
