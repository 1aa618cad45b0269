// Metadata databases: texts under keys. A prefix is the beginning of the keys that a command is about; it
// is left off the keys that travel, and stands beside them.
#include <simulator/call_p.h>
#include <simulator/server_state_p.h>
#include <simulator/session_p.h>

#include <algorithm>

namespace simulator {

namespace {

constexpr std::size_t pairs_in_a_reply = 50;
constexpr std::size_t most_watches = 1000; // prefixes of one client; every change looks at each

struct Pair
{
    QString key;
    QString value;
};

// Tells each client that watches a part of the database of the keys within that part.
template <class Part>
void tell(Call& call, const QString& database, const std::vector<Pair>& pairs, const char* report, Part part)
{
    for (const QString& prefix : call.audience.watched_prefixes(database)) {
        std::vector<Element> parts;
        for (const Pair& pair : pairs)
            if (pair.key.startsWith(prefix))
                parts.push_back(part(pair.key.mid(prefix.size()), pair.value));
        if (!parts.empty())
            call.report(report,
                        {{"MetadataDatabase", database},
                         {"MetadataPrefix", prefix},
                         {report == QLatin1String("metadata_remove") ? "KeyList" : "MetadataList", parts}});
    }
}

Element metadata_tag(const QString& key, const QString& value)
{
    return {"Metadata", {{"Key", key}, {"Value", value}}};
}

Refusal download(Call& call)
{
    const QString database = call.text("MetadataDatabase"), prefix = call.text("MetadataPrefix");
    const auto at = call.state.metadata.find(database);
    if (at == call.state.metadata.end())
        return {};
    std::vector<Element> pairs;
    const auto send = [&] {
        if (!pairs.empty())
            call.reply("metadata", {{"MetadataDatabase", database},
                                    {"MetadataPrefix", prefix},
                                    {"MetadataList", std::exchange(pairs, {})}});
    };
    const Shelf<QString>& texts = at->second;
    for (auto text = texts.from(prefix); text != texts.end() && text->first.startsWith(prefix); ++text) {
        pairs.push_back(metadata_tag(text->first.mid(prefix.size()), text->second));
        if (pairs.size() == pairs_in_a_reply)
            send();
    }
    send();
    return {};
}

// All of the list or, where the server has no room, what came before.
Refusal set(Call& call)
{
    const QString database = call.text("MetadataDatabase"), prefix = call.text("MetadataPrefix");
    Shelf<QString>& texts = call.state.metadata.try_emplace(database, call.state.budget).first->second;
    std::vector<Pair> pairs;
    Refusal refusal;
    for (const Element& entry : child(call.arguments, "MetadataList").children) {
        Pair pair = {prefix + text(entry, "Key"), text(entry, "Value")};
        if (!texts.put(pair.key, pair.value)) {
            refusal = no_room();
            break;
        }
        pairs.push_back(std::move(pair));
    }
    if (texts.is_empty())
        call.state.metadata.erase(database);
    tell(call, database, pairs, "metadata_change", metadata_tag);
    return refusal;
}

// A key that is not there is as good as erased.
Refusal erase(Call& call)
{
    const QString database = call.text("MetadataDatabase"), prefix = call.text("MetadataPrefix");
    const auto at = call.state.metadata.find(database);
    if (at == call.state.metadata.end())
        return {};
    std::vector<Pair> gone;
    for (const Element& key : child(call.arguments, "KeyList").children)
        if (at->second.erase(prefix + key.text))
            gone.push_back({prefix + key.text, {}});
    if (at->second.is_empty())
        call.state.metadata.erase(at);
    tell(call, database, gone, "metadata_remove",
         [](const QString& key, const QString&) { return Element("Key", key); });
    return {};
}

Refusal watch(Call& call)
{
    auto& watched = call.session.watched_metadata;
    std::size_t count = 0;
    for (const auto& database : watched)
        count += database.second.size();
    if (count >= most_watches)
        return no_room();
    const auto* present = watched.find(call.text("MetadataDatabase"));
    std::set<QString> prefixes = present ? *present : std::set<QString>();
    prefixes.insert(call.text("MetadataPrefix"));
    return watched.put(call.text("MetadataDatabase"), std::move(prefixes)) ? Refusal() : no_room();
}

Refusal unwatch(Call& call)
{
    call.session.watched_metadata.erase(call.text("MetadataDatabase"));
    return {};
}

} // namespace

CommandRows metadata_commands()
{
    return {
        {"download_metadata", download},
        {"metadata_set", set},
        {"metadata_erase", erase},
        {"watch_metadata_database", watch},
        {"unwatch_metadata_database", unwatch},
    };
}

} // namespace simulator
