// The fast path: reports that come with every field are decoded beside the session, and only the newest
// counts.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/aprotect.h>
#include <skuan/foundation/athreaded_object.h>
#include <skuan/markup/xml_tree.h>
#include <skuan/protocol/kvrp3_types.h>

#include <atomic>
#include <cstdint>
#include <deque>
#include <list>
#include <vector>

/// Takes `channel_timecode` and `ltc_timecode` reports as trees, decodes them on its own thread, and keeps
/// the newest of each channel until it is taken. However late that is, there is one value for each channel
/// and no backlog. What cannot be read is reported and left out.
///
/// Owned by a session, which adds and takes on its thread. Every value bears the number of the connection
/// that it came by; one of another connection than is asked for is thrown away.
class SKUAN_EXPORT SparkTimecode : public AThreadedObject
{
    Q_OBJECT

public:
    static constexpr unsigned most_channels = 200; ///< counted from 0
    static constexpr unsigned most_work = 4096;    ///< reports that wait to be decoded

    struct ChannelTimecode
    {
        KVRP3::Channel channel{};
        unsigned clip_position = 0; ///< in fields
        KVRP3::Timecode display;
        KVRP3::Timecode input;
    };

    SparkTimecode();
    /// Ends the thread, and waits for it.
    ~SparkTimecode() override;

    /// Never waits. When too many wait already, those go that a later one on the same channel has made
    /// worthless.
    void add(std::uint64_t generation, const XMLTree& report);
    /// To be called when all that came together has been added: the thread is woken by this, and by no single
    /// report but one that makes too many. To be woken costs more than to decode.
    void work_off();

    /// The newest value of the channel that has waited longest. False, and nothing is set, if there is none:
    /// the next one is then told of by `timecode_available` again.
    bool take_timecode(std::uint64_t generation, ChannelTimecode* result);
    /// Likewise, the newest timecode of the LTC input.
    bool take_ltc(std::uint64_t generation, KVRP3::Timecode* result);

Q_SIGNALS:
    // Come on the thread of this object, once for any number of values, until they have been taken.

    void timecode_available();
    void ltc_available();
    void work_available(); ///< internal: the hop to that thread

private Q_SLOTS:
    void process_work();

private:
    struct Work
    {
        std::uint64_t generation;
        XMLTree report;
    };
    struct ChannelInfo
    {
        bool pending = false;
        std::uint64_t generation = 0;
        ChannelTimecode value;
    };
    struct Timecodes
    {
        std::vector<ChannelInfo> channel_info;
        std::deque<unsigned> pending; ///< channels, in the order in which they became so
    };
    struct Ltc
    {
        bool pending = false;
        std::uint64_t generation = 0;
        KVRP3::Timecode value;
    };

    static void leave_out_outdated(std::list<Work>& work);
    std::list<Work> some_work();
    // What is new for whoever takes.
    void decode(const Work& work, bool* new_timecode, bool* new_ltc);
    bool decode_timecode(std::uint64_t generation, const XMLTree& body);
    bool decode_ltc(std::uint64_t generation, const XMLTree& body);

    // No two of them are locked together, and none while a signal is emitted.
    AProtect<std::list<Work>> work_;
    AProtect<Timecodes> timecodes_;
    AProtect<Ltc> ltc_;
    // Whether that signal has been emitted and nobody has looked since.
    std::atomic<bool> work_signalled_{false};
    std::atomic<bool> timecode_signalled_{false};
    std::atomic<bool> ltc_signalled_{false};
};
