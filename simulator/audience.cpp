// Matching reports with registrations.
#include <simulator/audience_p.h>

#include <simulator/catalogue_p.h>
#include <simulator/session_p.h>

#include <algorithm>

namespace simulator {

namespace {

bool watches(const Session& session, const QString& first, const Fields& fields)
{
    if (first == QLatin1String("Key"))
        return session.watched_keys.find(fields.begin()->text) != nullptr;
    const auto* prefixes = session.watched_metadata.find(fields.begin()->text);
    return prefixes && prefixes->count((fields.begin() + 1)->text) != 0;
}

bool is_registered(const Session& session, const ReportForm& form, int channel)
{
    if (form.trigger == Trigger::Class)
        return (session.report_classes >> form.report_class & 1) != 0;
    return channel >= 0 && channel < channel_count &&
           (session.channel_classes[static_cast<std::size_t>(channel)] >> form.report_class & 1) != 0;
}

const ReportForm* form_of(const char* report)
{
    return Catalogue::get().report(QLatin1String(report));
}

} // namespace

void Audience::join(Session& session)
{
    sessions_.push_back(&session);
}

void Audience::leave(Session& session)
{
    for (auto* list : {&sessions_, &waiting_})
        list->erase(std::remove(list->begin(), list->end(), &session), list->end());
}

bool Audience::listens_to(const char* report, int channel) const
{
    const ReportForm* form = form_of(report);
    return form && std::any_of(sessions_.begin(), sessions_.end(), [&](const Session* session) {
               return is_registered(*session, *form, channel);
           });
}

std::set<QString> Audience::watched_prefixes(const QString& database) const
{
    std::set<QString> prefixes;
    for (const Session* session : sessions_)
        if (const auto* watched = session->watched_metadata.find(database))
            prefixes.insert(watched->begin(), watched->end());
    return prefixes;
}

void Audience::report(const char* name, const Fields& fields)
{
    const ReportForm* form = form_of(name);
    if (!form)
        return;
    const int channel =
        form->trigger == Trigger::ChannelClass ? fields.begin()->text.at(0).unicode() - 'A' : -1;
    QByteArray bytes;
    for (Session* session : sessions_) {
        const bool wanted = form->trigger == Trigger::Watch
                                ? watches(*session, form->fields.front().tag->name, fields)
                                : is_registered(*session, *form, channel);
        if (!wanted || session->is_overrun)
            continue;
        if (bytes.isEmpty()) {
            writer_.report(form->name, fields);
            bytes = writer_.take();
        }
        add(*session, bytes);
    }
}

void Audience::report_to(Session& session, const char* name, const Fields& fields)
{
    if (session.is_overrun)
        return;
    writer_.report(QLatin1String(name), fields);
    add(session, writer_.take());
}

// Sending may end a connection, and its session leaves in the middle of this.
void Audience::deliver()
{
    while (!waiting_.empty()) {
        Session& session = *waiting_.back();
        waiting_.pop_back();
        const QByteArray bytes = std::exchange(session.outbox, {});
        session.outbox_share.release();
        if (session.is_overrun)
            session.overrun();
        else
            session.send(bytes);
    }
}

void Audience::add(Session& session, const QByteArray& bytes)
{
    if (session.outbox.isEmpty())
        waiting_.push_back(&session);
    if (session.outbox.size() + bytes.size() <= most_ && session.outbox_share.grow(bytes.size()))
        session.outbox += bytes;
    else
        session.is_overrun = true;
}

} // namespace simulator
