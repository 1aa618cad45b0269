// The command line of skuan-sim.
#pragma once

#include <simulator/settings.h>

#include <QStringList>

namespace simulator {

struct Options
{
    Settings settings;
    QString help;  // not empty: print it and stop
    QString error; // not empty: the usage was bad, and this is why
};

// `arguments` with the program's name in front. Reads the file of `--clips`.
Options parse_options(const QStringList& arguments);

} // namespace simulator
