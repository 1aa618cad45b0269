// What the verbs that talk to a server have in common: commands go out, and what comes is shown until all of
// them are answered and, where the run stays for reports, enough of these have come.
#pragma once

#include <skuanctl/catalogue.h>
#include <skuanctl/messages.h>
#include <skuanctl/patience.h>
#include <skuanctl/verb.h>

#include <QString>
#include <set>

class Dialogue : public Verb
{
public:
    explicit Dialogue(Run& run) : Verb(run), patience_(run, [this] { finish(); }) {}

    void start() override;
    void take(const XMLTree& message) final;

protected:
    /// To be called before the connection is there. All go out at once.
    void set_commands(std::vector<Outgoing> commands) { commands_ = std::move(commands); }

    /// Each of the commands goes out when the one before is done, and after one that failed none does.
    void set_steps(const std::vector<XMLTree>& commands);

    bool stays() const { return patience_.is_asked(); }

    /// The message and what it is about, which is the null tree if it holds nothing. `reply` is the row of
    /// the catalogue, null if it has none.
    virtual void show_reply(const XMLTree& message, const XMLTree& body, const Reply* reply) = 0;

    /// By default in one line.
    virtual void show_report(const XMLTree& message, const XMLTree& body);

    /// An `error` has answered a command. By default it ends the run; if it does not, the run still ends as
    /// one with a server's error.
    virtual void on_error_reply(const XMLTree& message, const XMLTree& body);

    /// All commands are done, and no report is waited for. By default the end of the run.
    virtual void finish();

private:
    void send(const Outgoing& command);
    const Reply* row_of(const XMLTree& body);
    void take_reply(const XMLTree& message, const XMLTree& body);
    void take_report(const XMLTree& message, const XMLTree& body);
    void all_answered();

    std::vector<Outgoing> commands_;
    bool in_steps_ = false;
    std::size_t sent_ = 0;
    std::multiset<AString> unanswered_; // xids; a script may well use one twice
    Patience patience_;                 // for reports
    bool was_error_ = false;
    AString last_tag_; // of a reply, and its row: a long listing looks for them once
    const Reply* last_reply_ = nullptr;
};

/// Prints a report in one line.
void print_report(Run& run, const XMLTree& body);
