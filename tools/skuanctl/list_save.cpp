// The verbs list save and chase save: elements as the lines of JSON that `show --json` prints, so that what
// is shown can be saved again.
#include <skuanctl/arguments.h>
#include <skuanctl/dialogue.h>
#include <skuanctl/lines_input.h>
#include <skuanctl/run.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// Exact for whatever a speed or a count can be.
QString number(double value)
{
    constexpr int digits = 16; // a speed is a multiple of 1/65536
    QString text = QString::number(value, 'f', digits);
    while (text.endsWith('0'))
        text.chop(1);
    return text.endsWith('.') ? text.chopped(1) : text;
}

/// The object's values as arguments of `call`. Gives the key of a value that none of them can be.
QString add_words(const QJsonObject& object, const QString& path, QStringList& words)
{
    QString misfit;
    for (auto member = object.begin(); member != object.end(); ++member) {
        const QString name = path + '.' + member.key();
        const QJsonValue& value = member.value();
        if (value.isObject())
            misfit += add_words(value.toObject(), name, words);
        else if (value.isBool())
            words += name + (value.toBool() ? "=true" : "=false");
        else if (value.isDouble() || value.isString())
            words += name + '=' + (value.isDouble() ? number(value.toDouble()) : value.toString());
        else
            misfit = name;
    }
    return misfit;
}

class ListSave : public Dialogue
{
public:
    using Dialogue::Dialogue;

    bool prepare() override
    {
        const QStringList& arguments = run_.options().arguments;
        const Command& element = *commands_of(*run_.options().verb).front();
        const QString family = element.name.section('_', 0, 0), list = arguments[0];
        const QString id =
            family == QLatin1String("list") ? QStringLiteral("ListID=") : QStringLiteral("ChaseID=");

        QString error;
        const QStringList lines = read_lines(arguments.value(1), &error);
        if (!error.isEmpty())
            return refuse(error);
        add(family + "_save_start", {id + list});
        for (int i = 0; i < lines.size(); ++i)
            if (!lines[i].isEmpty() && !add_element(element, lines[i]))
                return refuse(QStringLiteral("line %1: %2").arg(i + 1).arg(error_));
        add(family + "_save_end", {});
        set_steps(steps_);
        return true;
    }

private:
    void show_reply(const XMLTree&, const XMLTree&, const Reply*) override
    {
        run_.progress(QStringLiteral("%1 of %2").arg(++answered_).arg(steps_.size()));
    }

    bool add(const QString& command, const QStringList& words)
    {
        const BuiltCommand built = build_command(*find_row(catalogue().commands, command), words);
        error_ = built.error;
        steps_.push_back(built.element);
        return error_.isEmpty();
    }

    bool add_element(const Command& command, const QString& line)
    {
        QJsonParseError wrong{};
        const QJsonDocument document = QJsonDocument::fromJson(line.toUtf8(), &wrong);
        if (!document.isObject()) {
            error_ = wrong.error ? wrong.errorString() : QStringLiteral("it is no object");
            return false;
        }
        QJsonObject object = document.object();
        object.remove(QStringLiteral("host")); // of the server that it was shown by
        QStringList words;
        const QString misfit = add_words(object, command.parts.front().tag->name, words);
        if (!misfit.isEmpty())
            error_ = QStringLiteral("%1 is neither a text nor a number").arg(misfit);
        return misfit.isEmpty() && add(command.name, words);
    }

    std::vector<XMLTree> steps_;
    std::size_t answered_ = 0;
    QString error_;
};

} // namespace

std::unique_ptr<Verb> make_list_save(Run& run)
{
    return std::make_unique<ListSave>(run);
}
