// The table of commands, and an answer for each.
#include <simulator/responder_p.h>

#include <QHash>

#include <utility>

namespace simulator {

using Outcome = ClipStore::Outcome;

namespace {

const std::set<QString> report_types = {
    QStringLiteral("clip_change"),
    QStringLiteral("config_change"),
    QStringLiteral("disk_space"),
    QStringLiteral("temperature"),
    QStringLiteral("melt"),
    QStringLiteral("directory_change"),
    QStringLiteral("playlist_change"),
    QStringLiteral("chaselist_change"),
    QStringLiteral("export"),
    QStringLiteral("alerts"),
    QStringLiteral("chase_ltc_timecode"),
    QStringLiteral("ltc_input"),
};

const QString xid_tag = QStringLiteral("xid");
const QString clip_tag = QStringLiteral("ClipID");
const QString directory_tag = QStringLiteral("DirectoryName");
const QString report_type_tag = QStringLiteral("ReportType");

QString quoted(const QString& name)
{
    return QLatin1Char('"') + name + QLatin1Char('"');
}

} // namespace

struct Responder::Row
{
    const char* command;
    std::vector<const char*> arguments; // that must be there
    void (Responder::*run)(const Request&);
};

const Responder::Row* Responder::row_of(const QString& command)
{
    static const std::vector<Row> rows = {
        {"clip_exists", {"ClipID"}, &Responder::clip_exists},
        {"create_directory", {"DirectoryName"}, &Responder::create_directory},
        {"delete_clip", {"ClipID"}, &Responder::delete_clip},
        {"download_clipids", {}, &Responder::download_clipids},
        {"download_directory_names", {}, &Responder::download_directory_names},
        {"get_computer_name", {}, &Responder::get_computer_name},
        {"get_version_info", {}, &Responder::get_version_info},
        {"rename_clip", {"FromID", "ToID"}, &Responder::rename_clip},
        {"rename_dir", {"FromDir", "ToDir"}, &Responder::rename_dir},
        {"report_register", {"ReportType"}, &Responder::report_register},
        {"report_unregister", {"ReportType"}, &Responder::report_unregister},
    };
    static const QHash<QString, const Row*> by_name = [] {
        QHash<QString, const Row*> made;
        for (const Row& row : rows)
            made.insert(QLatin1String(row.command), &row);
        return made;
    }();
    return by_name.value(command);
}

Responder::Responder(const Settings& settings, Publish publish)
    : computer_name_(settings.computer_name),
      version_(settings.version),
      version_path_(settings.version_path),
      clips_(settings.clips),
      publish_(std::move(publish))
{
}

QByteArray Responder::answer(const Element& message, Session& session)
{
    const Element* body = nullptr;
    const Element* xid = nullptr;
    bool twice = false;
    for (const Element& child : message.children) {
        const Element*& place = child.tag == xid_tag ? xid : body;
        twice = twice || place;
        place = &child;
    }
    const QString id = xid ? xid->text : QString();

    const Row* row = body ? row_of(body->tag) : nullptr;
    const char* missing = nullptr;
    if (row)
        for (const char* argument : row->arguments)
            if (!missing && !body->child(QLatin1String(argument)))
                missing = argument;

    if (message.tag != QLatin1String("cmd"))
        error(id, QStringLiteral("the message is <%1>, not <cmd>").arg(message.tag));
    else if (!xid)
        error(id, QStringLiteral("the command has no xid"));
    else if (twice)
        error(id, QStringLiteral("the message holds more than one command, or more than one xid"));
    else if (!body)
        error(id, QStringLiteral("the message holds no command"));
    else if (!row)
        error(id, QStringLiteral("unknown command %1").arg(quoted(body->tag)));
    else if (missing)
        error(id, QStringLiteral("%1 needs a %2").arg(body->tag, QLatin1String(missing)));
    else
        (this->*row->run)({id, *body, session});
    return answer_.take();
}

QByteArray Responder::refusal(const QString& why)
{
    error({}, QStringLiteral("the connection ends, its bytes are no messages: %1").arg(why));
    return answer_.take();
}

void Responder::get_computer_name(const Request& request)
{
    answer_.reply(request.xid, "computername", {{"ComputerName", computer_name_}});
}

void Responder::get_version_info(const Request& request)
{
    answer_.reply(request.xid, "version_info", {{"SVNVersion", version_}, {"SVNPath", version_path_}});
}

void Responder::download_clipids(const Request& request)
{
    const Element* directory = request.body.child(directory_tag);
    if (!has_directory(request, directory))
        return;
    for (const QString& clip : directory ? clips_.clips_in(directory->text) : clips_.clips())
        answer_.reply(request.xid, "clipid", {{"ClipID", clip}});
    ok(request);
}

void Responder::download_directory_names(const Request& request)
{
    const Element* directory = request.body.child(directory_tag);
    if (!has_directory(request, directory))
        return;
    for (const QString& name : directory ? clips_.directories_in(directory->text) : clips_.directories())
        answer_.reply(request.xid, "directory_name", {{"DirectoryName", name}});
    ok(request);
}

void Responder::clip_exists(const Request& request)
{
    const QString clip = request.body.child_text(clip_tag);
    const bool exists = clips_.has_clip(clip);
    answer_.reply(request.xid, "clipexists",
                  {{"ClipID", clip}, {"Exists", exists ? QStringLiteral("true") : QStringLiteral("false")}});
}

void Responder::delete_clip(const Request& request)
{
    const QString clip = request.body.child_text(clip_tag);
    if (!done(request, clips_.delete_clip(clip), "clip", clip, clip))
        return;
    publish("clip_change", "clip_deleted", {"ClipID", clip});
}

void Responder::rename_clip(const Request& request)
{
    const QString from = request.body.child_text(QStringLiteral("FromID"));
    const QString to = request.body.child_text(QStringLiteral("ToID"));
    if (!done(request, clips_.rename_clip(from, to), "clip", from, to))
        return;
    publish("clip_change", "clip_deleted", {"ClipID", from});
    publish("clip_change", "clip_created", {"ClipID", to});
}

void Responder::create_directory(const Request& request)
{
    const QString name = request.body.child_text(directory_tag);
    if (!done(request, clips_.create_directory(name), "directory", name, name))
        return;
    publish("directory_change", "directory_created", {"DirectoryName", name});
}

void Responder::rename_dir(const Request& request)
{
    const QString from = request.body.child_text(QStringLiteral("FromDir"));
    const QString to = request.body.child_text(QStringLiteral("ToDir"));
    if (!done(request, clips_.rename_directory(from, to), "directory", from, to))
        return;
    publish("directory_change", "directory_deleted", {"DirectoryName", from});
    publish("directory_change", "directory_created", {"DirectoryName", to});
}

void Responder::report_register(const Request& request)
{
    const QString type = request.body.child_text(report_type_tag).trimmed();
    if (report_types.count(type) == 0)
        return error(request.xid, QStringLiteral("unknown report type %1").arg(quoted(type)));
    request.session.report_types.insert(type);
    ok(request);
}

void Responder::report_unregister(const Request& request)
{
    const QString type = request.body.child_text(report_type_tag).trimmed();
    if (report_types.count(type) == 0)
        return error(request.xid, QStringLiteral("unknown report type %1").arg(quoted(type)));
    request.session.report_types.erase(type);
    ok(request);
}

void Responder::ok(const Request& request)
{
    answer_.reply(request.xid, "ok");
}

void Responder::error(const QString& xid, const QString& message, const char* code)
{
    answer_.reply(xid, "error", {{"ErrorMessage", message}, {"ErrorCode", QLatin1String(code)}});
}

// Answers for a change of the store; true if it was made.
bool Responder::done(const Request& request, Outcome outcome, const char* kind, const QString& from,
                     const QString& to)
{
    const QLatin1String what(kind);
    switch (outcome) {
    case Outcome::Done:
        ok(request);
        return true;
    case Outcome::NotFound:
        error(request.xid, QStringLiteral("no such %1 %2").arg(what, quoted(from)),
              what == QLatin1String("clip") ? "clipnotfound" : "general");
        return false;
    case Outcome::Exists:
        error(request.xid, QStringLiteral("the %1 %2 exists already").arg(what, quoted(to)));
        return false;
    case Outcome::BadName:
        error(request.xid, QStringLiteral("%1 cannot be the name of this %2").arg(quoted(to), what));
        return false;
    }
    return false;
}

void Responder::publish(const char* report_type, const char* report, Field field)
{
    report_.report(report, {field});
    publish_(QLatin1String(report_type), report_.take());
}

// True also when none was named; otherwise the error has been answered.
bool Responder::has_directory(const Request& request, const Element* directory)
{
    if (!directory || clips_.has_directory(directory->text))
        return true;
    error(request.xid, QStringLiteral("no such directory %1").arg(quoted(directory->text)));
    return false;
}

} // namespace simulator
