// What the program can do: a table of verbs, and what each of them is made of.
#pragma once

#include <skuan/foundation/astring.h>
#include <skuan/markup/xml_tree.h>
#include <skuan/protocol/kvrp3_types.h>

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

    /// Before there is a connection. False if the verb has failed already.
    virtual bool prepare() { return true; }

    /// The connection is there.
    virtual void start() = 0;

    /// Each message as it comes; true keeps it from the callbacks of commands.
    virtual bool take(const XMLTree&) { return false; }

protected:
    /// For the error callback of a command: ends the run with what the server said.
    void on_error(AString message, KVRP3::ErrorCode code);

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
};

const std::vector<VerbRow>& verb_rows();

std::unique_ptr<Verb> make_name(Program& program);
std::unique_ptr<Verb> make_version(Program& program);
std::unique_ptr<Verb> make_clips(Program& program);
std::unique_ptr<Verb> make_raw(Program& program);
