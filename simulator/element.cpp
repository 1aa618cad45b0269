// Look-up in an Element.
#include <simulator/element.h>

#include <algorithm>

namespace simulator {

const Element* Element::child(const QString& name) const
{
    const auto found =
        std::find_if(children.begin(), children.end(), [&](const Element& e) { return e.tag == name; });
    return found == children.end() ? nullptr : &*found;
}

QString Element::child_text(const QString& name) const
{
    const Element* found = child(name);
    return found ? found->text : QString();
}

} // namespace simulator
