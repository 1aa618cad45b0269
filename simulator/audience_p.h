// Who is told what: the clients, their registrations, and the reports on their way.
#pragma once

#include <simulator/message_writer_p.h>

#include <set>
#include <vector>

namespace simulator {

struct ReportForm;
struct Session;

// One thread. Reports are gathered until deliver(), so that each client gets those of a command at once.
class Audience
{
public:
    // A client for whom more than `most` bytes are gathered, or for all together more than their budget has,
    // gets nothing more, and is dropped.
    explicit Audience(qint64 most) : most_(most), writer_(most) {}

    // The session stays where it is until leave().
    void join(Session& session);
    void leave(Session& session);

    // Whether anybody gets this report, of that channel if it is one of a channel's.
    bool listens_to(const char* report, int channel = -1) const;

    // The parts of a metadata database that clients watch.
    std::set<QString> watched_prefixes(const QString& database) const;

    // Tells all who asked for it. The fields are the report's own, in order.
    void report(const char* name, const Fields& fields);

    // Tells one client, whether it asked or not.
    void report_to(Session& session, const char* name, const Fields& fields);

    void deliver();

private:
    void add(Session& session, const QByteArray& bytes);

    const qint64 most_;
    std::vector<Session*> sessions_;
    std::vector<Session*> waiting_; // those with something in the outbox
    MessageWriter writer_;
};

} // namespace simulator
