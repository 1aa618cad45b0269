// Rows become forms: the words of a row against the parts of its commands.
#include <skuanctl/form.h>
#include <skuanctl/spelling.h>
#include <skuanctl/verb.h>

#include <algorithm>
#include <optional>

namespace {

/// A clip or a virtual clip; one word names either.
bool is_content(const Tag& tag)
{
    return tag.name == QLatin1String("ContentID");
}

Word word_of(const Tag& tag, const QString& owner, const QString& path, bool optional)
{
    Spelling spelling = spelling_of(tag, owner);
    if (tag.name == QLatin1String("ClipScope") || tag.kind == Kind::flag)
        spelling.placeholder.clear();
    Word word{spelling.option, spelling.placeholder, optional};
    word.repeats = tag.kind == Kind::container && tag.parts.front().tag->kind != Kind::enumeration;
    word.tag = &tag;
    word.path = path;
    return word;
}

void add_words(const Parts& parts, const QString& owner, const QString& path, bool optional,
               std::vector<Word>& words)
{
    for (const Part& part : parts) {
        const Tag& tag = *part.tag;
        const bool may_miss = optional || part.optional || tag.kind == Kind::flag;
        if (tag.kind == Kind::record && !is_content(tag))
            add_words(tag.parts, tag.name, path + tag.name + QLatin1Char('.'), may_miss, words);
        else
            words.push_back(word_of(tag, owner, path + tag.name, may_miss));
    }
}

/// Every value that one of the commands takes, once.
std::vector<Word> words_of(const std::vector<const Command*>& commands)
{
    std::vector<Word> all;
    for (const Command* const command : commands) {
        std::vector<Word> words;
        add_words(command->parts, command->name, {}, false, words);
        for (const Word& word : words) {
            const auto same = [&](const Word& one) { return one.path == word.path; };
            if (std::none_of(all.begin(), all.end(), same))
                all.push_back(word);
        }
    }
    return all;
}

/// Of a word that the verb takes itself.
QString help_on(const QString& option)
{
    static const std::pair<const char*, const char*> rows[] = {
        {"bind", "listen here, at port 8913; replay then plays the server's side"},
        {"board", "sorrel, tansy1, tansy2 or tansy3, whatever the server tells"},
        {"columns",
         "which values to follow, with commas between them: status, clip, position, timecode, speed, loop, "
         "tally, which are those it follows by itself, input (timecode) and length"},
        {"connection", "only this connection of the file"},
        {"paced", "say nothing before its recorded time"},
        {"wait", "until the recording has ended"},
    };
    for (const auto& [name, help] : rows)
        if (option == QLatin1String(name))
            return QString::fromLatin1(help);
    return {};
}

bool take_off(QString& text, const char* end)
{
    const bool has = text.endsWith(QLatin1String(end));
    if (has)
        text.chop(static_cast<int>(qstrlen(end)));
    return has;
}

class Former
{
public:
    explicit Former(const VerbRow& row) : commands_(commands_of(row)), rest_(words_of(commands_))
    {
        for (const QString& text : QString::fromUtf8(row.words).split(' ', Qt::SkipEmptyParts))
            add(text);
        for (const Word& word : rest_)
            form_.options.push_back(word);
        const auto names_content = [](const Word& word) { return word.tag && is_content(*word.tag); };
        if (std::any_of(form_.places.begin(), form_.places.end(), names_content)) {
            form_.options.push_back({QStringLiteral("vclip"), {}});
            form_.options.back().help = QStringLiteral("CLIP is a virtual clip");
        }
    }

    Form form() { return std::move(form_); }

private:
    void add(QString text)
    {
        if (text.startsWith('!')) {
            take(text.mid(1));
            return;
        }
        const bool optional = text.startsWith('[');
        if (optional)
            text = text.mid(1, text.size() - 2);
        if (text.startsWith(QLatin1String("--")))
            return add_own_option(text.mid(2));
        const bool repeats = take_off(text, "...");
        const QString nothing = text.section('|', 1), name = text.section('|', 0, 0).section('=', 0, 0);
        auto word = take(name);
        if (!word)
            return form_.places.push_back({{}, text, optional, repeats});
        if (text.contains('='))
            return add_option(*word, text.section('=', 1));
        word->optional = optional;
        word->repeats = word->repeats || repeats;
        word->nothing = nothing;
        add_place(*word);
    }

    void add_own_option(const QString& text)
    {
        Word word{text.section('=', 0, 0), text.section('=', 1)};
        word.help = help_on(word.option);
        form_.options.push_back(word);
    }

    void add_option(Word word, const QString& fallback)
    {
        word.fallback = fallback;
        word.optional = true;
        if (word.tag->kind == Kind::boolean && fallback == QLatin1String("false"))
            word.placeholder.clear(); // to name it is to turn it on
        form_.options.push_back(word);
    }

    void add_place(Word word)
    {
        if (!word.nothing.isEmpty())
            word.placeholder += '|' + word.nothing;
        word.option.clear();
        form_.places.push_back(word);
    }

    /// The values of that tag, or of the record of that name, which are then no options any more; gives the
    /// first of them.
    std::optional<Word> take(const QString& name)
    {
        const auto is_named = [&](const Word& word) { return word.path.split('.').contains(name); };
        const auto found = std::find_if(rest_.begin(), rest_.end(), is_named);
        if (found == rest_.end())
            return std::nullopt;
        const Word word = *found;
        rest_.erase(std::remove_if(rest_.begin(), rest_.end(), is_named), rest_.end());
        return word;
    }

    const std::vector<const Command*> commands_;
    std::vector<Word> rest_;
    Form form_;
};

} // namespace

Form form_of(const VerbRow& row)
{
    return Former(row).form();
}

std::vector<const Command*> commands_of(const VerbRow& row)
{
    std::vector<const Command*> commands;
    for (const QString& name : QString::fromUtf8(row.command).split('|', Qt::SkipEmptyParts))
        commands.push_back(find_row(catalogue().commands, name));
    return commands;
}

QString spelled(const Word& word)
{
    QString text = word.option.isEmpty() ? word.placeholder
                   : word.placeholder.isEmpty()
                       ? QStringLiteral("--") + word.option
                       : QStringLiteral("--%1 %2").arg(word.option, word.placeholder);
    if (word.repeats)
        text += QStringLiteral("...");
    return word.optional && word.option.isEmpty() ? '[' + text + ']' : text;
}

QString usage(const VerbRow& row)
{
    const Form form = form_of(row);
    QStringList words{QString::fromUtf8(row.name)};
    for (const Word& word : form.places)
        words += spelled(word);
    if (!form.options.empty())
        words += QStringLiteral("[OPTION...]");
    return words.join(' ');
}
