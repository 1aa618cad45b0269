#include <skuan/markup/xml_parse.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/markup/tag_search.h>
#include <skuan/markup/tree_builder.h>
#include <skuan/markup/xml_source.h>

#include <algorithm>
#include <cstring>
#include <vector>

using skuan::ByteSource;
using skuan::CharacterSource;
using skuan::TagSearch;
using skuan::TreeBuilder;

XMLTree XMLParse(AString text, bool* error)
{
    std::vector<AChar> characters;
    characters.reserve(text.length());
    text.for_each_run(
        [&](const AChar* run, unsigned n) { characters.insert(characters.end(), run, run + n); });

    XMLTree tree;
    const AChar* const begin = characters.data();
    const bool good = TreeBuilder::build<CharacterSource>(begin, begin + characters.size(), &tree);
    if (error)
        *error = !good;
    return tree;
}

// The bytes not yet given out are [head, tail) of the buffer. All offsets of the searches count from
// head, so that the bytes may be moved without their noticing.
struct XMLParseEngine::Private
{
    struct TopLevel
    {
        TagSearch opening;
        TagSearch closing;
    };

    explicit Private(unsigned size) : bufsize(size), buffer(size + skuan::scan_slack, '\0') {}

    const char* bytes() const { return buffer.data() + head; }
    std::size_t used() const { return tail - head; }

    void drop(std::size_t n)
    {
        head += n;
        if (head == tail)
            head = tail = 0;
        message = nullptr;
        for (TopLevel& top : tops)
            top.opening.drop(n);
    }

    void look_for_message()
    {
        message = nullptr;
        for (TopLevel& top : tops)
            top.opening.restart(0);
    }

    /// Finds the opening tag that stands first. A name configured later wins only if it stands before.
    bool find_opening()
    {
        std::size_t limit = used();
        for (TopLevel& top : tops) {
            if (top.opening.advance(bytes(), limit)) {
                message = &top;
                limit = top.opening.start();
            }
        }
        if (message)
            message->closing.restart(message->opening.end());
        return message != nullptr;
    }

    const unsigned bufsize;
    std::vector<char> buffer; // with room behind it for a scan's last block
    std::size_t head = 0;
    std::size_t tail = 0;
    bool error = false;
    std::vector<TopLevel> tops;
    TopLevel* message = nullptr; ///< what the message in hand is, once its opening tag has been found
};

XMLParseEngine::XMLParseEngine(unsigned bufsize)
    : d(std::make_unique<Private>(SKUAN_CHECK(bufsize != 0) ? bufsize : 1024))
{
}

XMLParseEngine::~XMLParseEngine() = default;

void XMLParseEngine::config_tag(const char* name)
{
    if (!SKUAN_CHECK(name && *name))
        return;
    d->tops.push_back({TagSearch(name, TagSearch::opening), TagSearch(name, TagSearch::closing)});
    d->look_for_message();
}

unsigned XMLParseEngine::input_bytes(unsigned count, const void* data)
{
    if (d->error)
        return count;
    const unsigned n = std::min(count, available_buffer_space());
    if (n == 0)
        return 0;
    if (d->tail + n > d->bufsize) {
        std::memmove(d->buffer.data(), d->bytes(), d->used());
        d->tail = d->used();
        d->head = 0;
    }
    std::memcpy(d->buffer.data() + d->tail, data, n);
    d->tail += n;
    return n;
}

unsigned XMLParseEngine::available_buffer_space() const
{
    return d->bufsize - static_cast<unsigned>(d->used());
}

XMLTree XMLParseEngine::get_xml()
{
    XMLTree tree;
    if (d->error || (!d->message && !d->find_opening()))
        return tree;
    TagSearch& closing = d->message->closing;
    if (!closing.advance(d->bytes(), d->used()))
        return tree;

    const char* const start = d->bytes() + d->message->opening.start();
    if (TreeBuilder::build<ByteSource>(start, d->bytes() + closing.end(), &tree))
        d->drop(closing.end());
    else
        d->error = true;
    return tree;
}

bool XMLParseEngine::parse_error() const
{
    return d->error;
}

void XMLParseEngine::reset()
{
    d->head = d->tail = 0;
    d->error = false;
    d->look_for_message();
}
