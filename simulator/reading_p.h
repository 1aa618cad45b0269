// Holds what a client sent against the catalogue, and brings it into the one form that the rest expects.
#pragma once

#include <simulator/catalogue_p.h>
#include <simulator/element.h>

namespace simulator {

// What is wrong with an element, and which tag is to blame. Without text nothing is wrong.
struct Objection
{
    QString tag;
    QString text;
};

// Reads an element's children by the layout. Children that it does not name are taken out, the others
// put in wire order; text that is no string loses the white space around it and gets its usual form, so
// that a bool is "true" or "false". At the first fault the element is left as far as it was read.
Objection read(const Layout& layout, Element& element);

} // namespace simulator
