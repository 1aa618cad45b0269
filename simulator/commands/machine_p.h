// What the server says of the machine that it is.
#pragma once

#include <simulator/commands/ltc_p.h>
#include <simulator/element.h>

#include <map>

namespace simulator {

class Audience;
class Call;
class ClipStore;
struct Channel;
struct ServerState;

constexpr quint64 field_size = 250'000; // bytes: 100 Mbit/s at 50 fields a second

// What one client of the melts has: how it wants them, and its items.
struct Melts
{
    Element flags; // a `MeltFlags`
    std::vector<Element> items;
};

struct Machine
{
    explicit Machine(const ClipStore& clips);

    quint32 temperature = 385;             // tenths of a degree Celsius
    quint64 disk_size = 8'000'000'000'000; // bytes
    bool has_reference = true;
    Ltc ltc;
    std::map<QString, std::vector<Element>> alerts; // the fields of an `Alert` by its name
    std::map<quint32, Melts> melts;                 // by MeltClientID
};

// The fields of a `Timecode` where there is none.
std::vector<Element> no_timecode();

// The fields of the timecode of what is on a channel.
std::vector<Element> display_timecode(ServerState& state, const Channel& channel);

// Bytes that are free on the disks.
quint64 available_space(const ServerState& state);

// The `DiskSpaceChange` of the present.
Element disk_space(const ServerState& state);

// Tells one client the present state of one of the classes that concern no channel, where it has one.
void tell_machine(Call& call, const QString& report_class);

// Without its reference the server runs free, whatever the configuration wants.
void follow_reference(ServerState& state, Audience& audience);

// Each changes one thing and tells who asked for it.
void set_temperature(ServerState& state, Audience& audience, quint32 tenths);
void set_alert(ServerState& state, Audience& audience, const QString& name, const QString& level,
               const QString& text);
void set_reference(ServerState& state, Audience& audience, bool is_there);
void set_disk_size(ServerState& state, Audience& audience, quint64 bytes);
void add_melt(ServerState& state, Audience& audience, quint32 client, const Element& item); // a `MeltItem`
void clear_melts(ServerState& state, Audience& audience, quint32 client);

} // namespace simulator
