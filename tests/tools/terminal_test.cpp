// The command line at a terminal, at a full disk and in bash, as there are on Linux.
#include "skuanctl.h"

#include <support/ask_to_end.h>

#include <gmock/gmock.h>

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

using simulator::Faults;
using support::Ran;
using support::Station;

namespace {

using Terminal = support::CoreApplication;

int open_terminal()
{
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
    EXPECT_TRUE(::grantpt(terminal) == 0 && ::unlockpt(terminal) == 0);
    return terminal;
}

TEST_F(Terminal, EndsLoudlyWithTheDisk)
{
    simulator::Settings settings;
    settings.clips = simulator::ClipStore::generated(20'000);
    const Station station(settings);
    const Ran full = support::run("/bin/sh", {"-c", "\"$0\" --host \"$1\" clip list > /dev/full", program,
                                              station.address().toString()});
    EXPECT_EQ(full.code, 6);
    EXPECT_EQ(full.err, "skuanctl: cannot write the output: No space left on device\n");
    EXPECT_EQ(ask(station, {"capture", "/dev/full", "--bind", own_address()}).code, 6);
}

TEST_F(Terminal, ShowsControlCharactersThereOnly)
{
    simulator::Settings settings;
    settings.clips = simulator::ClipStore();
    ASSERT_EQ(settings.clips.create_clip(QStringLiteral("a\\b\nc é")), simulator::ClipStore::Outcome::Done);
    const Station station(settings);
    EXPECT_EQ(ask(station, {"clip", "list"}).out, "a\\b\nc é\n");

    const int terminal = open_terminal();
    support::run("/bin/sh", {"-c", "\"$0\" --host \"$1\" clip list > \"$2\"", program,
                             station.address().toString(), ::ptsname(terminal)});
    char shown[100] = {};
    EXPECT_GT(::read(terminal, shown, sizeof shown - 1), 0);
    EXPECT_STREQ(shown, "a\\\\b\\nc é\r\n");
    ::close(terminal);
}

// A table that is drawn over, in a terminal of 80 by 24, while the server goes and comes.
TEST_F(Terminal, DrawsWhatChanges)
{
    const Station station(simulator::Settings{.pace = 0, .faults = {}});
    ask(station, {"cue", "A", "sports/Łódź–Málaga 2:1"});
    const int terminal = open_terminal();
    std::string out;
    const auto shows = [&](const std::string& text) {
        char some[1000];
        for (ssize_t size = 0; out.find(text) == std::string::npos; out.append(some, std::size_t(size)))
            if ((size = ::read(terminal, some, sizeof some)) <= 0)
                return false;
        return true;
    };
    QProcess process;
    process.start("/bin/sh",
                  {"-c", "TERM=xterm exec \"$0\" --host \"$1\" monitor A --columns clip,tally > \"$2\"",
                   program, station.address().toString(), ::ptsname(terminal)});
    const QString clip = QStringLiteral("sports/Łódź–Málaga 2:1").leftJustified(48);
    ASSERT_TRUE(shows("\r\nA   " + clip.toStdString() + "  -      \r\n")) << out;
    EXPECT_THAT(station->control("registrations").toStdString(), testing::EndsWith("A clipid"));

    ask(station, {"dict", "set", "Tally0", "red"});
    EXPECT_TRUE(shows("\r\n\x1b[1A\x1b[55Gred\x1b[1B\r")) << out;
    station->set_faults(Faults{.refuse = true});
    station->drop_clients();
    EXPECT_TRUE(shows("\x1b[3A\x1b[1Glost the connection to ")) << out;
    station->set_faults({});
    EXPECT_TRUE(shows(" again\x1b[K\x1b[3B\r")) << out;

    support::ask_to_end(process, support::Wish::interrupt);
    EXPECT_TRUE(shows("\x1b[3B\r\r\x1b[K")) << out;
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 130);
    ::close(terminal);
}

TEST_F(Terminal, CompletesInBash)
{
    // Each line up to the cursor, and what it may become.
    const QString rows = R"(c|channel cue clip chase config call capture complete 
clip re|rename 
--timeout |
clip list --|--host --timeout --json --help --version 
clip create x --tracks video,t|video,timecode 
gang play A,|A,B A,C A,D A,E A,F A,G A,H A,I A,J A,K A,L 
precue |A B C D E F G H I J K L activate clear 
call play Channel=A |Speed= MinLatency 
call --json cue_clip Loop=loop|loop loopto 
call gang_stop ChannelSet=K,L,A|K,L,A 
call list_bed ListElement.Transition.|ListElement.Transition.TransitionType= ListElement.Transition.TransitionDuration= 
call metadata_set MetadataList.Metadata[1].K|MetadataList.Metadata[1].Key= 
call nothing C|
layout --b|--board 
reports clip|clip_change 
reports A:speed,t|speed,timecode 
)";
    QStringList lines;
    for (const QString& row : rows.split('\n', Qt::SkipEmptyParts))
        lines += "skuanctl " + row.section('|', 0, 0);
    const Ran ran = support::run(
        "bash", QStringList{"-c",
                            "source \"$0\"; program=$1; shift\n"
                            "for COMP_LINE; do COMP_POINT=${#COMP_LINE}; _skuanctl \"$program\"\n"
                            "printf '%s|' \"${COMP_LINE#skuanctl }\"\n"
                            "[[ ${#COMPREPLY[@]} = 0 ]] || printf '%s ' \"${COMPREPLY[@]}\"; echo; done",
                            SKUANCTL_COMPLETION, program} +
                    lines);
    EXPECT_EQ(ran.out, rows) << ran.err.constData();
}

} // namespace
