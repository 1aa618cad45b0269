// Virtual clips: made, edited between a start and an end, which makes the edits take effect, and freed.
#include <simulator/call_p.h>
#include <simulator/catalogue_p.h>
#include <simulator/server_state_p.h>
#include <simulator/session_p.h>
#include <simulator/speed_p.h>

#include <algorithm>

namespace simulator {

namespace {

constexpr std::size_t most_segments = 2000;

unsigned named_tracks(const Call& call)
{
    return track_bits(child(call.arguments, "TrackSet"));
}

Refusal create(Call& call)
{
    const QString name = call.text("VClipID");
    if (name.isEmpty() || call.state.vclips.find(name))
        return refuse(QStringLiteral("a virtual clip cannot be given the name %1").arg(quoted(name)));
    VirtualClip made;
    made.length = call.required_number("ClipLength");
    return call.state.vclips.put(name, std::move(made)) ? Refusal() : no_room();
}

Refusal free_vclip(Call& call)
{
    const QString name = call.text("VClipID");
    return call.state.vclips.erase(name) ? Refusal() : no_such_vclip(name);
}

Refusal modification_start(Call& call)
{
    const QString name = call.text("VClipID");
    const VirtualClip* present = call.state.vclips.find(name);
    if (!present)
        return no_such_vclip(name);
    return call.session.vclip_edits.put(name, *present) ? Refusal() : no_room();
}

Refusal not_being_modified(const QString& name)
{
    return refuse(QStringLiteral("the virtual clip %1 is not being modified").arg(quoted(name)));
}

Refusal modification_end(Call& call)
{
    const QString name = call.text("VClipID");
    const VirtualClip* edit = call.session.vclip_edits.find(name);
    if (!edit)
        return not_being_modified(name);
    VirtualClip done = *edit;
    call.session.vclip_edits.erase(name); // the shelf pays for what it held
    if (!call.state.vclips.find(name))
        return no_such_vclip(name);
    return call.state.vclips.put(name, std::move(done)) ? Refusal() : no_room();
}

// Carries out `act(clip)` on the client's copy of a virtual clip that it modifies.
template <class Act>
Refusal on_edit(Call& call, Act act)
{
    const QString name = call.text("VClipID");
    const VirtualClip* present = call.session.vclip_edits.find(name);
    if (!present)
        return not_being_modified(name);
    VirtualClip edit = *present;
    if (Refusal refusal = act(edit))
        return refusal;
    return call.session.vclip_edits.put(name, std::move(edit)) ? Refusal() : no_room();
}

Refusal is_within(const Call& call, const VirtualClip& clip)
{
    const quint32 position = call.required_number("VClipPosition");
    return position > clip.length || call.required_number("ClipLength") > clip.length - position
               ? refuse(QStringLiteral("the virtual clip has only %1 fields").arg(clip.length))
               : Refusal();
}

// Takes tracks out of what lies in a range; of a segment across its bounds both ends stay.
void clear(VirtualClip& clip, unsigned tracks, quint32 position, quint32 length)
{
    const quint64 end = static_cast<quint64>(position) + length;
    std::vector<Segment> kept;
    for (const Segment& segment : clip.segments) {
        const quint64 segment_end = static_cast<quint64>(segment.position) + segment.length;
        if ((segment.tracks & tracks) == 0 || segment_end <= position || segment.position >= end) {
            kept.push_back(segment);
            continue;
        }
        const auto keep = [&](quint64 from, quint64 to, unsigned on) {
            if (from >= to || on == 0)
                return;
            Segment part = segment;
            const auto offset = static_cast<quint32>(from - segment.position);
            part.tracks = on;
            part.position += offset;
            part.clip_position +=
                static_cast<quint32>(static_cast<qint64>(offset) * segment.speed / normal_speed);
            part.length = static_cast<quint32>(to - from);
            kept.push_back(part);
        };
        const quint64 from = std::max<quint64>(segment.position, position), to = std::min(segment_end, end);
        keep(segment.position, from, segment.tracks);
        keep(from, to, segment.tracks & ~tracks);
        keep(to, segment_end, segment.tracks);
    }
    clip.segments = std::move(kept);
}

Refusal add_segment(Call& call)
{
    return on_edit(call, [&](VirtualClip& clip) -> Refusal {
        if (!call.state.clips.has_clip(call.text("ClipID")))
            return no_such_clip(call.text("ClipID"));
        if (Refusal refusal = is_within(call, clip))
            return refusal;
        if (clip.segments.size() >= most_segments)
            return no_room();
        const Segment segment = {call.text("ClipID"),
                                 named_tracks(call),
                                 call.required_number("ClipPosition"),
                                 call.required_number("VClipPosition"),
                                 call.required_number("ClipLength"),
                                 call.has("Speed") ? to_speed(call.text("Speed")).value_or(normal_speed)
                                                   : normal_speed};
        clear(clip, segment.tracks, segment.position, segment.length);
        clip.segments.push_back(segment);
        return {};
    });
}

Refusal clear_segment(Call& call)
{
    return on_edit(call, [&](VirtualClip& clip) -> Refusal {
        if (Refusal refusal = is_within(call, clip))
            return refusal;
        if (clip.segments.size() >= most_segments)
            return no_room();
        clear(clip, named_tracks(call), call.required_number("VClipPosition"),
              call.required_number("ClipLength"));
        return {};
    });
}

// Moves what begins at a position or behind it; what would leave the clip at either end is gone.
Refusal ripple(Call& call)
{
    return on_edit(call, [&](VirtualClip& clip) -> Refusal {
        const unsigned tracks = named_tracks(call);
        const quint32 position = call.required_number("VClipPosition");
        const qint64 distance = call.distance("VClipDistance");
        std::vector<Segment> kept;
        for (Segment segment : clip.segments) {
            if ((segment.tracks & tracks) != 0 && segment.position >= position) {
                const qint64 moved = segment.position + distance;
                if (moved < 0 || moved + segment.length > clip.length)
                    continue;
                segment.position = static_cast<quint32>(moved);
            }
            kept.push_back(segment);
        }
        clip.segments = std::move(kept);
        return {};
    });
}

Refusal cfg_tracks(Call& call)
{
    return on_edit(call, [&](VirtualClip& clip) -> Refusal {
        if (!call.state.clips.has_clip(call.text("ClipID")))
            return no_such_clip(call.text("ClipID"));
        clip.tracks_like = call.text("ClipID");
        clip.tracks = named_tracks(call);
        return {};
    });
}

Refusal track_enable(Call& call)
{
    return on_edit(call, [&](VirtualClip& clip) -> Refusal {
        clip.enabled = named_tracks(call);
        return {};
    });
}

} // namespace

unsigned track_bits(const Element& set)
{
    unsigned bits = 0;
    for (const Element& member : set.children)
        bits |= 1u << Catalogue::get().value("TrackType", member.text);
    return bits;
}

Element track_set(const char* tag, unsigned bits)
{
    std::vector<Element> set;
    const QStringList& names = *Catalogue::get().tag(QStringLiteral("TrackType"))->names;
    for (int i = 0; i < names.size(); ++i)
        if (bits >> i & 1)
            set.push_back({"TrackType", names[i]});
    return {QLatin1String(tag), std::move(set)};
}

Refusal no_such_vclip(const QString& name)
{
    return {QStringLiteral("no such virtual clip %1").arg(quoted(name)), "clipnotfound"};
}

CommandRows vclip_commands()
{
    return {
        {"vclip_create", create},
        {"vclip_free", free_vclip},
        {"vclip_modification_start", modification_start},
        {"vclip_add_segment", add_segment},
        {"vclip_clear_segment", clear_segment},
        {"vclip_ripple", ripple},
        {"vclip_cfg_tracks", cfg_tracks},
        {"vclip_track_enable", track_enable},
        {"vclip_modification_end", modification_end},
    };
}

} // namespace simulator
