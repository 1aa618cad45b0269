// Export: the clips of one are named between its start and its end.
#include <simulator/call_p.h>
#include <simulator/server_state_p.h>
#include <simulator/session_p.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace simulator {

namespace {

constexpr std::size_t most_remembered = 1000; // clips that were exported
constexpr quint64 most_files = 10'000;        // of a server's life: no client is to fill a disk
constexpr int longest_file_name = 80;         // characters, of up to three bytes each

Refusal no_export()
{
    return refuse(QStringLiteral("no export has been started"));
}

Refusal initiate(Call& call)
{
    call.report("export_requested", {child(call.arguments, "Channel")});
    return {};
}

Refusal start(Call& call)
{
    call.session.export_draft = ExportDraft{{}, Share(call.state.budget)};
    return {};
}

Refusal add(Call& call)
{
    auto& draft = call.session.export_draft;
    if (!draft)
        return no_export();
    const Clip* clip = call.state.clips.clip(call.text("ClipID"));
    if (!clip)
        return no_such_clip(call.text("ClipID"));
    if (call.text("Filename").isEmpty())
        return refuse(QStringLiteral("an export needs a file name"));
    const quint32 length = clip->played_length(), in = call.number("ClipPosition").value_or(0);
    if (in > length || call.number("ClipLength").value_or(0) > length - in)
        return refuse(QStringLiteral("the clip has only %1 fields").arg(length));
    if (!draft->share.grow(weight(call.arguments)))
        return no_room();
    draft->clips.push_back(call.arguments);
    return {};
}

// What a client calls a file, as a name within one folder: the last part of a path of any system, and of that
// only what no system takes for something else.
QString safe_name(const QString& filename)
{
    QString name = filename.mid(filename.lastIndexOf(QLatin1Char('/')) + 1);
    name = name.mid(name.lastIndexOf(QLatin1Char('\\')) + 1).right(longest_file_name);
    for (QChar& c : name)
        if (!c.isLetterOrNumber() && !QStringLiteral("._- ").contains(c))
            c = QLatin1Char('_');
    static const QRegularExpression device(QStringLiteral("^(con|prn|aux|nul|(com|lpt)[0-9¹²³]) *(\\.|$)"),
                                           QRegularExpression::CaseInsensitiveOption);
    if (name.isEmpty() || name.startsWith(QLatin1Char('.')) || device.match(name).hasMatch())
        name.prepend(QLatin1Char('_'));
    if (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(' '))) // which some systems leave off
        name.back() = QLatin1Char('_');
    return name;
}

// There is nothing in the clips to write, so that the file says what it would hold. It is never one that was
// there before, nor what a link points at.
Refusal write_file(ServerState& state, const QString& filename, const QString& text)
{
    const QString& folder = state.settings.export_folder;
    if (folder.isEmpty())
        return {};
    if (state.exported_files >= most_files)
        return no_room();
    QFile file(QDir(folder).filePath(safe_name(filename)));
    const QByteArray bytes = text.toUtf8();
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || file.write(bytes) != bytes.size() ||
        !file.flush())
        return refuse(QStringLiteral("the file %1 cannot be written: %2")
                          .arg(quoted(QFileInfo(file).fileName()), file.errorString()));
    ++state.exported_files;
    return {};
}

// A clip may have gone, or become shorter, since it was named.
Refusal export_clip(ServerState& state, const Element& wanted)
{
    const QString name = text(wanted, "ClipID"), filename = text(wanted, "Filename");
    const Clip* clip = state.clips.clip(name);
    if (!clip)
        return no_such_clip(name);
    const quint32 in = std::min(number(wanted, "ClipPosition").value_or(0), clip->played_length());
    const quint32 rest = clip->played_length() - in;
    const QStringList facts = {
        QStringLiteral("clip %1").arg(name), QStringLiteral("in %1").arg(in),
        QStringLiteral("length %1").arg(std::min(number(wanted, "ClipLength").value_or(rest), rest)),
        QStringLiteral("angle %1").arg(number(wanted, "Angle").value_or(0))};
    if (Refusal refusal = write_file(state, filename, facts.join(QLatin1Char('\n')) + QLatin1Char('\n')))
        return refusal;
    state.exports.push_back(QStringLiteral("%1: %2").arg(quoted(filename), facts.join(QLatin1String(", "))));
    if (state.exports.size() > most_remembered)
        state.exports.pop_front();
    return {};
}

// What came before one that fails is exported.
Refusal end(Call& call)
{
    if (!call.session.export_draft)
        return no_export();
    const ExportDraft done = std::move(*call.session.export_draft);
    call.session.export_draft.reset();
    for (const Element& clip : done.clips)
        if (Refusal refusal = export_clip(call.state, clip))
            return refusal;
    return {};
}

} // namespace

CommandRows export_commands()
{
    return {
        {"export_initiate", initiate},
        {"export_start", start},
        {"export_add", add},
        {"export_end", end},
    };
}

} // namespace simulator
