// The timecode at the server's LTC input: present or not, and running with the server's fields.
#pragma once

#include <simulator/element.h>

#include <optional>

namespace simulator {

class Audience;
struct ServerState;

struct Ltc
{
    bool is_present = true;
    quint64 start = 0; // what it showed when the server's own count of fields was 0
};

// Fields that it counts from midnight to midnight. At 59.94 Hz it drops frame numbers, at 47.95 Hz it does
// not.
quint64 ltc_day(const ServerState& state);

// The `DropFrameFlag` that goes with it.
Element drop_frame_flag(const QString& standard);

// What it shows now, in fields since midnight.
quint64 ltc_field(const ServerState& state);
void set_ltc_field(ServerState& state, quint64 field);

// The hour at which it starts: that of the day, or 10:00:00:00 for a server whose time stands still.
void start_ltc(ServerState& state);

// Whether a text has the form "hh:mm:ss:ff", with any of ":;.," before the frames.
bool is_timecode(const QString& text);

// A timecode as fields since midnight. Nothing for a number that the video standard leaves out, or does not
// reach.
std::optional<quint64> to_fields(const QString& timecode, const ServerState& state);

// The fields of a `Timecode` with what it shows now; of none while it is not present.
std::vector<Element> input_timecode(const ServerState& state);

// A field is over. True if somebody listens, who is told each frame.
bool run_ltc(ServerState& state, Audience& audience);

} // namespace simulator
