// One run of the verb against one server: its connection, what it prints, and its end.
#pragma once

#include <skuanctl/link.h>
#include <skuanctl/options.h>
#include <skuanctl/output.h>
#include <skuanctl/table.h>
#include <skuanctl/verb.h>

#include <QObject>

/// Lives on the main thread, in QCoreApplication's event loop.
class Run : public QObject
{
    Q_OBJECT
public:
    /// `output` outlives the run. `host_column` is how wide the names of the hosts are where there are
    /// several, and 0 where there is one.
    Run(const Options& options, const QString& host, int host_column, Output& output);
    ~Run() override;

    /// Within the event loop.
    void start();

    const Options& options() const { return options_; }
    const QString& host() const { return host_; }
    Link& link() { return link_; }
    Output& output() { return output_; }

    /// One line of the result: the text, or, with --json, the object.
    void line(const QString& text, const QJsonObject& object) { lines({text}, object); }

    /// A result of several lines, which is still one object.
    void lines(const QStringList& texts, const QJsonObject& object);

    /// A row of the result's table, which begins with this head.
    void row(const QStringList& head, const QStringList& cells, const QJsonObject& object);

    /// A remark for who sits at a terminal; nobody else gets it.
    void remark(const QString& text) { output_.remark(text); }

    /// How far a long download has come; for who waits at a terminal.
    void progress(const QString& text) { output_.progress(text); }

    // The end of the run; only the first one counts.
    void done(ExitCode code = exit_ok);
    void fail(const Failure& failure);

    bool is_over() const { return over_; }

Q_SIGNALS:
    void ended(ExitCode code);

private:
    void end_table();
    void end(ExitCode code);
    QJsonObject with_host(QJsonObject object) const;

    const Options& options_;
    const QString host_;
    const int host_column_;
    Output& output_;
    Table table_;
    std::unique_ptr<Verb> verb_; // before the link, whose messages it takes
    Link link_;
    bool over_ = false;
};
