// What the server says of the machine that it is.
#pragma once

#include <simulator/element.h>

namespace simulator {

class Call;
struct Channel;
struct ServerState;

constexpr unsigned audio_track_count = 8;
constexpr quint64 field_size = 250'000; // bytes: 100 Mbit/s at 50 fields a second

// The fields of a `Timecode` where there is none.
std::vector<Element> no_timecode();

// The fields of the timecode of what is on a channel.
std::vector<Element> display_timecode(ServerState& state, const Channel& channel);

// The fields of the timecode at the inputs.
std::vector<Element> input_timecode(const ServerState& state);

// Bytes that are free on the disks.
quint64 available_space(const ServerState& state);

// The `DiskSpaceChange` of the present.
Element disk_space(ServerState& state);

// Tells one client the present state of one of the classes that concern no channel, where it has one.
void tell_machine(Call& call, const QString& report_class);

} // namespace simulator
