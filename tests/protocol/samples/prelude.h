// What the generated samples are made with: values as elements, written here a second time.
#pragma once

#include <skuan/foundation/aoption.h>
#include <skuan/protocol/kvrp3_api_qt.h>
#include <skuan/protocol/kvrp3_callback_groups.h>

#include <QByteArray>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <tuple>
#include <vector>

/// A record is made in a function of its own: all in one, they would keep an optimiser busy for minutes.
#define APART []() __attribute__((noinline))

namespace samples {

inline std::string element(const std::string& tag, const std::string& content)
{
    return content.empty() ? "<" + tag + " />" : "<" + tag + ">" + content + "</" + tag + ">";
}

inline std::string plain(const AString& text)
{
    QByteArray bytes = QByteArray::fromStdString(text.to_string());
    for (const auto& [c, entity] :
         {std::pair{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&apos;"}})
        bytes.replace(c, entity);
    return bytes.toStdString();
}
inline std::string plain(bool value)
{
    return value ? "true" : "false";
}
template <typename T, typename = std::enable_if_t<std::is_integral_v<T>>>
std::string plain(T number)
{
    return std::to_string(number);
}

inline std::string speed(int value)
{
    char text[40];
    int length = std::snprintf(text, sizeof text, "%.15f", value / 65536.0);
    while (text[length - 1] == '0')
        --length;
    return std::string(text, text[length - 1] == '.' ? length - 1 : length);
}

// Values as the samples make them.

inline AString text(const char* utf8)
{
    return AString::from_string(utf8);
}

template <typename Container, typename Member>
Container row(std::initializer_list<Member> members)
{
    Container container;
    if constexpr (std::is_same_v<Container, std::list<Member>>) {
        container = members;
    } else {
        container.count = static_cast<unsigned>(members.size());
        std::copy(members.begin(), members.end(), container.vec);
    }
    return container;
}

} // namespace samples
