// The table of configuration items.
#pragma once

#include <simulator/field_rate_p.h>

#include <QStringList>

#include <vector>

namespace simulator {

class Audience;
struct Refusal;
struct ServerState;
struct Settings;

struct ConfigurationItem
{
    QString name;
    QString access; // "user" or "eng"
    QString effective, boot, saved;
    QStringList allowed; // empty: any text
    bool requires_reboot = false;

    bool allows(const QString& value) const;

    // What an engineer's change does: at once or, where a reboot is required, from the next start on.
    void save(const QString& value);
};

// All items in the order in which they are listed. None comes or goes.
class Configuration
{
public:
    explicit Configuration(const Settings& settings);

    std::vector<ConfigurationItem>& items() { return items_; }
    const std::vector<ConfigurationItem>& items() const { return items_; }

    // Null for an unknown name.
    ConfigurationItem* find(const QString& name);

    // What the server works with; empty for an unknown name.
    QString effective(const char* name) const;

    // What the server's time goes by.
    FieldRate field_rate() const;

    // What was saved for the next start takes effect.
    void boot();

private:
    std::vector<ConfigurationItem> items_;
};

// Every item as it is before anybody changes one.
std::vector<ConfigurationItem> default_configuration();

// Gives an item another value, and tells of it if it is one.
Refusal set_configuration(ServerState& state, Audience& audience, const QString& name, const QString& value);

// The same for what the server finds out by itself, and does not save.
void set_effective(ServerState& state, Audience& audience, const char* name, const QString& value);

} // namespace simulator
