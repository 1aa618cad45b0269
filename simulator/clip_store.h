// The clips that the server has: a value that tests make, and that commands change.
#pragma once

#include <simulator/element.h>
#include <simulator/export.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <map>
#include <vector>

namespace simulator {

/// What a clip is, apart from its id.
struct SKUAN_SIMULATOR_EXPORT Clip
{
    quint32 length = 1500;           ///< fields that were recorded, those that are trimmed off too
    std::vector<Element> attributes; ///< children of its `ClipInfo` that differ from those of any clip

    /// The text of an attribute; empty if the clip has none of its own.
    QString attribute(const char* tag) const;
    void set_attribute(const char* tag, const QString& text);

    /// Fields between the trims.
    quint32 played_length() const;

    /// Fields that it has on the disk: a clip with a parent has that one's.
    quint32 stored_length() const;
};

/// Clips in directories. A clip id is "directory/name", or a bare name at the top; what is before the
/// last '/' is its directory. Ids have at most 1000 characters, are unique, compared byte for byte, and
/// come out in text order.
/// A plain value: copying it copies the lists; no locks.
class SKUAN_SIMULATOR_EXPORT ClipStore
{
public:
    /// How a change ended. Nothing is changed unless it is Done.
    enum class Outcome { Done, NotFound, Exists, BadName };

    /// An evening's news and sports: some twenty clips in four directories and at the top, with names
    /// beyond ASCII and with every character that XML must escape.
    static ClipStore news();

    /// `count` clips "load/clip_000000" and on, for tests of volume.
    static ClipStore generated(int count);

    /// Reads a list in UTF-8: one clip id to a line, a line that ends in '/' makes an empty directory,
    /// blank lines and lines that start with '#' are skipped. On a line that cannot be taken it gives an
    /// empty store and puts the reason, with the line's number, in `*error`; otherwise clears `*error`.
    static ClipStore from_text(const QByteArray& text, QString* error);

    /// What a clip id has before its last '/'; empty at the top.
    static QString directory_of(const QString& clip);

    /// The UUID of a clip that was made under that id.
    static QString uuid_of(const QString& clip);

    int clip_count() const { return count_; }
    quint64 field_count() const { return fields_; } ///< on the disk
    bool has_clip(const QString& clip) const;
    bool has_directory(const QString& directory) const;

    /// Null if there is none. Valid until the store changes. The length is changed by grow_clip() alone.
    const Clip* clip(const QString& clip) const;
    Clip* clip(const QString& clip);

    /// Every clip, or the first ones; or the clips right in one directory, where the empty name is the top.
    QStringList clips(int most = -1) const;
    QStringList clips_in(const QString& directory) const;

    /// Every directory but the top; or those right in one directory.
    QStringList directories() const;
    QStringList directories_in(const QString& directory) const;

    /// A directory and those above it, as far as they are not there yet: what else is made with what is
    /// put into it. The outermost first; empty if the name can be none.
    QStringList missing_directories(const QString& directory) const;

    /// Makes missing directories on the way, as do rename_clip and create_directory.
    Outcome create_clip(const QString& clip, Clip made = {});
    /// Makes a clip longer by one field; false if there is none, or it cannot be any longer.
    bool grow_clip(const QString& clip);

    Outcome delete_clip(const QString& clip);
    Outcome rename_clip(const QString& from, const QString& to);
    Outcome create_directory(const QString& directory);

    /// Takes everything in it along. A directory cannot move into itself, and no name in it can become
    /// too long: BadName.
    Outcome rename_directory(const QString& from, const QString& to);

private:
    static bool is_good_name(const QString& name);
    static Clip renamed(const QString& from, Clip clip);
    void make_directories(const QString& directory);

    std::map<QString, std::map<QString, Clip>> directories_; // by full names, of clips too
    int count_ = 0;
    quint64 fields_ = 0;
};

} // namespace simulator
