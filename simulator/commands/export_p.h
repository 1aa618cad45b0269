// An export that a client puts together.
#pragma once

#include <simulator/budget_p.h>

namespace simulator {

struct ExportDraft
{
    std::vector<Element> clips; // each an `export_add`
    Share share;
};

} // namespace simulator
