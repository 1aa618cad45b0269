// How the parts of a run are joined.
#include <skuanctl/run.h>

Run::Run(const Options& options, const QString& host, int host_column, Output& output)
    : options_(options),
      host_(host),
      host_column_(host_column),
      output_(output),
      verb_(options.verb->make(*this)),
      link_(host, options.timeout, [this](const XMLTree& message) {
          if (!over_)
              verb_->take(message);
      })
{
    connect(&link_, &Link::ready, this, [this] { verb_->start(); });
    connect(&link_, &Link::failed, this, &Run::fail);
}

Run::~Run() = default;

void Run::start()
{
    if (verb_->prepare())
        link_.open();
}

void Run::lines(const QStringList& texts, const QJsonObject& object)
{
    if (options_.json)
        return output_.object(with_host(object));
    for (const QString& text : texts)
        output_.text(host_column_ ? host_.leftJustified(host_column_) + QLatin1String("  ") + text : text);
}

void Run::row(const QStringList& head, const QStringList& cells, const QJsonObject& object)
{
    if (options_.json)
        return output_.object(with_host(object));
    for (const QString& text : table_.add(head, cells))
        lines({text}, {});
}

void Run::done(ExitCode code)
{
    if (over_)
        return;
    end_table();
    end(code);
}

void Run::fail(const Failure& failure)
{
    if (over_)
        return;
    end_table();
    output_.error(failure, host_column_ ? host_ : QString());
    end(failure.code);
}

void Run::end_table()
{
    if (!options_.json)
        lines(table_.take(), {});
}

void Run::end(ExitCode code)
{
    over_ = true;
    Q_EMIT ended(code);
}

QJsonObject Run::with_host(QJsonObject object) const
{
    if (host_column_)
        object.insert(QStringLiteral("host"), host_);
    return object;
}
