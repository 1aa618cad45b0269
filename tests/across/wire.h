// What goes between a test and the process that has its servers: calls one way, answers and signals the
// other, each a frame of values in Qt's binary form.
#pragma once

#include <simulator/settings.h>

#include <QDataStream>
#include <QTcpSocket>

#include <concepts>
#include <tuple>

namespace across {

enum class Call : quint8 { Listen, SetFaults, SendRaw, SendReport, Control, Taken, End };
enum class Told : quint8 { Answer, Started, ClientConnected, ClientGone, Command };

template <class Value, class Class>
concept is_a = std::same_as<std::remove_const_t<Value>, Class>;

// A binding names every field, or it does not compile: none can be forgotten.
auto fields(is_a<simulator::Faults> auto& faults)
{
    auto& [refuse, mute, drop_every, delay, hold, gather, gather_wait, shuffle, garbage_every, garbage_size,
           flood, flood_rate, flood_count, flood_report, split, split_at, split_pause, close_after_bytes,
           close_after_answers, close_chance, half_close, seed] = faults;
    return std::tie(refuse, mute, drop_every, delay, hold, gather, gather_wait, shuffle, garbage_every,
                    garbage_size, flood, flood_rate, flood_count, flood_report, split, split_at, split_pause,
                    close_after_bytes, close_after_answers, close_chance, half_close, seed);
}
auto fields(is_a<simulator::StartStep> auto& step)
{
    auto& [name, description, duration] = step;
    return std::tie(name, description, duration);
}
auto fields(is_a<simulator::Element> auto& element)
{
    auto& [tag, text, children] = element;
    return std::tie(tag, text, children);
}
auto fields(is_a<simulator::Settings> auto& settings)
{
    auto& [address, port, computer_name, version, version_path, clips, channels, pace, state_file, seed,
           start_script, start_status_port, export_folder, faults, max_message, max_backlog,
           max_total_backlog, max_state] = settings;
    return std::tie(address, port, computer_name, version, version_path, clips, channels, pace, state_file,
                    seed, start_script, start_status_port, export_folder, faults, max_message, max_backlog,
                    max_total_backlog, max_state);
}

template <class Record>
auto operator<<(QDataStream& stream, const Record& record) -> decltype(fields(record), stream);
template <class Record>
auto operator>>(QDataStream& stream, Record& record) -> decltype(fields(record), stream);

inline QDataStream& operator<<(QDataStream& stream, std::chrono::milliseconds time)
{
    return stream << qint64(time.count());
}
inline QDataStream& operator>>(QDataStream& stream, std::chrono::milliseconds& time)
{
    qint64 count = 0;
    stream >> count;
    time = std::chrono::milliseconds(count);
    return stream;
}

// As ids: what else a clip has is that of the evening's news, or of a fresh clip.
inline QDataStream& operator<<(QDataStream& stream, const simulator::ClipStore& clips)
{
    return stream << clips.clips().join('\n').toUtf8();
}
inline QDataStream& operator>>(QDataStream& stream, simulator::ClipStore& clips)
{
    QByteArray ids;
    stream >> ids;
    clips = simulator::ClipStore::news();
    if (ids != clips.clips().join('\n').toUtf8()) {
        QString error;
        clips = simulator::ClipStore::from_text(ids, &error);
    }
    return stream;
}

template <class Value>
QDataStream& operator<<(QDataStream& stream, const std::vector<Value>& values)
{
    stream << static_cast<quint32>(values.size());
    for (const Value& value : values)
        stream << value;
    return stream;
}
template <class Value>
QDataStream& operator>>(QDataStream& stream, std::vector<Value>& values)
{
    quint32 size = 0;
    stream >> size;
    values.resize(size);
    for (Value& value : values)
        stream >> value;
    return stream;
}

template <class Record>
auto operator<<(QDataStream& stream, const Record& record) -> decltype(fields(record), stream)
{
    std::apply([&](const auto&... field) { (stream << ... << field); }, fields(record));
    return stream;
}
template <class Record>
auto operator>>(QDataStream& stream, Record& record) -> decltype(fields(record), stream)
{
    std::apply([&](auto&... field) { (stream >> ... >> field); }, fields(record));
    return stream;
}

template <class... Values>
QByteArray pack(const Values&... values)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    (stream << ... << values);
    return bytes;
}
/// Takes values from the front of a frame.
template <class... Values>
void unpack(QDataStream& frame, Values&... values)
{
    (frame >> ... >> values);
}

inline void send(QTcpSocket& socket, const QByteArray& frame)
{
    socket.write(pack(frame));
    socket.flush(); // wine may keep it until more is written
}
/// False, with nothing taken, as long as the next frame is not whole.
inline bool take(QTcpSocket& socket, QByteArray& frame)
{
    QDataStream stream(&socket);
    stream.startTransaction();
    stream >> frame;
    return stream.commitTransaction();
}

} // namespace across
