// The queue against its peer: in and out on one thread (time per value), and between two (per million).
#include <benchmark/benchmark.h>

#include <skuan/foundation/atomic_vqueue.h>

#ifdef HAVE_BOOST
#include <boost/lockfree/queue.hpp>
#endif

#include <thread>

namespace {

struct Ours
{
    AtomicVQueue queue;

    void put(void* value) { queue.enqueue(value); }
    bool get() { return queue.dequeue() != nullptr; }
};

#ifdef HAVE_BOOST
struct Boost
{
    boost::lockfree::queue<void*> queue{1024};

    void put(void* value) { queue.push(value); }
    bool get()
    {
        void* value;
        return queue.pop(value);
    }
};
#endif

int payload;

/// In and out, one value at a time.
template <typename Queue>
void one_thread(benchmark::State& state)
{
    Queue queue;
    for (auto _ : state) {
        queue.put(&payload);
        benchmark::DoNotOptimize(queue.get());
    }
    state.SetItemsProcessed(state.iterations());
}

/// A batch from a producer to a consumer that polls, each on a thread of its own.
template <typename Queue>
void two_threads(benchmark::State& state)
{
    constexpr int batch = 1'000'000;
    for (auto _ : state) {
        Queue queue;
        std::thread producer([&] {
            for (int i = 0; i < batch; ++i)
                queue.put(&payload);
        });
        for (int got = 0; got < batch;)
            got += queue.get();
        producer.join();
    }
    state.SetItemsProcessed(state.iterations() * batch);
}

BENCHMARK(one_thread<Ours>)->Name("Queue/ours/one_thread");
BENCHMARK(two_threads<Ours>)->Name("Queue/ours/two_threads")->UseRealTime()->Unit(benchmark::kMillisecond);
#ifdef HAVE_BOOST
BENCHMARK(one_thread<Boost>)->Name("Queue/boost/one_thread");
BENCHMARK(two_threads<Boost>)->Name("Queue/boost/two_threads")->UseRealTime()->Unit(benchmark::kMillisecond);
#endif

} // namespace
