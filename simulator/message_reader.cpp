// The incremental reader: see message_reader_p.h for how message bounds are found.
#include <simulator/message_reader_p.h>

#include <algorithm>
#include <utility>

namespace simulator {

namespace {

constexpr std::size_t max_depth = 32;

} // namespace

MessageReader::MessageReader(qint64 max_message) : max_message_(max_message)
{
    reader_.setNamespaceProcessing(false);
    reader_.addData(QByteArrayLiteral("<stream>"));
}

void MessageReader::add(const QByteArray& bytes)
{
    if (!guard_.objection().isEmpty())
        return;
    last_added_ = bytes.left(guard_.good_bytes(bytes));
    reader_.addData(last_added_);
}

MessageReader::Result MessageReader::next(Element& message)
{
    if (!error_.isEmpty())
        return Result::Broken;
    for (;;) {
        switch (reader_.readNext()) {
        case QXmlStreamReader::StartElement:
            if (!open_element())
                return broken(QStringLiteral("elements are nested too deeply"));
            break;
        case QXmlStreamReader::EndElement:
            if (open_.empty())
                return broken(QStringLiteral("a closing tag without its opening tag"));
            if (close_element(message))
                return Result::Message;
            break;
        case QXmlStreamReader::Characters:
            if (!open_.empty())
                open_.back().text += reader_.text();
            else if (!reader_.isWhitespace())
                return broken(QStringLiteral("text outside of a message"));
            break;
        case QXmlStreamReader::Invalid:
            return end_of_bytes();
        case QXmlStreamReader::StartDocument:
            break;
        default:
            return broken(QStringLiteral("markup that the protocol does not have"));
        }
    }
}

MessageReader::Result MessageReader::end_of_bytes()
{
    if (reader_.error() != QXmlStreamReader::PrematureEndOfDocumentError)
        return broken(reader_.errorString());
    if (!guard_.objection().isEmpty())
        return broken(guard_.objection());
    if (stray_text())
        return broken(QStringLiteral("text outside of a message"));
    if (reader_.characterOffset() - message_start_ > max_message_)
        return broken(QStringLiteral("a message longer than %1 bytes").arg(max_message_));
    return Result::NeedMore;
}

// Qt's reader gives text only when the next tag comes; a client that speaks another protocol would wait
// for ever. So the bytes that follow the last message are looked at here, up to the first that counts.
bool MessageReader::stray_text()
{
    if (!open_.empty() || in_markup_)
        return false;
    const qint64 pending = std::min<qint64>(reader_.characterOffset() - message_start_, last_added_.size());
    const QByteArray tail = last_added_.right(static_cast<int>(pending)).trimmed();
    in_markup_ = !tail.isEmpty();
    return in_markup_ && tail[0] != '<';
}

MessageReader::Result MessageReader::broken(const QString& why)
{
    error_ = why;
    open_.clear();
    return Result::Broken;
}

bool MessageReader::open_element()
{
    if (!std::exchange(in_stream_, true)) {
        message_start_ = reader_.characterOffset();
        return true;
    }
    if (open_.size() == max_depth)
        return false;
    open_.emplace_back();
    open_.back().tag = reader_.name().toString();
    return true;
}

bool MessageReader::close_element(Element& message)
{
    Element closed = std::move(open_.back());
    open_.pop_back();
    if (!closed.children.empty())
        closed.text.clear();
    if (!open_.empty()) {
        open_.back().children.push_back(std::move(closed));
        return false;
    }
    message = std::move(closed);
    message_start_ = reader_.characterOffset();
    in_markup_ = false;
    return true;
}

} // namespace simulator
