// Three stores and two threads: raw reports in, and the newest value of each channel out.
#include <skuan/monitors/spark_timecode.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/foundation/athread.h>
#include <skuan/protocol/kvrp3_message_tags_p.h>
#include <skuan/protocol/kvrp3_tag_list_p.h>

#include <algorithm>
#include <tuple>
#include <utility>

namespace {

using namespace KVRP3;

/// So many reports are not left to wait for more, and are decoded before somebody is told: all that come
/// together at usual loads; and under a load that never lets the work end, somebody is told thousands of
/// times a second.
constexpr unsigned at_once = 64;

} // namespace

SparkTimecode::SparkTimecode()
{
    connect(this, &SparkTimecode::work_available, this, &SparkTimecode::process_work);
    thread()->setObjectName(QStringLiteral("SparkTimecode"));
    start_thread();
}

SparkTimecode::~SparkTimecode()
{
    thread()->quit();
    thread()->wait();
}

void SparkTimecode::add(std::uint64_t generation, const XMLTree& report)
{
    bool many;
    {
        const auto work = work_.lock();
        if (work->size() == most_work)
            leave_out_outdated(*work);
        work->push_back({generation, report});
        many = work->size() >= at_once;
    }
    if (many)
        work_off();
}

void SparkTimecode::work_off()
{
    if (!work_signalled_.exchange(true))
        Q_EMIT work_available();
}

// A later report takes the place of the first one on the same subject, so that channels keep their turn. More
// subjects than there can be are rubbish.
void SparkTimecode::leave_out_outdated(std::list<Work>& work)
{
    struct Subject
    {
        const AString message;
        const AString channel; ///< as it is written; empty for LTC
        Work* first;
    };
    std::vector<Subject> subjects;
    for (auto at = work.begin(); at != work.end();) {
        const XMLTree& body = std::as_const(at->report).get_subnodes().front();
        const AString& channel = body.get_subnode(name<"Channel">()).get_content();
        const auto same = std::find_if(subjects.begin(), subjects.end(), [&](const Subject& subject) {
            return subject.message == body.get_tag() && subject.channel == channel;
        });
        if (same == subjects.end() && subjects.size() <= most_channels) {
            subjects.push_back({body.get_tag(), channel, &*at++});
            continue;
        }
        if (same != subjects.end())
            *same->first = std::move(*at);
        at = work.erase(at);
    }
}

std::list<SparkTimecode::Work> SparkTimecode::some_work()
{
    std::list<Work> some;
    const auto work = work_.lock();
    auto end = work->begin();
    std::advance(end, std::min<std::size_t>(at_once, work->size()));
    some.splice(some.end(), *work, work->begin(), end);
    return some;
}

// The flag first: what is added from here on is either found below or signalled anew.
void SparkTimecode::process_work()
{
    work_signalled_ = false;
    for (auto some = some_work(); !some.empty(); some = some_work()) {
        bool new_timecode = false, new_ltc = false;
        for (const Work& work : some)
            decode(work, &new_timecode, &new_ltc);
        if (new_timecode && !timecode_signalled_.exchange(true))
            Q_EMIT timecode_available();
        if (new_ltc && !ltc_signalled_.exchange(true))
            Q_EMIT ltc_available();
    }
}

void SparkTimecode::decode(const Work& work, bool* new_timecode, bool* new_ltc)
{
    const AList<XMLTree>& nodes = work.report.get_subnodes();
    if (!SKUAN_CHECK(work.report.has_tag(name<"report">())) || !SKUAN_CHECK(nodes.size() == 1))
        return;
    const XMLTree& body = nodes.front();
    if (body.has_tag(name<"channel_timecode">()))
        *new_timecode |= decode_timecode(work.generation, body);
    else if (SKUAN_CHECK(body.has_tag(name<"ltc_timecode">())))
        *new_ltc |= decode_ltc(work.generation, body);
}

bool SparkTimecode::decode_timecode(std::uint64_t generation, const XMLTree& body)
{
    std::tuple<Channel, unsigned, Timecode, Timecode> values;
    if (!SKUAN_CHECK((read_tags<Needed<tag::Channel>, Needed<tag::ClipPosition>, Needed<tag::DisplayTimecode>,
                                Needed<tag::InputTimecode>>(body, &values, nullptr))))
        return false;
    const auto channel = static_cast<unsigned>(std::get<Channel>(values));
    if (!SKUAN_CHECK(channel < most_channels))
        return false;

    const auto timecodes = timecodes_.lock();
    if (channel >= timecodes->channel_info.size())
        timecodes->channel_info.resize(channel + 1);
    ChannelInfo& info = timecodes->channel_info[channel];
    info.generation = generation;
    info.value = {std::get<0>(values), std::get<1>(values), std::get<2>(values), std::get<3>(values)};
    if (std::exchange(info.pending, true))
        return false;
    timecodes->pending.push_back(channel);
    return true;
}

bool SparkTimecode::decode_ltc(std::uint64_t generation, const XMLTree& body)
{
    std::tuple<Timecode> value;
    if (!SKUAN_CHECK((read_tags<Needed<tag::Timecode>>(body, &value, nullptr))))
        return false;
    const auto ltc = ltc_.lock();
    ltc->generation = generation;
    ltc->value = std::get<0>(value);
    return !std::exchange(ltc->pending, true);
}

// The flag goes down under the lock: who stores a value afterwards finds it down, and signals.
bool SparkTimecode::take_timecode(std::uint64_t generation, ChannelTimecode* result)
{
    const auto timecodes = timecodes_.lock();
    while (!timecodes->pending.empty()) {
        ChannelInfo& info = timecodes->channel_info[timecodes->pending.front()];
        timecodes->pending.pop_front();
        info.pending = false;
        if (info.generation != generation)
            continue;
        *result = info.value;
        return true;
    }
    timecode_signalled_ = false;
    return false;
}

bool SparkTimecode::take_ltc(std::uint64_t generation, KVRP3::Timecode* result)
{
    const auto ltc = ltc_.lock();
    ltc_signalled_ = false;
    if (!std::exchange(ltc->pending, false) || ltc->generation != generation)
        return false;
    *result = ltc->value;
    return true;
}
