#include <skuan/foundation/aobject_numbered_relay.h>
#include <skuan/foundation/aobject_relay.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

TEST(AObjectRelay, LeadsEachNumberToItsOwnMemberBothWays)
{
    AObjectRelay gather, fan_out, back;
    std::vector<unsigned> gathered, came_back;
    QObject::connect(&gather, &AObjectRelay::sig, [&](unsigned n) { gathered.push_back(n); });
    QObject::connect(&back, &AObjectRelay::sig, [&](unsigned n) { came_back.push_back(n); });
    for (unsigned n = 0; n < 101; ++n) {
        SCOPED_TRACE(n);
        ASSERT_TRUE(QObject::connect(&fan_out, AObjectRelay::sig_name(n), &back, AObjectRelay::slot_name(n)));
        gathered.clear();
        (gather.*AObjectRelay::slot_method(n))();
        EXPECT_EQ(gathered, std::vector<unsigned>{n});
        came_back.clear();
        fan_out.slot(n);
        EXPECT_EQ(came_back, std::vector<unsigned>{n});
    }
    came_back.clear();
    fan_out.slot(101);
    fan_out.slot(~0u);
    EXPECT_TRUE(came_back.empty());
    EXPECT_EQ(AObjectRelay::slot_method(101), nullptr);
    EXPECT_EQ(AObjectRelay::sig_name(7), QByteArray("2sig7 ()"));
    EXPECT_EQ(AObjectRelay::slot_name(100), QByteArray("1slot100 ()"));
}

TEST(AObjectNumberedRelay, TagsOnTheWayOutAndFiltersOnTheWayIn)
{
    AObjectNumberedRelay relay(5);
    AObjectRelay source;
    std::vector<unsigned> tagged;
    int passed = 0;
    QObject::connect(&relay, qOverload<unsigned>(&AObjectNumberedRelay::sig),
                     [&](unsigned n) { tagged.push_back(n); });
    QObject::connect(&relay, qOverload<>(&AObjectNumberedRelay::sig), [&] { ++passed; });
    ASSERT_TRUE(QObject::connect(&source, SIGNAL(sig0()), &relay, SLOT(slot())));
    ASSERT_TRUE(QObject::connect(&source, SIGNAL(sig(unsigned)), &relay, SLOT(slot(unsigned))));
    source.slot(0);
    EXPECT_EQ(tagged, std::vector<unsigned>{5});
    EXPECT_EQ(passed, 0);
    source.slot6();
    EXPECT_EQ(passed, 0);
    source.slot5();
    EXPECT_EQ(passed, 1);
    EXPECT_EQ(tagged.size(), 1u);
}

} // namespace
