// What the program can do: a table of verbs, and what each of them is made of.
#pragma once

#include <skuan/foundation/astring.h>
#include <skuan/markup/xml_tree.h>

#include <QStringList>

#include <memory>
#include <vector>

class Run;

/// One run of a verb against one server. It ends the run through `Run::done` or `Run::fail`, once.
class Verb
{
public:
    explicit Verb(Run& run) : run_(run) {}
    Verb(const Verb&) = delete;
    Verb& operator=(const Verb&) = delete;
    virtual ~Verb() = default;

    /// Before there is a connection. False if none is wanted: the verb has ended the run already, or goes
    /// on with sockets of its own.
    virtual bool prepare() { return true; }

    /// The connection is there.
    virtual void start() = 0;

    /// Each message as it comes.
    virtual void take(const XMLTree&) {}

protected:
    bool refuse(const QString& why); ///< ends the run as bad usage; false, for `prepare` to give

    Run& run_;
};

std::unique_ptr<Verb> make_recipe(Run& run);

/// Whether a verb goes on after the last answer, for reports.
enum class Stay {
    never,
    if_asked, ///< with --count or --listen
    always,   ///< until one of these, or Ctrl-C, ends it
    holding,  ///< the same, for the connection's sake: reports need not come
};

struct VerbRow
{
    const char* name;    ///< of one word, or of two: a family and what is done
    const char* command; ///< of the protocol that it stands for, see `commands_of`; empty if for none
    const char* words;   ///< what may stand behind it, see `form_of`
    const char* help;

    /// What it prints. Where it stands for a command: the tags of which a table is made; empty for all. Of a
    /// `watch`: the classes of reports. Of any other: the keys of its lines of JSON.
    const char* shows = "";

    std::unique_ptr<Verb> (*make)(Run& run) = make_recipe;

    Stay stay = Stay::never;
    bool one_host = false; ///< it is for one server at a time

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

/// The verbs of two words that begin with this one; none if it is no family.
std::vector<const VerbRow*> family(const QString& name);

std::unique_ptr<Verb> make_info(Run& run);
std::unique_ptr<Verb> make_channel_list(Run& run);
std::unique_ptr<Verb> make_record(Run& run);
std::unique_ptr<Verb> make_list_save(Run& run);
std::unique_ptr<Verb> make_list_reorder(Run& run);
std::unique_ptr<Verb> make_vclip_edit(Run& run);
std::unique_ptr<Verb> make_dict_get(Run& run);
std::unique_ptr<Verb> make_dict_watch(Run& run);
std::unique_ptr<Verb> make_config_get(Run& run);
std::unique_ptr<Verb> make_config_watch(Run& run);
std::unique_ptr<Verb> make_layout(Run& run);
std::unique_ptr<Verb> make_monitor(Run& run);
std::unique_ptr<Verb> make_export(Run& run);
std::unique_ptr<Verb> make_watch(Run& run);
std::unique_ptr<Verb> make_raw(Run& run);
std::unique_ptr<Verb> make_call(Run& run);
std::unique_ptr<Verb> make_reports(Run& run);
std::unique_ptr<Verb> make_capture(Run& run);
std::unique_ptr<Verb> make_replay(Run& run);
std::unique_ptr<Verb> make_man(Run& run);
std::unique_ptr<Verb> make_complete(Run& run);

QString call_details(const QStringList& arguments, QString* error);
QString reports_details(const QStringList& arguments, QString* error);

QStringList call_candidates(const QStringList& before, const QString& word);
QStringList reports_candidates(const QStringList& before, const QString& word);
