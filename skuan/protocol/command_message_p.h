// The message of one command while it is being built.
#pragma once

#include <skuan/protocol/kvrp3_kinds_p.h>

namespace KVRP3 {

class CommandMessage
{
public:
    explicit CommandMessage(const AString& command) : command_(command) {}

    template <typename T>
    void add(const typename T::Value& value)
    {
        arguments_.push_back(T::write(value));
    }
    /// An argument that is not present leaves no element, nor does a flag that is false.
    template <typename T>
    void add_if(bool present, const typename T::Value& value)
    {
        if constexpr (T::by_presence)
            present = present && value;
        if (present)
            add<T>(value);
    }

    XMLTree with_xid(const AString& xid) &&
    {
        AList<XMLTree> parts;
        parts.push_back(XMLTree(name<"xid">(), xid));
        parts.push_back(XMLTree(command_, std::move(arguments_)));
        return XMLTree(name<"cmd">(), std::move(parts));
    }

private:
    const AString& command_;
    AList<XMLTree> arguments_;
};

} // namespace KVRP3
