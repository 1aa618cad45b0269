// The table of configuration items.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace simulator {

struct Settings;

struct ConfigurationItem
{
    QString name;
    QString access; // "user" or "eng"
    QString effective, boot, saved;
    QStringList allowed; // empty: any text
    bool requires_reboot = false;
};

// All items in the order in which they are listed. None comes or goes.
class Configuration
{
public:
    explicit Configuration(const Settings& settings);

    std::vector<ConfigurationItem>& items() { return items_; }

    // Null for an unknown name.
    ConfigurationItem* find(const QString& name);

    // What the server works with; empty for an unknown name.
    QString effective(const char* name);

private:
    std::vector<ConfigurationItem> items_;
};

} // namespace simulator
