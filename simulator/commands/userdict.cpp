// The user dictionary: texts that clients set and watch, and that get an owner's last value when it goes.
#include <simulator/commands/userdict_p.h>

#include <simulator/call_p.h>
#include <simulator/server_state_p.h>
#include <simulator/session_p.h>

namespace simulator {

namespace {

constexpr std::size_t most_watched = 10'000; // keys of one client
constexpr std::size_t most_owned = 1000;     // likewise
constexpr int longest_legacy = 4096;         // characters

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
    auto& legacy = call.session.legacy;
    if (legacy.size() == most_owned && legacy.count(call.text("Key")) == 0)
        return no_room();
    if (Refusal refusal = too_long(call.text("Key")))
        return refusal;
    if (call.text("Value").size() > longest_legacy)
        return refuse(QStringLiteral("the value is too long to be kept"));
    legacy[call.text("Key")] = call.text("Value");
    return {};
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
    if (Refusal refusal = too_long(key))
        return refusal;
    if (call.session.watched_keys.size() == most_watched)
        return no_room();
    call.session.watched_keys.insert(key);
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

void leave_legacy(ServerState& state, Session& session, Audience& audience)
{
    for (const auto& [key, value] : std::exchange(session.legacy, {}))
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
