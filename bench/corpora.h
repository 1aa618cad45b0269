// The messages that the benchmarks read, in the form in which a server sends them.
#pragma once

#include <string>
#include <utility>

namespace corpora {

inline std::string element(const std::string& tag, const std::string& text)
{
    return "<" + tag + ">" + text + "</" + tag + ">";
}

inline std::string group(const std::string& tag, std::initializer_list<std::string> children)
{
    std::string out = "<" + tag + ">";
    for (const std::string& child : children)
        out += "\r\n" + child;
    return out + "\r\n</" + tag + ">";
}

inline std::string timecode(const std::string& tag)
{
    return group(tag, {element("Valid", "true"), element("VideoStandard", "1080_59_94i"),
                       element("FieldNumber", "4315680"), element("DropFrameFlag", "df")});
}

/// A frequent report: 14 elements.
inline std::string channel_timecode()
{
    return group("report",
                 {group("channel_timecode", {element("Channel", "A"), element("ClipPosition", "123456"),
                                             timecode("DisplayTimecode"), timecode("InputTimecode")})});
}

/// A short report.
inline std::string channel_status()
{
    return group("report",
                 {group("channel_status", {element("Channel", "A"), element("ChannelStatus", "play"),
                                           element("ClipID", "news_0042")})});
}

/// Every field of a clip, as a reply.
inline std::string clipinfo()
{
    std::string tracks = "<TrackInfoVector>";
    for (const char* type : {"video", "key", "audio", "audio", "audio", "audio", "timecode"})
        tracks += "\r\n" + group("TrackInfo", {element("TrackType", type), element("TrimStart", "0")});
    tracks += "\r\n</TrackInfoVector>";
    std::string metadata = "<MetadataList>";
    for (int i = 0; i < 4; ++i)
        metadata += "\r\n" + group("Metadata", {element("Key", "Vantor.Field" + std::to_string(i)),
                                                element("Value", "Evening edition &amp; sports")});
    metadata += "\r\n</MetadataList>";
    return group(
        "reply",
        {element("xid", "41"),
         group("clipinfo", {group("ClipInfo", {element("ClipID", "news_0042"),
                                               element("VideoStandard", "1080_59_94i"),
                                               tracks,
                                               element("Title", "Harbour at dawn"),
                                               element("Creator", "Edit 3"),
                                               element("Project", "Morning show"),
                                               element("Playback", "auto"),
                                               element("Interp", "auto"),
                                               element("Loop", "off"),
                                               element("LoopOut", "3000"),
                                               element("LoopIn", "0"),
                                               element("ClipLength", "3000"),
                                               element("TimecodeSource", "striped"),
                                               timecode("StripeTimecode"),
                                               element("ReadOnly", "false"),
                                               element("ID8", "NEWS0042"),
                                               element("ReadOnlyMeta", "false"),
                                               element("ReadOnlyContent", "false"),
                                               metadata,
                                               element("SpecialClipType", "normal"),
                                               element("ISOCount", "1"),
                                               element("SSMSpeed", "1"),
                                               element("CompressionBitrate", "100000000"),
                                               group("Frame0Timecode", {element("FieldNumber", "0"),
                                                                        element("DropFrameFlag", "df")}),
                                               element("TrimStart", "0"),
                                               element("TrimEnd", "0"),
                                               element("ClipLengthUntrimmed", "3000"),
                                               element("CompressionType", "avci"),
                                               element("ClipUUID", "6f1c2a9e-0d55-4b7f-9a31-0c8d2e5b7f10"),
                                               element("ParentUUID", ""),
                                               element("Angle", "0"),
                                               element("LoadedStamp", "637000000000000001"),
                                               element("UnloadedStamp", "637000000000000002"),
                                               element("PlayedStamp", "637000000000000003"),
                                               element("MetaEditStamp", "637000000000000004"),
                                               element("ContentEditStamp", "637000000000000005"),
                                               element("ClipFileType", "native")})})});
}

/// A page of a metadata table: 500 pairs.
inline std::string metadata()
{
    std::string list = "<MetadataList>";
    for (int i = 0; i < 500; ++i)
        list += "\r\n" + group("Metadata", {element("Key", "clip." + std::to_string(10000 + i)),
                                            element("Value", "value of row " + std::to_string(i))});
    list += "\r\n</MetadataList>";
    return group("reply",
                 {element("xid", "42"), group("metadata", {element("MetadataDatabase", "vantor.lodra"),
                                                           element("MetadataPrefix", "clip."), list})});
}

} // namespace corpora
