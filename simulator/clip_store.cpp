// The clip store: directories by full name, each with its clips.
#include <simulator/clip_store.h>

#include <QUuid>

#include <algorithm>
#include <limits>

namespace simulator {

namespace {
constexpr int longest_name = 1000;
}

QString Clip::attribute(const char* tag) const
{
    const auto found = std::find_if(attributes.begin(), attributes.end(), [tag](const Element& element) {
        return element.tag == QLatin1String(tag);
    });
    return found == attributes.end() ? QString() : found->text;
}

void Clip::set_attribute(const char* tag, const QString& text)
{
    for (Element& element : attributes)
        if (element.tag == QLatin1String(tag)) {
            element.text = text;
            return;
        }
    attributes.push_back({QLatin1String(tag), text});
}

quint32 Clip::played_length() const
{
    const quint32 start = std::min(attribute("TrimStart").toUInt(), length);
    return length - start - std::min(attribute("TrimEnd").toUInt(), length - start);
}

quint32 Clip::stored_length() const
{
    return attribute("ParentUUID").isEmpty() ? length : 0;
}

ClipStore ClipStore::generated(int count)
{
    ClipStore store;
    for (int i = 0; i < count; ++i)
        store.create_clip(QStringLiteral("load/clip_%1").arg(i, 6, 10, QLatin1Char('0')));
    return store;
}

ClipStore ClipStore::from_text(const QByteArray& text, QString* error)
{
    ClipStore store;
    error->clear();
    const QStringList lines = QString::fromUtf8(text).split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        QString name = lines[i].trimmed();
        if (name.isEmpty() || name.startsWith(QLatin1Char('#')))
            continue;
        const bool is_directory = name.endsWith(QLatin1Char('/'));
        if (is_directory)
            name.chop(1);
        const Outcome outcome = is_directory ? store.create_directory(name) : store.create_clip(name);
        if (outcome == Outcome::Done || (is_directory && outcome == Outcome::Exists))
            continue;
        *error = QStringLiteral("line %1: \"%2\" %3")
                     .arg(i + 1)
                     .arg(name, outcome == Outcome::Exists ? QStringLiteral("is there twice")
                                                           : QStringLiteral("is not a name"));
        return {};
    }
    return store;
}

QString ClipStore::directory_of(const QString& clip)
{
    return clip.left(std::max(0, static_cast<int>(clip.lastIndexOf(QLatin1Char('/')))));
}

bool ClipStore::has_clip(const QString& clip) const
{
    const auto at = directories_.find(directory_of(clip));
    return at != directories_.end() && at->second.count(clip) != 0;
}

const Clip* ClipStore::clip(const QString& clip) const
{
    const auto directory = directories_.find(directory_of(clip));
    if (directory == directories_.end())
        return nullptr;
    const auto at = directory->second.find(clip);
    return at == directory->second.end() ? nullptr : &at->second;
}

Clip* ClipStore::clip(const QString& clip)
{
    return const_cast<Clip*>(std::as_const(*this).clip(clip));
}

bool ClipStore::has_directory(const QString& directory) const
{
    return directory.isEmpty() || directories_.count(directory) != 0;
}

QStringList ClipStore::clips(int most) const
{
    const int count = most < 0 ? count_ : std::min(most, count_);
    QStringList found;
    found.reserve(count);
    for (const auto& directory : directories_)
        for (const auto& clip : directory.second) {
            if (found.size() == count)
                return found;
            found.append(clip.first);
        }
    return found;
}

QStringList ClipStore::clips_in(const QString& directory) const
{
    QStringList found;
    const auto at = directories_.find(directory);
    if (at != directories_.end())
        for (const auto& clip : at->second)
            found.append(clip.first);
    return found;
}

QStringList ClipStore::directories() const
{
    QStringList all;
    for (const auto& directory : directories_)
        if (!directory.first.isEmpty())
            all.append(directory.first);
    return all;
}

QStringList ClipStore::directories_in(const QString& directory) const
{
    QStringList found;
    for (const QString& name : directories())
        if (directory_of(name) == directory)
            found.append(name);
    return found;
}

