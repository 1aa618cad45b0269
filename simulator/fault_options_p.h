// The faults by name: for the command line, and for the control interface.
#pragma once

#include <simulator/export.h>
#include <simulator/faults.h>

#include <QString>

#include <functional>
#include <vector>

namespace simulator {

struct FaultOption
{
    const char* name;
    const char* value; // null: it has none, it is on or off
    const char* help;

    // Takes a value, for one without a value any text. False if it is none of its kind.
    std::function<bool(const QString& value, Faults& faults)> take;

    // The value that these faults have; empty if the fault is off.
    std::function<QString(const Faults& faults)> show;

    // Turns the fault off.
    std::function<void(Faults& faults)> reset;
};

// In the order in which faults act. Immutable; any thread.
SKUAN_SIMULATOR_EXPORT const std::vector<FaultOption>& fault_options();

} // namespace simulator
