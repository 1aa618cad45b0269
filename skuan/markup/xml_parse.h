// A byte stream without lengths or delimiters, cut into the messages that it consists of.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>
#include <skuan/markup/xml_tree.h>

#include <memory>

/// The tree of a complete message's text. A text outside the grammar gives a null tree and sets
/// `*error`, which is false otherwise; `error` may be null. The grammar is elements and text with the
/// entities &apos; &lt; &gt; &quot; &amp;. An attribute, a comment, a declaration, a bare '<' or '>',
/// a name of other than ASCII letters, digits and '_', text beside subnodes, a second root: each is
/// an error. White space beside subnodes is dropped, white space in text is kept. Any thread.
SKUAN_EXPORT XMLTree XMLParse(AString text, bool* error);

/// Takes the bytes of a stream as they come and gives one tree for each message. A message starts at
/// the opening tag of a configured name and ends at the first closing tag of that name; what stands
/// before it is dropped. Not thread-safe: one thread at a time.
class SKUAN_EXPORT XMLParseEngine
{
public:
    /// `bufsize` is the longest message in bytes; 0 is a mistake and counts as 1024.
    explicit XMLParseEngine(unsigned bufsize);
    ~XMLParseEngine();
    XMLParseEngine(const XMLParseEngine&) = delete;
    XMLParseEngine& operator=(const XMLParseEngine&) = delete;

    /// Adds the name of a top-level element, in ASCII; to be called before any input. A null or empty
    /// name is a mistake and is left out.
    void config_tag(const char* name);

    /// Takes as many of `count` bytes as there is room for and gives their number. After a parse
    /// error, all bytes are taken and thrown away.
    unsigned input_bytes(unsigned count, const void* data);
    unsigned available_buffer_space() const;

    /// The next message, or a null tree if none is complete yet or after a parse error.
    XMLTree get_xml();

    /// True from the first message that is not well-formed until `reset`. A message that is longer
    /// than the buffer shows as input that is no longer taken; the caller treats that as an error.
    bool parse_error() const;

    /// Forgets all bytes and the error. The configured names stay.
    void reset();

private:
    struct Private;
    std::unique_ptr<Private> d;
};
