// The two counts inside objects: who ends when, and who decides how.
#include <skuan/foundation/aref.h>

#include <gtest/gtest.h>

namespace {

struct Counted : AReferenced
{
    explicit Counted(int* alive) : alive_(alive) { ++*alive_; }
    Counted(const Counted& other) : AReferenced(other), alive_(other.alive_) { ++*alive_; }
    ~Counted() override { --*alive_; }
    int* alive_;
};

TEST(AReference, TheLastHolderEndsTheObject)
{
    int alive = 0;
    AReference<Counted> first(new Counted(&alive));
    {
        AReference<Counted> copied(new Counted(*first)); // begins with a count of its own
        EXPECT_EQ(alive, 2);
        copied = first;
        EXPECT_EQ(alive, 1);
    }
    first = *&first;
    AReference<Counted> moved = std::move(first);
    EXPECT_FALSE(first);
    moved = nullptr;
    EXPECT_EQ(alive, 0);
}

struct Record
{
    AtomicUnsigned references{1};
    int destroyed = 0;
    static void destroy(Record* record) { ++record->destroyed; }
};

TEST(ARef, RefusesAnObjectThatIsEndingAndNeverCountsAPermanentOne)
{
    for (const unsigned references : {0u, unsigned{ARef<Record>::permanent}}) {
        Record record;
        record.references = references;
        {
            const ARef<Record> a(&record);
            const ARef<Record> b = a;
            EXPECT_EQ(static_cast<bool>(b), references != 0);
        }
        EXPECT_EQ(record.references, references);
        EXPECT_EQ(record.destroyed, 0);
    }
}

} // namespace
