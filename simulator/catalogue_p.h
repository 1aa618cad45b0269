// What may stand in a message: the protocol's tables, as the simulator reads them for itself.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <deque>
#include <vector>

namespace simulator {

enum class Kind { String, Bool, Flag, U8, U16, U32, U64, Int, Speed, Enum, Record, Container };

struct Layout;

// One tag and how its content becomes a value.
struct Tag
{
    QString name;
    Kind kind = Kind::String;
    const QStringList* names = nullptr; // of an Enum, in the order of their values
    const Layout* record = nullptr;     // of a Record
    const Tag* member = nullptr;        // of a Container
    std::size_t capacity = 0;           // of a Container; 0: any number
};

struct Field
{
    const Tag* tag = nullptr;
    bool optional = false;
};

// The children of an element in wire order: a record, a command, a reply or a report.
struct Layout
{
    QString name;
    std::vector<Field> fields;
};

struct CommandForm : Layout
{
    bool ends_with_ok = false; // and not with a value
};

// What a client has to have asked for, so that it gets a report.
enum class Trigger { Class, ChannelClass, Watch };

struct ReportForm : Layout
{
    Trigger trigger = Trigger::Watch;
    unsigned report_class = 0; // the value in ReportType or ChannelReportType; of a Watch: none
};

// Read once, on first use, from what the build has put into this library. Immutable; any thread.
class Catalogue
{
public:
    static const Catalogue& get();

    // Null for an unknown name.
    const Tag* tag(const QString& name) const { return tags_.value(name); }
    const CommandForm* command(const QString& name) const { return commands_.value(name); }
    const Layout* reply(const QString& name) const { return replies_.value(name); }
    const ReportForm* report(const QString& name) const { return reports_.value(name); }

    // In the catalogue's order.
    const std::deque<CommandForm>& commands() const { return all_commands_; }
    const std::deque<ReportForm>& reports() const { return all_reports_; }

    // The value of an enumeration's name; -1 for none.
    int value(const char* enumeration, const QString& name) const;

    // The name of a value that the enumeration has.
    const QString& name(const char* enumeration, int value) const;

    Catalogue(const Catalogue&) = delete;
    Catalogue& operator=(const Catalogue&) = delete;

private:
    Catalogue();

    // Deques, as the entries point at each other.
    std::deque<QStringList> all_names_;
    std::deque<Tag> all_tags_;
    std::deque<Layout> all_records_, all_replies_;
    std::deque<CommandForm> all_commands_;
    std::deque<ReportForm> all_reports_;

    QHash<QString, const QStringList*> enumerations_;
    QHash<QString, const Tag*> tags_;
    QHash<QString, const CommandForm*> commands_;
    QHash<QString, const Layout*> replies_;
    QHash<QString, const ReportForm*> reports_;
};

} // namespace simulator
