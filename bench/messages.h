// Messages as a server sends them, for benchmarks.
#pragma once

#include <string>

inline std::string timecode(const char* tag, const char* field)
{
    return std::string("<") + tag +
           ">\r\n<Valid>true</Valid>\r\n<VideoStandard>1080_50i</VideoStandard>\r\n<FieldNumber>" + field +
           "</FieldNumber>\r\n<DropFrameFlag>ndf</DropFrameFlag>\r\n</" + tag + ">\r\n";
}

inline const std::string timecode_report =
    "<report>\r\n<channel_timecode>\r\n<Channel>C</Channel>\r\n<ClipPosition>104511</ClipPosition>\r\n" +
    timecode("DisplayTimecode", "1904511") + timecode("InputTimecode", "1800000") +
    "</channel_timecode>\r\n</report>";

/// A reply with every field of a clip, under the xid that the client waits for.
inline std::string clipinfo_reply(const std::string& xid)
{
    std::string tracks, metadata;
    for (const char* type : {"video", "key", "audio", "audio", "audio", "audio", "timecode"})
        tracks += std::string("<TrackInfo>\r\n<TrackType>") + type +
                  "</TrackType>\r\n<TrimStart>50</TrimStart>\r\n</TrackInfo>\r\n";
    for (const char* key : {"camera", "journalist", "place", "rights"})
        metadata += std::string("<Metadata>\r\n<Key>") + key +
                    "</Key>\r\n<Value>some words about it</Value>\r\n</Metadata>\r\n";
    std::string fields;
    const auto add = [&](const char* tag, const std::string& content) {
        fields += std::string("<") + tag + ">" + content + "</" + tag + ">\r\n";
    };
    add("ClipID", "news/opening_titles_0042");
    add("VideoStandard", "1080_50i");
    add("TrackInfoVector", "\r\n" + tracks);
    add("Title", "Opening titles, evening edition");
    add("Creator", "R. Field");
    add("Project", "Evening news");
    add("Playback", "auto");
    add("Interp", "off");
    add("Loop", "loopto");
    add("LoopOut", "2999");
    add("LoopIn", "1500");
    add("ClipLength", "90000");
    add("TimecodeSource", "striped");
    fields += timecode("StripeTimecode", "1800000");
    add("ReadOnly", "false");
    add("ID8", "NEWS0042");
    add("ReadOnlyMeta", "false");
    add("ReadOnlyContent", "true");
    add("MetadataList", "\r\n" + metadata);
    add("SpecialClipType", "normal");
    add("ISOCount", "1");
    add("SSMSpeed", "3");
    add("CompressionBitrate", "100000000");
    add("Frame0Timecode", "<FieldNumber>1800000</FieldNumber><DropFrameFlag>ndf</DropFrameFlag>");
    add("TrimStart", "50");
    add("TrimEnd", "75");
    add("ClipLengthUntrimmed", "90125");
    add("CompressionType", "avci");
    add("ClipUUID", "6a1f04c2-97bb-4c2e-8d5b-02f1c7be1a90");
    add("ParentUUID", "13c2d1de-10aa-4f14-b7a5-9a60c2dd3c11");
    add("Angle", "2");
    for (const char* stamp :
         {"LoadedStamp", "UnloadedStamp", "PlayedStamp", "MetaEditStamp", "ContentEditStamp"})
        add(stamp, "132514112345678901");
    add("ClipFileType", "mxf");
    return "<reply>\r\n<xid>" + xid + "</xid>\r\n<clipinfo>\r\n<ClipInfo>\r\n" + fields +
           "</ClipInfo>\r\n</clipinfo>\r\n</reply>";
}
