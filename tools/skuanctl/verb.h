// What the program can do: a table of verbs, and what each of them is made of.
#pragma once

#include <skuan/foundation/astring.h>
#include <skuan/markup/xml_tree.h>
#include <skuan/protocol/kvrp3_types.h>

#include <QStringList>

#include <memory>
#include <vector>

class Program;

/// One run of a verb. It ends the run through `Program::done` or `Program::fail`, once.
class Verb
{
public:
    explicit Verb(Program& program) : program_(program) {}
    Verb(const Verb&) = delete;
    Verb& operator=(const Verb&) = delete;
    virtual ~Verb() = default;

    /// Before there is a connection. False if none is wanted: the verb has ended the run already, or goes
    /// on with sockets of its own.
    virtual bool prepare() { return true; }

    /// The connection is there.
    virtual void start() = 0;

    /// Each message as it comes; true keeps it from the callbacks of commands.
    virtual bool take(const XMLTree&) { return false; }

protected:
    /// For the error callback of a command: ends the run with what the server said.
    void on_error(AString message, KVRP3::ErrorCode code);
    void fail_as_server_said(const QString& message, const QString& code);

    Program& program_;
};

struct VerbRow
{
    const char* name;
    const char* arguments; ///< as the help spells them
    int most_arguments;    ///< -1: any number
    const char* help;
    const char* keys; ///< of a line of JSON
    std::unique_ptr<Verb> (*make)(Program& program);

    // Null where a verb has no more to tell than its row.

    /// The help on the verb, or on what its arguments name; `*error` says why there is none.
    QString (*details)(const QStringList& arguments, QString* error) = nullptr;
    /// What may stand in place of the word that comes after these arguments. Those that do not begin with
    /// the word are dropped.
    QStringList (*candidates)(const QStringList& before, const QString& word) = nullptr;
};

const std::vector<VerbRow>& verb_rows();

/// Null if there is no verb of that name.
const VerbRow* find_verb(const QString& name);

std::unique_ptr<Verb> make_name(Program& program);
std::unique_ptr<Verb> make_version(Program& program);
std::unique_ptr<Verb> make_clips(Program& program);
std::unique_ptr<Verb> make_raw(Program& program);
std::unique_ptr<Verb> make_call(Program& program);
std::unique_ptr<Verb> make_reports(Program& program);
std::unique_ptr<Verb> make_capture(Program& program);
std::unique_ptr<Verb> make_replay(Program& program);
std::unique_ptr<Verb> make_complete(Program& program);

QString call_details(const QStringList& arguments, QString* error);
QString reports_details(const QStringList& arguments, QString* error);

QStringList call_candidates(const QStringList& before, const QString& word);
QStringList reports_candidates(const QStringList& before, const QString& word);
