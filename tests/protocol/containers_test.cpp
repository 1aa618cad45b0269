// The sets and vectors of the protocol, also beyond their capacity.
#include <skuan/protocol/kvrp3_types.h>

#include <support/memory_client.h>

#include <QLoggingCategory>

#include <iterator>

namespace {

using namespace KVRP3;

/// Whether a broken expectation is reported while `act` runs; a release build reports nothing.
template <typename Act>
bool reports(Act act)
{
    static bool reported;
    reported = false;
    const auto former =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext& context, const QString&) {
            reported |= qstrcmp(context.category, "skuan.assert") == 0;
        });
    act();
    qInstallMessageHandler(former);
    return reported;
}

#ifdef NDEBUG
constexpr bool reporting = false;
#else
constexpr bool reporting = true;
#endif

std::string text(const TrackSet& set)
{
    std::string names;
    for (const TrackType member : set)
        names += TrackType_to_string(member).to_string() + ' ';
    return names;
}

TEST(Set, takes_each_member_once_and_keeps_the_order)
{
    const TrackType given[] = {TrackType_audio, TrackType_video, TrackType_audio, TrackType_key};
    TrackSet set(given, 4);
    EXPECT_EQ(text(set), "audio video key ");
    set.remove_from_set(TrackType_video);
    set.remove_from_set(TrackType_timecode);
    EXPECT_EQ(text(set), "audio key ");
    set.add_to_set(TrackType_video);
    EXPECT_EQ(text(set), "audio key video ");
    set.clear_all();
    EXPECT_TRUE(set == TrackSet() && text(set).empty());
    EXPECT_EQ(text(TrackSet(TrackType_key)), "key ");
    EXPECT_EQ(text(TrackSet::all), "video key audio timecode ");
    EXPECT_EQ(ChannelSet::all.count, 12u);
    EXPECT_EQ(*(ChannelSet::all.end() - 1), Channel_L);
}

TEST(Set, stays_as_it_is_when_it_is_full)
{
    TrackSet full = TrackSet::all;
    EXPECT_FALSE(reports([&] { full.add_to_set(TrackType_key); })); // is there
    EXPECT_EQ(reports([&] { full.add_to_set(static_cast<TrackType>(9)); }), reporting);
    EXPECT_EQ(full, TrackSet::all);
    const TrackType many[5] = {};
    EXPECT_EQ(reports([&] { EXPECT_EQ(TrackSet(many, 5), TrackSet()); }), reporting);
    EXPECT_FALSE(reports([&] { EXPECT_EQ(TrackSet(many, 4), TrackSet(TrackType_video)); }));
}

TEST(Set, is_equal_to_another_by_its_members_in_order_if_both_are_valid)
{
    TrackSet a(TrackType_key), b(TrackType_audio), too_many = TrackSet::all, no_member = a;
    a.add_to_set(TrackType_audio);
    b.add_to_set(TrackType_key);
    too_many.count = 5;
    no_member.vec[0] = static_cast<TrackType>(-1);
    EXPECT_TRUE(a.valid() && TrackSet().valid() && !too_many.valid() && !no_member.valid());
    EXPECT_TRUE(a == a && a != b && a != TrackSet(TrackType_key) && too_many == no_member && a != no_member);
    EXPECT_TRUE(TrackSet::valid_index(0) && TrackSet::valid_index(3u));
    EXPECT_FALSE(TrackSet::valid_index(-1) || TrackSet::valid_index(4u));
    EXPECT_EQ(too_many.end() - too_many.begin(), 4);
}

TEST(Vector, compares_what_it_counts)
{
    ConfigurationItemAllowedValues a, b;
    b.vec[0] = AString::l1("not counted");
    EXPECT_EQ(a, b);
    a.count = b.count = 1;
    EXPECT_NE(a, b);
    EXPECT_TRUE(b.valid_index(63) && !b.valid_index(64u));
}

TEST(Containers, of_more_than_their_capacity_are_written_up_to_it)
{
    support::MemoryClient client;
    ChannelSet channels = ChannelSet::all;
    channels.count = 4000000000u;
    EXPECT_EQ(reports([&] { client.cmd_gang_precue_activate(channels); }), reporting);
    const std::string whole = client.take();
    EXPECT_FALSE(reports([&] { client.cmd_gang_precue_activate(ChannelSet::all); }));
    const std::string all = client.take();
    EXPECT_EQ(whole.substr(whole.find("</xid>")), all.substr(all.find("</xid>")));
}

} // namespace
