// The command line of skuan-sim.
#pragma once

#include <simulator/settings.h>

#include <QStringList>

namespace simulator {

struct Options
{
    Settings settings;
    QString control;    // the name of the control socket; empty: none
    QString tell, line; // not empty: have the program at that control name carry out this line, and stop
    QString help;       // not empty: print it and stop
    QString error;      // not empty: the usage was bad, and this is why
};

// `arguments` with the program's name in front. Reads the files of `--clips` and `--from`.
Options parse_options(const QStringList& arguments);

} // namespace simulator
