// One step of a server's start, for those who wait for it to show.
#pragma once

#include <QString>

namespace simulator {

/// A step without a name goes by "step": readers of the start status drop one that has none.
struct StartStep
{
    QString name;        ///< a word, as in "disks"
    QString description; ///< for a person, as in "Checking disks"
    quint64 fields = 50; ///< how long it takes, in fields of the server's video standard
};

} // namespace simulator
