// What the server answers: one row for each command that it knows.
#pragma once

#include <simulator/clip_store.h>
#include <simulator/element.h>
#include <simulator/message_writer_p.h>
#include <simulator/settings.h>

#include <functional>
#include <set>

namespace simulator {

// What the server remembers of one client, for as long as its connection lasts.
struct Session
{
    std::set<QString> report_types; // registered for
};

// Turns a message into the bytes of its whole answer, and changes the clips. One thread.
class Responder
{
public:
    // `publish` gets each report that a command causes, with the type it is registered under.
    using Publish = std::function<void(const QString& report_type, const QByteArray& report)>;

    Responder(const Settings& settings, Publish publish);

    // Never empty: what cannot be done, or is no command at all, is answered with `error`.
    QByteArray answer(const Element& message, Session& session);

    // The answer to bytes that are no message.
    QByteArray refusal(const QString& why);

private:
    struct Request
    {
        QString xid;
        const Element& body;
        Session& session;
    };
    struct Row;

    static const Row* row_of(const QString& command);

    void get_computer_name(const Request& request);
    void get_version_info(const Request& request);
    void download_clipids(const Request& request);
    void download_directory_names(const Request& request);
    void clip_exists(const Request& request);
    void delete_clip(const Request& request);
    void rename_clip(const Request& request);
    void create_directory(const Request& request);
    void rename_dir(const Request& request);
    void report_register(const Request& request);
    void report_unregister(const Request& request);

    void ok(const Request& request);
    void error(const QString& xid, const QString& message, const char* code = "general");
    bool done(const Request& request, ClipStore::Outcome outcome, const char* kind, const QString& from,
              const QString& to);
    void publish(const char* report_type, const char* report, Field field);
    bool has_directory(const Request& request, const Element* directory);

    QString computer_name_;
    QString version_;
    QString version_path_;
    ClipStore clips_;
    Publish publish_;
    MessageWriter answer_;
    MessageWriter report_;
};

} // namespace simulator
