// The three text outputs of XMLTree.
#include <skuan/markup/xml_tree.h>

#include <skuan/foundation/astring_builder.h>
#include <skuan/foundation/text_kernels.h>
#include <skuan/markup/tree_writer.h>
#include <skuan/markup/xml_entities.h>

#include <algorithm>
#include <cstring>

namespace skuan {
namespace {

bool is_escaped(AChar c)
{
    return must_escape(c.ord());
}

/// UTF-8 through a small buffer to a sink. Tags and most text are ASCII that needs no escape: that is
/// the short way through here.
class Utf8Out
{
public:
    explicit Utf8Out(AFunction2<const char*, unsigned> sink) : sink_(sink) {}

    /// Hands over what is left; to be called once, at the end.
    void flush()
    {
        if (used_ != 0)
            sink_(buffer_, used_);
        used_ = 0;
    }

    void mark(const char* text, unsigned n)
    {
        make_room(n);
        std::memcpy(buffer_ + used_, text, n);
        used_ += n;
    }
    void blanks(unsigned n)
    {
        for (; n > 0; --n)
            mark(" ", 1);
    }
    void name(const AString& text)
    {
        text.for_each_run([this](const AChar* run, unsigned n) { write(run, n); });
    }
    void escaped(const AString& text)
    {
        text.for_each_run([this](const AChar* run, unsigned n) {
            const AChar* const end = run + n;
            for (const AChar* special = std::find_if(run, end, is_escaped); special != end;
                 special = std::find_if(run, end, is_escaped)) {
                write(run, static_cast<unsigned>(special - run));
                const XMLEntity* entity = entity_for(special->ord());
                mark(entity->text, entity->length);
                run = special + 1;
            }
            write(run, static_cast<unsigned>(end - run));
        });
    }

private:
    static constexpr unsigned capacity = 512;
    static constexpr unsigned longest_character = 4;

    void make_room(unsigned n)
    {
        if (capacity - used_ < n)
            flush();
    }
    void write(const AChar* run, unsigned n)
    {
        while (n > 0) {
            make_room(n < capacity ? n : longest_character);
            unsigned done = narrow(run, std::min(n, capacity - used_), 128, buffer_ + used_);
            used_ += done;
            if (done < n && !run[done].is_ascii()) {
                make_room(longest_character);
                unsigned length = 0;
                if (run[done].to_utf8(buffer_ + used_, longest_character, &length))
                    used_ += length;
                ++done;
            }
            run += done;
            n -= done;
        }
    }

    AFunction2<const char*, unsigned> sink_;
    unsigned used_ = 0;
    char buffer_[capacity];
};

/// Escapes into one string; text that needs no escape is shared and not copied.
AString escape(const AString& text)
{
    AStringBuilder builder;
    bool changed = false;
    text.for_each_run([&](const AChar* run, unsigned n) {
        for (const AChar* c = run; c != run + n; ++c) {
            if (const XMLEntity* entity = entity_for(c->ord())) {
                builder.append_latin1(entity->text, entity->length);
                changed = true;
            } else {
                builder.append(*c);
            }
        }
    });
    return changed ? builder.finish() : text;
}

/// Views of one shared string of blanks.
AString blank_text(unsigned n)
{
    static const AString line = AString::rep(AString(AChar(' ')), 128);
    return line.left(n);
}

class PiecesOut
{
public:
    void mark(const char* text, unsigned n) { add(AString::from_latin1(text, n)); }
    void blanks(unsigned n)
    {
        for (; n > 128; n -= 128)
            add(blank_text(128));
        add(blank_text(n));
    }
    void name(const AString& text) { add(text); }
    void escaped(const AString& text) { add(escape(text)); }

    AStringList pieces;

private:
    void add(const AString& piece)
    {
        if (!piece.empty())
            pieces.push_back(piece);
    }
};

} // namespace
} // namespace skuan

AStringList XMLTree::flatten_base(FlattenStyle style, bool collapse_empty) const
{
    skuan::PiecesOut out;
    skuan::TreeWriter<skuan::PiecesOut>(out, style, collapse_empty).write(*this);
    return out.pieces;
}

AString XMLTree::flatten(FlattenStyle style, bool collapse_empty) const
{
    return flatten_base(style, collapse_empty).join(AString());
}

void XMLTree::send_utf8(AFunction2<const char*, unsigned> sink, FlattenStyle style, bool collapse_empty) const
{
    skuan::Utf8Out out(sink);
    skuan::TreeWriter<skuan::Utf8Out>(out, style, collapse_empty).write(*this);
    out.flush();
}
