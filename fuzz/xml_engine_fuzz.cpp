// The stream parser, fed the same bytes whole and in random pieces: the same trees come out, and the
// same fate. The first byte is the seed of the cuts.
#include <require.h>

#include <skuan/markup/xml_parse.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr unsigned bufsize = 256;

/// The trees as text, and "failed" behind them if the stream broke.
template <typename NextSize>
std::vector<std::string> outcome(const std::uint8_t* data, std::size_t size, NextSize next_size)
{
    XMLParseEngine engine(bufsize);
    engine.config_tag("reply");
    engine.config_tag("report");
    std::vector<std::string> out;
    while (size > 0) {
        const unsigned n = static_cast<unsigned>(std::min<std::size_t>(size, next_size()));
        const unsigned taken = engine.input_bytes(n, data);
        fuzz::require(taken <= n && engine.available_buffer_space() <= bufsize);
        for (XMLTree tree = engine.get_xml(); !tree.is_null(); tree = engine.get_xml())
            out.push_back(tree.flatten(XMLTree::flatten_compact, true).to_string());
        if (engine.parse_error() || (taken == 0 && engine.available_buffer_space() == 0)) {
            out.emplace_back("failed");
            break;
        }
        data += taken;
        size -= taken;
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 1)
        return 0;
    std::mt19937 random(data[0]);
    fuzz::require(outcome(data + 1, size - 1, [] { return bufsize; }) ==
                  outcome(data + 1, size - 1, [&random] { return random() % 9 + 1; }));
    return 0;
}
