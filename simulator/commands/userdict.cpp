// The user dictionary: texts that clients set and watch, and that get an owner's last value when it goes.
#include <simulator/commands/userdict_p.h>

#include <simulator/call_p.h>
#include <simulator/server_state_p.h>
#include <simulator/session_p.h>

namespace simulator {

namespace {

void tell(Audience& audience, const QString& key, const QString& value)
{
    audience.report("userdict_change", {{"Key", key}, {"Value", value}});
}

Refusal set(Call& call)
{
    const QString key = call.text("Key"), value = call.text("Value");
    if (!call.state.userdict.put(key, value))
        return no_room();
    tell(call.audience, key, value);
    return {};
}

Refusal own(Call& call)
{
    return call.session.legacy.put(call.text("Key"), call.text("Value")) ? Refusal() : no_room();
}

// A key without a text reads as an empty one.
Refusal erase(Call& call)
{
    if (call.state.userdict.erase(call.text("Key")))
        tell(call.audience, call.text("Key"), {});
    return {};
}

Refusal watch(Call& call)
{
    const QString key = call.text("Key");
    if (!call.session.watched_keys.put(key, {}))
        return no_room();
    if (const QString* value = call.state.userdict.find(key))
        call.audience.report_to(call.session, "userdict_change", {{"Key", key}, {"Value", *value}});
    return {};
}

Refusal unwatch(Call& call)
{
    call.session.watched_keys.erase(call.text("Key"));
    return {};
}

} // namespace

// What it took while the client was there is room enough.
void leave_legacy(ServerState& state, Session& session, Audience& audience)
{
    for (const auto& [key, value] : session.legacy.take_all())
        if (state.userdict.put(key, value))
            tell(audience, key, value);
}

CommandRows userdict_commands()
{
    return {
        {"userdict_set", set},     {"userdict_own", own},         {"userdict_erase", erase},
        {"userdict_watch", watch}, {"userdict_unwatch", unwatch},
    };
}

} // namespace simulator
