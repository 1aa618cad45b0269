// An XMLParseEngine with a thread of its own, so that cutting and parsing a busy stream stays off the
// thread that owns the socket.
#pragma once

#include <skuan/export.h>
#include <skuan/markup/xml_tree.h>

#include <QByteArray>
#include <QObject>

#include <memory>

/// Bytes go in on any thread, trees come out on the consumer's: the one thread that calls get_xml,
/// parse_error and reset, and that deletes the object. Between the two, a parser thread lives as long
/// as the object.
///
/// Everything queued bears a generation, which `reset` raises: so nothing that was under way before
/// it, neither tree nor error, arrives after it, and the threads need not wait for each other.
class SKUAN_EXPORT XMLParseEngine2 : public QObject
{
    Q_OBJECT

public:
    /// `bufsize` is the longest message in bytes, as in XMLParseEngine. Starts the thread; the object
    /// lives there from then on, so that it cannot have a parent.
    explicit XMLParseEngine2(unsigned bufsize);
    /// Ends the thread and waits for it. Bytes not yet parsed are dropped.
    ~XMLParseEngine2() override;

    /// Adds the name of a top-level element; before the first input.
    void config_tag(const char* name);

    /// Hands over bytes of the stream, in order if one thread calls. Any thread; never waits for the
    /// parser. After an error, bytes are thrown away until `reset`.
    void input_bytes(const QByteArray& bytes);
    void input_bytes(unsigned byte_count, const void* data);
    /// How many bytes of input the parser has not taken up yet, for a reader that wants to bound them.
    /// While they are more than `bufsize`, a `parse_result_available` is bound to follow. Any thread.
    unsigned backlog() const;

    /// The next tree, or a null tree. Consumer's thread, as the next two.
    XMLTree get_xml();
    /// True once every tree before an error has been taken; stays true until `reset`. An error is a
    /// message that is not well-formed or does not fit in the buffer.
    bool parse_error();
    /// Starts a new stream: drops everything that was put in before.
    void reset();

Q_SIGNALS:
    /// Trees or an error are waiting. Emitted on the parser thread, once for all that one batch of
    /// input gave; take until `parse_error()` is true or `get_xml()` is null.
    void parse_result_available();
    /// Internal: there is input.
    void wake_thread();

private Q_SLOTS:
    void wake_thread_action();
    void process_input();

private:
    bool process_input(unsigned generation, const QByteArray& bytes);
    void queue_output(unsigned generation, XMLTree tree);
    void queue_error(unsigned generation);

    void process_output();
    void expire_output_pending();
    void take_output_queue();

    struct Private;
    std::unique_ptr<Private> d;
};
