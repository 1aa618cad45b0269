// How the parts of a run are joined.
#include <skuanctl/program.h>

#include <QCoreApplication>

Program::Program(const Options& options)
    : options_(options),
      output_(options.json),
      verb_(options.verb->make(*this)),
      link_(options.host, options.timeout,
            [this](const XMLTree& message) { return over_ || verb_->take(message); })
{
    connect(&link_, &Link::ready, this, [this] { verb_->start(); });
    connect(&link_, &Link::failed, this, &Program::fail);
    connect(&interrupt_, &Interrupt::pressed, this, [this] { done(exit_interrupted); });
    connect(&output_, &Output::broken, this, [this](const QString& why) {
        if (why.isEmpty())
            done(exit_cannot_write);
        else
            fail({exit_cannot_write, why, {}});
    });
}

void Program::start()
{
    if (verb_->prepare())
        link_.open();
}

void Program::done(ExitCode code)
{
    if (!over_)
        output_.flush(); // should this break, it ends the run in its own way
    if (over_)
        return;
    over_ = true;
    QCoreApplication::exit(code);
}

void Program::fail(const Failure& failure)
{
    if (over_)
        return;
    over_ = true;
    output_.error(failure);
    QCoreApplication::exit(failure.code);
}
