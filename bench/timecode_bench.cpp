// Timecode against a library that every video program knows: from a count to a label, to its text, and back.
// Both walk through a day at 29.97 frames a second with drop-frame, which is the dearest of all rates.
#include <skuan/time/atimecode.h>

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#ifdef HAVE_AVUTIL
extern "C" {
#include <libavutil/timecode.h>
}
#endif

using namespace Vantor;

namespace {

constexpr unsigned day = 5'178'816; // fields
constexpr unsigned step = 7'919;    // prime to the day: every length of minute comes, in no order

/// The next position of a walk through the day.
unsigned next(unsigned& position)
{
    position += step;
    if (position >= day)
        position -= day;
    return position;
}

void label_ours(benchmark::State& state)
{
    unsigned position = 0;
    for ([[maybe_unused]] auto _ : state) {
        const ATimecode t(VideoFrequency_59_94Hz, DropframeFlag_df, next(position));
        benchmark::DoNotOptimize(t.get_hours());
        benchmark::DoNotOptimize(t.get_minutes());
        benchmark::DoNotOptimize(t.get_seconds());
        benchmark::DoNotOptimize(t.get_frames());
        benchmark::DoNotOptimize(t.get_f2());
    }
}
BENCHMARK(label_ours)->Name("TimecodeLabel/ours");

void to_text_ours(benchmark::State& state)
{
    unsigned position = 0;
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(
            ATimecode(VideoFrequency_59_94Hz, DropframeFlag_df, next(position)).toString(4));
}
BENCHMARK(to_text_ours)->Name("TimecodeToText/ours");

/// Texts to read, enough that no branch predictor knows them.
std::vector<std::string> texts()
{
    std::vector<std::string> result;
    unsigned position = 0;
    for (int i = 0; i != 1024; ++i)
        result.push_back(ATimecode(VideoFrequency_59_94Hz, DropframeFlag_df, next(position) & ~1u)
                             .toString(4)
                             .to_string());
    return result;
}

void from_text_ours(benchmark::State& state)
{
    std::vector<AString> all;
    for (const std::string& text : texts())
        all.push_back(text);
    std::size_t i = 0;
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(
            ATimecode(VideoFrequency_59_94Hz, DropframeFlag_df, all[i++ % all.size()]).get_nfields());
}
BENCHMARK(from_text_ours)->Name("TimecodeFromText/ours");

#ifdef HAVE_AVUTIL

constexpr AVRational ntsc{30000, 1001};

AVTimecode peer()
{
    AVTimecode result;
    av_timecode_init(&result, ntsc, AV_TIMECODE_FLAG_DROPFRAME, 0, nullptr);
    return result;
}

// It has no call that gives the four numbers: its text does, and the bits of equipment's timecode do.

void to_text_libavutil(benchmark::State& state)
{
    const AVTimecode t = peer();
    unsigned position = 0;
    char text[AV_TIMECODE_STR_SIZE];
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(av_timecode_make_string(&t, text, static_cast<int>(next(position) / 2)));
}
BENCHMARK(to_text_libavutil)->Name("TimecodeLabel/libavutil_text");
BENCHMARK(to_text_libavutil)->Name("TimecodeToText/libavutil");

void to_bits_libavutil(benchmark::State& state)
{
    const AVTimecode t = peer();
    unsigned position = 0;
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(
            av_timecode_get_smpte_from_framenum(&t, static_cast<int>(next(position) / 2)));
}
BENCHMARK(to_bits_libavutil)->Name("TimecodeLabel/libavutil_bits");

void from_text_libavutil(benchmark::State& state)
{
    std::vector<std::string> all;
    for (std::string text : texts()) {
        for (char& c : text)
            c = c == ',' ? ':' : c;
        text[8] = ';';
        all.push_back(text);
    }
    std::size_t i = 0;
    AVTimecode t;
    for ([[maybe_unused]] auto _ : state) {
        av_timecode_init_from_string(&t, ntsc, all[i++ % all.size()].c_str(), nullptr);
        benchmark::DoNotOptimize(t.start);
    }
}
BENCHMARK(from_text_libavutil)->Name("TimecodeFromText/libavutil");

#endif

} // namespace
