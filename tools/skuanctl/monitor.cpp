// The verb monitor: what the channels are doing, as it changes.
#include <skuanctl/catalogue.h>
#include <skuanctl/cell.h>
#include <skuanctl/live_lines.h>
#include <skuanctl/mirror_verb.h>
#include <skuanctl/monitor_columns.h>
#include <skuanctl/nearest.h>
#include <skuanctl/run.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>
#include <utility>

namespace {

/// "-" for what is not known; speeds as far as they are worth reading.
QString text_of(const QJsonValue& value)
{
    if (value.isNull())
        return QStringLiteral("-");
    if (!value.isDouble())
        return value.toString();
    const double number = value.toDouble();
    return number == std::floor(number) ? QString::number(number, 'f', 0) : QString::number(number, 'g', 4);
}

QString without_end_blanks(QString text)
{
    while (text.endsWith(' '))
        text.chop(1);
    return text;
}

class Monitor : public MirrorVerb
{
public:
    explicit Monitor(Run& run) : MirrorVerb(run)
    {
        due_.setSingleShot(true);
        QObject::connect(&due_, &QTimer::timeout, &due_, [this] { tell(); });
    }

private:
    struct Row
    {
        unsigned channel;
        bool is_there; ///< the server has told of the channel, or it was asked for by name
        bool is_due = true;
        std::vector<QJsonValue> cells = {};
    };

    bool ask() override
    {
        if (!choose_columns() || !choose_rows())
            return false;
        for (std::size_t row = 0; row != rows_.size(); ++row)
            for (std::size_t column = 0; column != columns_.size(); ++column)
                columns_[column]->follow(
                    {session_, rows_[row].channel, &due_,
                     [this, row, column](const QJsonValue& value) { take_value(row, column, value); }});
        is_following_ = true;
        return true;
    }

    bool choose_columns()
    {
        const QStringList asked = run_.options().value("columns").split(',', Qt::SkipEmptyParts);
        QStringList names;
        for (const MonitorColumn& column : monitor_columns())
            names += QString::fromLatin1(column.name);
        for (const QString& name : asked)
            if (!names.contains(name))
                return refuse(QStringLiteral("there is no column '%1'").arg(name) + hint(name, names));
        for (const QString& name : asked)
            columns_.push_back(&monitor_columns()[static_cast<std::size_t>(names.indexOf(name))]);
        if (asked.isEmpty())
            for (const MonitorColumn& column : monitor_columns())
                if (column.by_default)
                    columns_.push_back(&column);
        return true;
    }

    bool choose_rows()
    {
        const QStringList& arguments = run_.options().arguments;
        const bool by_name = !arguments.isEmpty() && arguments.constFirst() != QLatin1String("*");
        for (const QString& name : by_name ? arguments.constFirst().split(',') : channel_names_) {
            const int channel = channel_names_.indexOf(name);
            if (channel < 0)
                return refuse(QStringLiteral("there is no channel '%1', but %2")
                                  .arg(name, channel_names_.join(QStringLiteral(", "))));
            rows_.push_back({static_cast<unsigned>(channel), by_name});
            rows_.back().cells.resize(columns_.size());
        }
        return true;
    }

    // What is there before the first report is nothing that the server has told.
    void take_value(std::size_t number, std::size_t column, const QJsonValue& value)
    {
        Row& row = rows_[number];
        const bool is_new = row.cells[column] != value || (is_following_ && !row.is_there);
        row.cells[column] = value;
        row.is_there |= is_following_;
        row.is_due |= is_new;
        if (is_new && is_shown_)
            due_.start(0);
    }

    // Timecodes come by a road of their own, on which they are a little later than the answers.
    void know() override
    {
        constexpr auto a_little = std::chrono::milliseconds(50);
        stay();
        due_.start(a_little);
    }

    void begin()
    {
        if (run_.output().can_draw() && run_.options().hosts.size() == 1)
            live_.emplace(run_.output(), [this](int width) { return picture(width); });
        else if (!run_.options().json)
            run_.line(head(0), {});
    }

    void tell()
    {
        if (has_told_enough())
            return;
        if (!std::exchange(is_shown_, true))
            begin();
        for (Row& row : rows_) {
            if (!row.is_there || !row.is_due || has_told_enough())
                continue;
            row.is_due = false;
            if (!live_)
                run_.line(line(row, 0), object_of(row));
            count();
        }
        if (live_)
            live_->change();
    }

    void tell_connection(const QString& text) override
    {
        if (!live_)
            return MirrorVerb::tell_connection(text);
        connection_ = text;
        live_->change();
    }

    QStringList picture(int width) const
    {
        QStringList lines{connection_, head(width)};
        for (const Row& row : rows_)
            if (row.is_there)
                lines += line(row, width);
        return lines;
    }

    QString head(int width) const
    {
        QStringList names{QStringLiteral("CH")};
        for (const MonitorColumn* const column : columns_)
            names += QString::fromLatin1(column->name).toUpper();
        return joined(names, width);
    }

    QString line(const Row& row, int width) const
    {
        QStringList texts{channel_names_[static_cast<int>(row.channel)]};
        for (const QJsonValue& cell : row.cells)
            texts += text_of(cell);
        return joined(texts, width);
    }

    /// With a width of 0 nothing is cut, nor filled up at the end.
    QString joined(const QStringList& texts, int width) const
    {
        constexpr int usual_width = 100, channel_width = 2, least_room = 11, most_room = 48;
        int room = (width ? width : usual_width) - channel_width;
        for (const MonitorColumn* const column : columns_)
            room -= 2 + column->width;
        QString line = fitted(texts.constFirst(), channel_width);
        for (std::size_t i = 0; i != columns_.size(); ++i) {
            const MonitorColumn& column = *columns_[i];
            const QString& plain = texts[static_cast<int>(i) + 1];
            const QString text = width ? made_visible(plain) : plain;
            const int cell = column.width ? column.width : std::clamp(room, least_room, most_room);
            line += QStringLiteral("  ") +
                    fitted(text, width ? cell : std::max(cell, width_of(text)), column.alignment);
        }
        return width ? line : without_end_blanks(line);
    }

    QJsonObject object_of(const Row& row) const
    {
        QJsonObject object{{"channel", channel_names_[static_cast<int>(row.channel)]}};
        for (std::size_t i = 0; i != columns_.size(); ++i)
            object.insert(QLatin1String(columns_[i]->name), row.cells[i]);
        return object;
    }

    const QStringList& channel_names_ = find_row(catalogue().tags, QLatin1String("Channel"))->names;
    std::vector<const MonitorColumn*> columns_;
    std::vector<Row> rows_;
    bool is_following_ = false;
    bool is_shown_ = false;
    QTimer due_; // what one turn of the event loop brings is told together
    QString connection_ = QStringLiteral("connected to ") + run_.host();
    std::optional<LiveLines> live_; // the last: it draws once more when it ends
};

} // namespace

std::unique_ptr<Verb> make_monitor(Run& run)
{
    return std::make_unique<Monitor>(run);
}
