// From the words of a verb to the command that it stands for.
#include <skuanctl/arguments.h>
#include <skuanctl/recipe.h>
#include <skuanctl/value_text.h>
#include <skuanctl/verb.h>

#include <algorithm>
#include <map>

namespace {

class CallWords
{
public:
    QString error;

    /// Adds what the word says to the arguments of the command.
    bool add(const Word& word, const QString& value)
    {
        const Tag& tag = *word.tag;
        if (!word.nothing.isEmpty() && value == word.nothing)
            return true;
        if (tag.name == QLatin1String("ContentID"))
            return put(word.path + (is_vclip ? ".VClipID" : ".ClipID"), value);
        if (tag.kind == Kind::container && tag.parts.front().tag->kind == Kind::record)
            return add_pair(word, value);
        if (tag.kind == Kind::container)
            return put(word.path, value);
        if (!is_value(tag, value))
            return refuse(word, value, wanted(tag));
        return put(word.path, value);
    }

    bool is_vclip = false;
    QStringList words; // as `call` takes them

private:
    bool put(const QString& path, const QString& value)
    {
        words += path + '=' + value;
        return true;
    }

    bool refuse(const Word& word, const QString& value, const QString& takes)
    {
        const QString name = word.option.isEmpty() ? word.placeholder : QStringLiteral("--") + word.option;
        error = QStringLiteral("'%1' is no value for %2, which takes %3").arg(value, name, takes);
        return false;
    }

    /// A member that is a record of two: FIRST=SECOND.
    bool add_pair(const Word& word, const QString& value)
    {
        const Tag& record = *word.tag->parts.front().tag;
        if (!value.contains('='))
            return refuse(word, value, word.placeholder);
        const QString member =
            QStringLiteral("%1.%2[%3].").arg(word.path, record.name).arg(members_[word.path]++);
        return put(member + record.parts[0].tag->name, value.section('=', 0, 0)) &&
               put(member + record.parts[1].tag->name, value.section('=', 1));
    }

    std::map<QString, int> members_; // of each container, so far
};

/// What an option without a value says.
QString said_by(const Word& word)
{
    return word.tag->kind == Kind::enumeration ? word.option : QStringLiteral("true");
}

bool add_options(const Options& options, CallWords& call)
{
    for (const auto& [name, value] : options.own)
        for (const Word& word : options.form.options)
            if (word.option == name && word.tag &&
                !call.add(word, word.placeholder.isEmpty() ? said_by(word) : value))
                return false;
    for (const Word& word : options.form.options)
        if (!word.fallback.isEmpty() && !options.has(word.option.toUtf8()) && !call.add(word, word.fallback))
            return false;
    return true;
}

/// The first of the commands that takes just what is given.
BuiltCommand build(const VerbRow& row, const CallWords& call)
{
    BuiltCommand first;
    for (const Command* command : commands_of(row)) {
        BuiltCommand built = build_command(*command, call.words);
        if (built.error.isEmpty())
            return built;
        if (first.error.isEmpty())
            first = built;
    }
    return first;
}

} // namespace

QStringList option_words(const Options& options, QString* error)
{
    CallWords call;
    add_options(options, call);
    *error = call.error;
    return call.words;
}

Recipe recipe_of(const Options& options)
{
    const std::vector<Word>& places = options.form.places;
    CallWords call;
    call.is_vclip = options.has("vclip");
    if (!add_options(options, call))
        return {{}, call.error};

    const bool one_each = !places.empty() && places.back().repeats && places.back().tag &&
                          places.back().tag->kind != Kind::container;
    const int common = one_each ? static_cast<int>(places.size()) - 1 : options.arguments.size();
    for (int i = 0; i < common; ++i) {
        const Word& word = places[std::min(static_cast<std::size_t>(i), places.size() - 1)];
        if (word.tag && !call.add(word, options.arguments[i]))
            return {{}, call.error};
    }

    Recipe recipe;
    int next = common;
    do {
        CallWords one = call;
        if (next < options.arguments.size() && !one.add(places.back(), options.arguments[next]))
            return {{}, one.error};
        const BuiltCommand built = build(*options.verb, one);
        if (!built.error.isEmpty())
            return {{}, built.error};
        recipe.commands.push_back(built.element);
    } while (++next < options.arguments.size());
    return recipe;
}
