// One run: the options, the output, the connection and the verb, and its end.
#pragma once

#include <skuanctl/interrupt.h>
#include <skuanctl/link.h>
#include <skuanctl/options.h>
#include <skuanctl/output.h>
#include <skuanctl/verb.h>

#include <QObject>

/// Lives on the main thread, in QCoreApplication's event loop, which it ends with the exit code.
class Program : public QObject
{
    Q_OBJECT
public:
    explicit Program(const Options& options);

    /// Within the event loop.
    void start();

    const Options& options() const { return options_; }
    Output& output() { return output_; }
    Link& link() { return link_; }

    // The end of the run; only the first one counts.
    void done(ExitCode code = exit_ok);
    void fail(const Failure& failure);

private:
    const Options options_;
    Output output_;
    Interrupt interrupt_;
    std::unique_ptr<Verb> verb_; // before the link, whose callbacks it takes
    Link link_;
    bool over_ = false;
};
