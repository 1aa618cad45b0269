// What can be configured: the items that an engineer expects of a video disk server.
#include <simulator/commands/configuration_p.h>

#include <simulator/catalogue_p.h>

namespace simulator {

namespace {

enum Effect { now, at_restart };

struct Row
{
    const char* name; // %1 stands for each number from 0 on
    int count;        // how many such items there are
    const char* access;
    Effect effect;
    const char* value;   // %1 as in the name
    const char* allowed; // separated by blanks; "": any text; "@X": the names of the enumeration X
};

constexpr char switch_values[] = "Enabled Disabled";
constexpr char board_layouts[] = "absent VVVV VKVV VVVK VKVK SSM4 SSM3 SSM2 ISO2 ISO3 ISO4 V2V2";
constexpr char rates[] = "25 30 35 40 50 60 70 80 90 100 110 120 130 140 150 160 170 180 190 200";
constexpr char small_rates[] = "15 20 25 30 35 40 45 50 55 60 65 70 75 80 90 100 110 120 130 140";

constexpr Row rows[] = {
    {"VideoStandard", 1, "eng", at_restart, "1080_50i", "@VideoStandard"},
    {"ComputerName", 1, "eng", at_restart, "", ""},
    {"StationName", 1, "user", now, "Studio", ""},
    {"ReferenceSource", 1, "user", now, "refin", "@ReferenceSource"},
    {"ReferenceOffsetLines", 1, "eng", now, "0", ""},
    {"AspectRatio", 1, "user", now, "16:9", "4:3 16:9"},
    {"ChannelConfigurationSet%1", 3, "eng", at_restart, "VVVV", board_layouts},

    {"AudioTrackCount", 1, "eng", at_restart, "8", "2 4 8 16"},
    {"AudioBitDepth", 1, "eng", at_restart, "24", "16 24"},
    {"AudioReferenceLevel", 1, "user", now, "-18", "-20 -18 -15"},
    {"AudioEmbedding", 1, "user", now, "Enabled", switch_values},
    {"AudioScrub", 1, "user", now, "Enabled", switch_values},
    {"AudioDelayFields", 1, "eng", now, "0", "0 1 2 3 4 5 6 7 8"},

    {"CompressionType", 1, "eng", at_restart, "avci", "@CompressionType"},
    {"CompressionRateHD", 1, "user", now, "100", rates},
    {"CompressionRateSD", 1, "user", now, "60", small_rates},
    {"KeyRecording", 1, "eng", at_restart, "Disabled", switch_values},

    {"TimecodeSource", 1, "user", now, "zerobased", "@TimecodeSource"},
    {"TimecodeInput", 1, "user", now, "ltc", "ltc vitc ancillary timeofday"},
    {"TimecodeOverlay", 1, "user", now, "Disabled", switch_values},
    {"StopMode", 1, "user", now, "freeze", "freeze black ee"},
    {"FreezeMode", 1, "user", now, "frame", "frame field1 field2"},
    {"IdleOutput", 1, "user", now, "black", "black testpattern ee"},
    {"AutoEE", 1, "user", now, "Disabled", switch_values},
    {"DefaultLoop", 1, "user", now, "off", "@Loop"},
    {"DefaultPlayback", 1, "user", now, "auto", "@Playback"},
    {"DefaultInterpolation", 1, "user", now, "auto", "@Interp"},
    {"RecordMaximumMinutes", 1, "user", now, "240", ""},
    {"RecordTallyLock", 1, "user", now, "Enabled", switch_values},

    {"ControlPanelCount", 1, "user", now, "2", "0 1 2 3 4"},
    {"ControlPanel_ID%1", 4, "user", now, "panel-%1", ""},
    {"ControlPanel_Channels%1", 4, "user", now, "ABCD", ""},
    {"SerialProtocol%1", 4, "eng", now, "9pin", "off 9pin odetics vdcp"},
    {"GPIEnable", 1, "eng", now, "Disabled", switch_values},

    {"Channel_GrowingMxfExportEnable%1", 12, "user", now, "Disabled", switch_values},
    {"Channel_GrowingMxfExportSingleMxf%1", 12, "user", now, "Disabled", switch_values},
    {"Channel_GrowingMxfExportPath%1", 12, "user", now, "", ""},
    {"Channel_GrowingMxfFrom1stFrame%1", 12, "user", now, "Disabled", switch_values},
    {"Channel_GrowingMxfClipINTimecode%1", 12, "user", now, "Disabled", switch_values},
    {"Channel_GrowingMxfStartWithClipINTimecode%1", 12, "user", now, "Disabled", switch_values},
    {"ExportBandwidth", 1, "eng", now, "unlimited", "25 50 100 200 unlimited"},
    {"FTPServer", 1, "eng", at_restart, "Enabled", switch_values},

    {"DiskSpaceWarningPercent", 1, "eng", now, "10", "1 2 5 10 15 20"},
    {"DiskRebuildPriority", 1, "eng", now, "low", "low medium high"},
    {"FanSpeed", 1, "eng", now, "auto", "auto quiet full"},
    {"NTPServer", 1, "eng", at_restart, "", ""},
    {"SNMPTrapAddress", 1, "eng", now, "", ""},
    {"LogLevel", 1, "eng", now, "info", "error warning info debug"},
    {"PanelLanguage", 1, "user", now, "en", "de en es fr ja"},
};

QStringList allowed_values(const char* text)
{
    const QString values = QLatin1String(text);
    return values.startsWith(QLatin1Char('@')) ? *Catalogue::get().tag(values.mid(1))->names
                                               : values.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

std::vector<ConfigurationItem> default_configuration()
{
    std::vector<ConfigurationItem> items;
    for (const Row& row : rows) {
        const QStringList allowed = allowed_values(row.allowed);
        for (int i = 0; i < row.count; ++i) {
            const auto numbered = [i](const char* text) {
                return QString(QLatin1String(text)).replace(QLatin1String("%1"), QString::number(i));
            };
            const QString value = numbered(row.value);
            items.push_back({numbered(row.name), QLatin1String(row.access), value, value, value, allowed,
                             row.effect == at_restart});
        }
    }
    return items;
}

} // namespace simulator
