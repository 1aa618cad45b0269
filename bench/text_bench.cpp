// Strings against their peers: what a copy or a piece costs beside QString, and how fast bytes become
// characters beside the plain loop one would write.
#include <skuan/foundation/abytearray.h>
#include <skuan/foundation/astring.h>
#include <skuan/foundation/astring_builder.h>
#include <skuan/foundation/astring_list.h>

#include <QHash>
#include <QString>

#include <benchmark/benchmark.h>

#include <string>

namespace {

const std::string kilobyte(1024, 'x');
const std::string tag = "timecode_source";

std::u32string decode_loop(const std::string& text)
{
    std::u32string out;
    for (std::size_t i = 0; i < text.size();) {
        const unsigned lead = static_cast<unsigned char>(text[i++]);
        if (lead < 0x80) {
            out.push_back(lead);
            continue;
        }
        unsigned more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
        char32_t c = lead & (0x3Fu >> more);
        while (more-- != 0 && i < text.size())
            c = c << 6 | (static_cast<unsigned char>(text[i++]) & 0x3F);
        out.push_back(c);
    }
    return out;
}

std::string encode_loop(const std::u32string& text)
{
    std::string out;
    for (char32_t c : text) {
        if (c < 0x80) {
            out.push_back(static_cast<char>(c));
        } else if (c < 0x800) {
            out.push_back(static_cast<char>(0xC0 | c >> 6));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else if (c < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | c >> 12));
            out.push_back(static_cast<char>(0x80 | (c >> 6 & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | c >> 18));
            out.push_back(static_cast<char>(0x80 | (c >> 12 & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c >> 6 & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        }
    }
    return out;
}

/// Times `step`, whose result is kept from being optimised away.
template <typename Step>
void measure(benchmark::State& state, Step step)
{
    for (auto _ : state) {
        auto result = step();
        benchmark::DoNotOptimize(result);
    }
}

void copy_ours(benchmark::State& state)
{
    const AString text = AString::from_string(tag);
    measure(state, [&] { return text; });
}
void copy_qstring(benchmark::State& state)
{
    const QString text = QString::fromStdString(tag);
    measure(state, [&] { return text; });
}
void copy_std(benchmark::State& state)
{
    const std::u32string text = decode_loop(tag);
    measure(state, [&] { return text; });
}
BENCHMARK(copy_ours)->Name("Copy/ours");
BENCHMARK(copy_qstring)->Name("Copy/QString");
BENCHMARK(copy_std)->Name("Copy/u32string");

void piece_ours(benchmark::State& state)
{
    const AString text = AString::from_string(tag);
    measure(state, [&] { return text.mid(3, 6); });
}
void piece_qstring(benchmark::State& state)
{
    const QString text = QString::fromStdString(tag);
    measure(state, [&] { return text.mid(3, 6); });
}
BENCHMARK(piece_ours)->Name("Substring/ours");
BENCHMARK(copy_qstring)->Name("Substring/QString_copy");
BENCHMARK(piece_qstring)->Name("Substring/QString_mid");

void decode_ours(benchmark::State& state)
{
    measure(state, [] { return AString::from_utf8(kilobyte.data(), 1024); });
}
void decode_peer(benchmark::State& state)
{
    measure(state, [] { return decode_loop(kilobyte); });
}
void decode_qstring(benchmark::State& state)
{
    measure(state, [] { return QString::fromUtf8(kilobyte.data(), 1024); });
}
BENCHMARK(decode_ours)->Name("Utf8Decode1K/ours");
BENCHMARK(decode_peer)->Name("Utf8Decode1K/u32string_loop");
BENCHMARK(decode_qstring)->Name("Utf8Decode1K/QString");

void encode_ours(benchmark::State& state)
{
    const AString text = AString::from_string(kilobyte);
    measure(state, [&] { return text.to_string(); });
}
void encode_ours_buffer(benchmark::State& state)
{
    const AString text = AString::from_string(kilobyte);
    char buf[1024];
    for (auto _ : state) {
        text.to_utf8(buf, sizeof buf);
        benchmark::DoNotOptimize(buf);
        benchmark::ClobberMemory();
    }
}
void encode_peer(benchmark::State& state)
{
    const std::u32string text = decode_loop(kilobyte);
    measure(state, [&] { return encode_loop(text); });
}
void encode_qstring(benchmark::State& state)
{
    const QString text = QString::fromStdString(kilobyte);
    measure(state, [&] { return text.toUtf8(); });
}
BENCHMARK(encode_ours)->Name("Utf8Encode1K/ours");
BENCHMARK(encode_ours_buffer)->Name("Utf8Encode1K/ours_into_buffer");
BENCHMARK(encode_peer)->Name("Utf8Encode1K/u32string_loop");
BENCHMARK(encode_qstring)->Name("Utf8Encode1K/QString");

void short_ours(benchmark::State& state)
{
    measure(state, [] {
        AString text;
        skuan::string_from_utf8(tag.data(), static_cast<unsigned>(tag.size()), &text);
        return text;
    });
}
void short_peer(benchmark::State& state)
{
    measure(state, [] { return decode_loop(tag); });
}
void short_qstring(benchmark::State& state)
{
    measure(state, [] { return QString::fromUtf8(tag.data(), static_cast<int>(tag.size())); });
}
BENCHMARK(short_ours)->Name("ShortDecode/ours");
BENCHMARK(short_peer)->Name("ShortDecode/u32string_loop");
BENCHMARK(short_qstring)->Name("ShortDecode/QString");

void equal_ours(benchmark::State& state)
{
    const AString text = AString::from_string(tag);
    measure(state, [&] { return text.equal_z("timecode_source"); });
}
void equal_qstring(benchmark::State& state)
{
    const QString text = QString::fromStdString(tag);
    measure(state, [&] { return text == QLatin1String("timecode_source"); });
}
BENCHMARK(equal_ours)->Name("EqualToLatin1/ours");
BENCHMARK(equal_qstring)->Name("EqualToLatin1/QString");

void hash_ours(benchmark::State& state)
{
    const AString text = AString::from_string(tag);
    measure(state, [&] {
        const AString fresh(text, 0, text.length()); // without the cached value
        return fresh.hash();
    });
}
void hash_qstring(benchmark::State& state)
{
    const QString text = QString::fromStdString(tag);
    measure(state, [&] { return qHash(text); });
}
BENCHMARK(hash_ours)->Name("Hash/ours");
BENCHMARK(hash_qstring)->Name("Hash/QString");

void list_ours(benchmark::State& state)
{
    const AString text = AString::from_string(tag);
    measure(state, [&] {
        AStringList list;
        for (unsigned i = 0; i < 16; ++i)
            list.push_back(text);
        return list;
    });
}
BENCHMARK(list_ours)->Name("ListOf16/ours");

} // namespace
