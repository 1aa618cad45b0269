// Look-up and change in an Element.
#include <simulator/element.h>

#include <algorithm>

namespace simulator {

namespace {

template <class Elements, class Name>
auto find(Elements& elements, const Name& name)
{
    const auto found =
        std::find_if(elements.begin(), elements.end(), [&](const Element& e) { return e.tag == name; });
    return found == elements.end() ? nullptr : &*found;
}

} // namespace

const Element* Element::child(QLatin1String name) const
{
    return find(children, name);
}

Element* Element::child(QLatin1String name)
{
    return find(children, name);
}

const Element* Element::child(const QString& name) const
{
    return find(children, name);
}

QString Element::child_text(QLatin1String name) const
{
    const Element* found = child(name);
    return found ? found->text : QString();
}

QString Element::child_text(const QString& name) const
{
    const Element* found = child(name);
    return found ? found->text : QString();
}

void Element::set(Element child)
{
    if (Element* present = find(children, child.tag))
        *present = std::move(child);
    else
        children.push_back(std::move(child));
}

void Element::remove(QLatin1String name)
{
    children.erase(std::remove_if(children.begin(), children.end(),
                                  [name](const Element& element) { return element.tag == name; }),
                   children.end());
}

bool Element::operator==(const Element& other) const
{
    return tag == other.tag && text == other.text && children == other.children;
}

} // namespace simulator
