// What raw, call and reports have in common: commands go out, and what comes is shown until all of them
// are answered and, where the run stays for reports, enough of these have come.
#pragma once

#include <skuanctl/messages.h>
#include <skuanctl/verb.h>

#include <QTimer>

#include <set>

class Dialogue : public Verb
{
public:
    /// `stays`: for reports, until Ctrl-C unless --count or --listen ends it. Without it the run stays only
    /// if one of these is given.
    Dialogue(Program& program, bool stays);

    void start() override;
    bool take(const XMLTree& message) final;

protected:
    /// To be called before the connection is there.
    void set_commands(std::vector<Outgoing> commands) { commands_ = std::move(commands); }

    bool stays() const;

    /// The message and what it is about, which is the null tree if it holds nothing.
    virtual void show_reply(const XMLTree& message, const XMLTree& body) = 0;
    virtual void show_report(const XMLTree& message, const XMLTree& body) = 0;

    /// An `error` has answered a command, and may end the run; if it does not, the run still ends as one
    /// with a server's error.
    virtual void on_error_reply(const XMLTree& body);

private:
    bool has_all_reports() const;
    void take_reply(const AString& xid, const XMLTree& body);
    void all_answered();
    void listened_long_enough();
    void end();

    const bool stays_;
    std::vector<Outgoing> commands_;
    std::multiset<AString> unanswered_; // xids; a script may well use one twice
    int reports_ = 0;
    bool was_error_ = false;
    QTimer listening_;
};

/// Prints a reply or report in the form that was asked for, its values typed.
void print_typed(Program& program, const char* kind, const XMLTree& body);
