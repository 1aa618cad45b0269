// Code that runs when the module is loaded.
#pragma once

#include <skuan/foundation/assertfail.h>

/// Calls a function from its constructor: a static RunOnce runs it at load time. A null function is
/// an assertion. Copying and assigning call nothing.
class RunOnce
{
public:
    explicit RunOnce(void (*function)())
    {
        if (SKUAN_CHECK(function != nullptr))
            function();
    }
    RunOnce(const RunOnce&) {}
    RunOnce& operator=(const RunOnce&) { return *this; }
};