QStringList ClipStore::missing_directories(const QString& directory) const
{
    QStringList missing;
    if (is_good_name(directory))
        for (QString at = directory; !has_directory(at); at = directory_of(at))
            missing.prepend(at);
    return missing;
}

ClipStore::Outcome ClipStore::create_clip(const QString& clip, Clip made)
{
    if (!is_good_name(clip))
        return Outcome::BadName;
    make_directories(directory_of(clip));
    const quint32 length = made.stored_length();
    if (!directories_[directory_of(clip)].emplace(clip, std::move(made)).second)
        return Outcome::Exists;
    ++count_;
    fields_ += length;
    return Outcome::Done;
}

bool ClipStore::grow_clip(const QString& clip)
{
    Clip* const found = this->clip(clip);
    if (!found || found->length == std::numeric_limits<quint32>::max())
        return false;
    ++found->length;
    fields_ += found->stored_length() != 0 ? 1 : 0;
    return true;
}

ClipStore::Outcome ClipStore::delete_clip(const QString& clip)
{
    const Clip* present = this->clip(clip);
    if (!present)
        return Outcome::NotFound;
    fields_ -= present->stored_length();
    --count_;
    directories_[directory_of(clip)].erase(clip);
    return Outcome::Done;
}

ClipStore::Outcome ClipStore::rename_clip(const QString& from, const QString& to)
{
    const Clip* present = clip(from);
    if (!present)
        return Outcome::NotFound;
    const Outcome outcome = create_clip(to, renamed(from, *present));
    if (outcome == Outcome::Done)
        delete_clip(from);
    return outcome;
}

// A clip keeps the UUID that its first name gave it.
Clip ClipStore::renamed(const QString& from, Clip clip)
{
    if (clip.attribute("ClipUUID").isEmpty())
        clip.set_attribute("ClipUUID", uuid_of(from));
    return clip;
}

QString ClipStore::uuid_of(const QString& clip)
{
    return QUuid::createUuidV5(QUuid(), clip).toString(QUuid::WithoutBraces);
}

ClipStore::Outcome ClipStore::create_directory(const QString& directory)
{
    if (!is_good_name(directory))
        return Outcome::BadName;
    if (has_directory(directory))
        return Outcome::Exists;
    make_directories(directory);
    return Outcome::Done;
}

ClipStore::Outcome ClipStore::rename_directory(const QString& from, const QString& to)
{
    if (from.isEmpty() || !has_directory(from))
        return Outcome::NotFound;
    const QString inside = from + QLatin1Char('/');
    if (!is_good_name(to) || to.startsWith(inside))
        return Outcome::BadName;
    if (has_directory(to))
        return Outcome::Exists;

    const auto is_meant = [&](const QString& name) { return name == from || name.startsWith(inside); };
    const auto is_too_long = [&](const QString& name) {
        return name.size() - from.size() + to.size() > longest_name;
    };
    for (const auto& directory : directories_)
        if (is_meant(directory.first))
            if (is_too_long(directory.first) ||
                std::any_of(directory.second.begin(), directory.second.end(),
                            [&](const auto& clip) { return is_too_long(clip.first); }))
                return Outcome::BadName;

    const auto moved = [&](const QString& name) { return to + name.mid(from.size()); };
    const auto before = directories_;
    for (const auto& directory : before) {
        if (!is_meant(directory.first))
            continue;
        make_directories(moved(directory.first));
        for (const auto& clip : directory.second)
            directories_[moved(directory.first)].emplace(moved(clip.first), renamed(clip.first, clip.second));
        directories_.erase(directory.first);
    }
    return Outcome::Done;
}

// Every step between the slashes has a name.
bool ClipStore::is_good_name(const QString& name)
{
    return !name.isEmpty() && name.size() <= longest_name && !name.startsWith(QLatin1Char('/')) &&
           !name.endsWith(QLatin1Char('/')) && !name.contains(QLatin1String("//"));
}

void ClipStore::make_directories(const QString& directory)
{
    for (const QString& missing : missing_directories(directory))
        directories_[missing];
}

} // namespace simulator
