// Random operations on strings, each compared with the same operation on a plain std::u32string.
#include <skuan/foundation/abytearray.h>
#include <skuan/foundation/astring.h>
#include <skuan/foundation/astring_builder.h>
#include <skuan/foundation/astring_list.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

/// A string and what it should be.
struct Pair
{
    AString ours;
    std::u32string model;
};

AChar to_achar(char32_t c)
{
    return AChar(static_cast<unsigned>(c));
}

std::u32string characters(const AString& text)
{
    std::u32string out;
    text.for_each_run([&](const AChar* run, unsigned n) {
        for (unsigned i = 0; i < n; ++i)
            out += static_cast<char32_t>(run[i].ord());
    });
    return out;
}

unsigned model_hash(const std::u32string& text)
{
    unsigned sum = 0;
    for (char32_t c : text) {
        unsigned h = 0x811C9DC5u;
        for (int byte = 0; byte < 4; ++byte)
            h = (h ^ (c >> 8 * byte & 0xFF)) * 16777619u;
        sum += h;
    }
    return sum ? sum : 1;
}

class Model
{
public:
    explicit Model(unsigned seed) : random_(seed), pool_(8) {}

    void step()
    {
        Pair& to = any();
        const Pair a = any();
        const Pair b = any();
        const unsigned pos = below(a.ours.length() + 3);
        const unsigned n = below(a.ours.length() + 3);
        switch (below(12)) {
        case 0:
            to = fresh(below(5) == 0 ? 300 : 70);
            break;
        case 1:
            to = {a.ours.substr(pos, n), pos < a.model.size() ? a.model.substr(pos, n) : U""};
            break;
        case 2:
            to = {a.ours.left(n), a.model.substr(0, n)};
            break;
        case 3:
            to = {a.ours.right(n), a.model.substr(a.model.size() - std::min<std::size_t>(n, a.model.size()))};
            break;
        case 4:
            if (a.model.size() + b.model.size() < 600)
                to = {a.ours + b.ours, a.model + b.model};
            break;
        case 5: {
            const std::u32string head = a.model.substr(0, pos);
            const std::size_t tail = std::min<std::size_t>(a.model.size(), std::size_t{pos} + n);
            to = {a.ours.replace(pos, n, b.ours.left(20)),
                  head + b.model.substr(0, 20) + (pos < a.model.size() ? a.model.substr(tail) : U"")};
            break;
        }
        case 6:
            to = {a.ours.deep_copy(below(60)), a.model};
            break;
        case 7: {
            std::u32string trimmed = a.model;
            trimmed.erase(0, std::min(trimmed.find_first_not_of(U" \t\n\r"), trimmed.size()));
            trimmed.erase(trimmed.find_last_not_of(U" \t\n\r") + 1);
            to = {a.ours.despace(), trimmed};
            break;
        }
        case 8:
            to = {AByteArray::toUtf8(AString(a.ours.to_string())).fromUtf8(), a.model};
            break;
        case 9:
            to = {AString(a.ours.split(b.ours.left(1), true), b.ours.left(1)), a.model};
            if (b.ours.empty()) // splitting at nothing takes one character away
                to.model = a.model.substr(std::min<std::size_t>(1, a.model.size()));
            break;
        case 10:
            to = {a.ours.pad(static_cast<int>(n), '.'), a.model};
            to.model.insert(0, n > a.model.size() ? n - a.model.size() : 0, U'.');
            break;
        default:
            compare(a, b, pos);
            break;
        }
        check(to);
    }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
    Pair& any() { return pool_[below(static_cast<unsigned>(pool_.size()))]; }

    Pair fresh(unsigned longest)
    {
        static const std::u32string alphabet = U"aab,  \n\u00E9\u20AC\U0001F600";
        Pair pair;
        skuan::AStringBuilder builder;
        for (unsigned n = below(longest); n != 0; --n) {
            pair.model += alphabet[below(static_cast<unsigned>(alphabet.size()))];
            builder.append(to_achar(pair.model.back()));
        }
        pair.ours = builder.finish();
        return pair;
    }

    void check(const Pair& pair)
    {
        ASSERT_EQ(pair.ours.length(), pair.model.size());
        ASSERT_TRUE(characters(pair.ours) == pair.model);
        ASSERT_EQ(pair.ours.hash(), model_hash(pair.model));
        std::u32string backwards;
        for (auto at = pair.ours.end(); backwards.size() < pair.model.size();)
            backwards += static_cast<char32_t>((--at)->ord());
        ASSERT_TRUE(std::equal(backwards.begin(), backwards.end(), pair.model.rbegin()));
        const unsigned i = below(pair.ours.length() + 1);
        ASSERT_EQ(pair.ours.getchar(i, to_achar(U'!')),
                  to_achar(i < pair.model.size() ? pair.model[i] : U'!'));
    }

    void compare(const Pair& a, const Pair& b, unsigned pos)
    {
        const int order = a.model.compare(b.model);
        ASSERT_EQ(AString::compare(a.ours, b.ours), (order > 0) - (order < 0));
        ASSERT_EQ(a.ours == b.ours, order == 0);
        const AString needle = b.ours.left(2);
        const std::size_t found = a.model.find(b.model.substr(0, 2), pos);
        const int expected = needle.empty() ? 0 : found == a.model.npos ? -1 : static_cast<int>(found);
        ASSERT_EQ(a.ours.find(needle, pos), expected);
        const std::size_t last = a.model.rfind(U',', pos);
        ASSERT_EQ(a.ours.rfind(AChar(','), pos), last == a.model.npos ? -1 : static_cast<int>(last));
        ASSERT_EQ(a.ours.has_prefix(needle), a.model.compare(0, 2, b.model, 0, 2) == 0 ||
                                                 a.model.substr(0, needle.length()) == b.model.substr(0, 2));
    }

    std::mt19937 random_;
    std::vector<Pair> pool_;
};

TEST(AStringModel, RandomOperations)
{
    const unsigned seed = std::random_device()();
    RecordProperty("seed", std::to_string(seed));
    SCOPED_TRACE("seed " + std::to_string(seed));
    Model model(seed);
    for (unsigned i = 0; i < 20000 && !HasFatalFailure(); ++i)
        model.step();
}

} // namespace
