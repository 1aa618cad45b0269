// The command line as a value.
#pragma once

#include <skuanctl/form.h>

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <utility>
#include <vector>

struct VerbRow;

constexpr quint16 server_port = 8913;

struct Options
{
    QStringList hosts{QStringLiteral("127.0.0.1")};
    std::chrono::milliseconds timeout{5000}; ///< for the connection, and for each further answer
    bool has_timeout = false;                ///< it was asked for, and then holds for each report too
    bool json = false;
    std::optional<int> count;                        ///< stay for so many reports
    std::optional<std::chrono::milliseconds> listen; ///< stay for so long
    bool help = false;
    bool version = false; ///< of the program itself

    QString words;                 ///< with which the command line names its verb or family; may be empty
    const VerbRow* verb = nullptr; ///< null only if there is an error, or help on no verb is wanted
    Form form;                     ///< of the verb
    QStringList arguments;         ///< of the verb, as many as its form allows
    std::vector<std::pair<QString, QString>> own; ///< options of the verb, by their names, with their values

    QString error; ///< what is wrong with the command line; empty if nothing is

    bool has(const char* option) const;
    QString value(const char* option) const; ///< the last one; empty if there is none
};

/// Reads the arguments, of which the first is the program's own name.
Options parse_options(const QStringList& arguments);

/// An option that is the program's own.
struct OptionRow
{
    QStringList names;
    const char* value; // null: the option has none
    bool for_staying;  // it belongs to the verbs that may stay for reports
    const char* help;
    bool (*take)(const QString& value, Options& options); // false: no such value
};

const std::vector<OptionRow>& option_rows();

/// Whether the option may be given with the verb.
bool belongs(const OptionRow& option, const VerbRow& verb);

/// Null if there is none of that name, given without its dashes.
const OptionRow* find_option(const QString& name);

/// "--name", or "-n" for a name of one letter.
QString dashed(const QString& option);

/// "5 s", "0.25 s".
QString in_seconds(std::chrono::milliseconds time);
