// POSIX threads with the kernel's real-time and nice levels.
#include <skuan/platform/thread.h>

#include <algorithm>
#include <link.h>
#include <memory>
#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace skuan::platform {
namespace {

/// The C library carves the thread-local storage of all loaded modules out of a new thread's stack.
std::size_t thread_local_bytes()
{
    std::size_t total = 0;
    dl_iterate_phdr(
        [](dl_phdr_info* module, std::size_t, void* sum) {
            for (int i = 0; i < module->dlpi_phnum; ++i) {
                if (module->dlpi_phdr[i].p_type == PT_TLS)
                    *static_cast<std::size_t*>(sum) +=
                        module->dlpi_phdr[i].p_memsz + module->dlpi_phdr[i].p_align;
            }
            return 0;
        },
        &total);
    return total;
}

/// Room for the thread's own bookkeeping, its guard page, signal frames and the wider frames of
/// instrumented builds. Address space only: pages that nobody touches cost no memory.
constexpr std::size_t margin = 256 * 1024;

std::size_t whole_pages(std::size_t bytes)
{
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return (bytes + page - 1) / page * page;
}

/// What a new thread needs to begin, shared with it so that either may end first.
struct Entry
{
    void (*run)(void*);
    void* argument;
};

} // namespace

struct Thread::State
{
    pthread_t handle;
};

bool set_current_thread_priority(int priority)
{
    priority = std::clamp(priority, lowest_priority, highest_priority);
    sched_param level{};
    if (priority > 0) {
        level.sched_priority = sched_get_priority_min(SCHED_FIFO) + priority;
        return pthread_setschedparam(pthread_self(), SCHED_FIFO, &level) == 0;
    }
    // Here a nice level belongs to the single thread, named by its kernel number.
    const auto self = static_cast<id_t>(syscall(SYS_gettid));
    return pthread_setschedparam(pthread_self(), SCHED_OTHER, &level) == 0 &&
           setpriority(PRIO_PROCESS, self, -priority) == 0;
}

Thread::Thread() = default;

Thread::~Thread()
{
    join();
}

bool Thread::start(void (*run)(void*), void* argument, std::size_t stack_bytes)
{
    join();
    if (!run)
        return false;
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0)
        return false;
    auto state = std::make_unique<State>();
    auto entry = std::make_unique<Entry>(Entry{run, argument});
    const std::size_t stack = whole_pages(stack_bytes + thread_local_bytes() + margin);
    const auto body = [](void* given) -> void* {
        const std::unique_ptr<Entry> own(static_cast<Entry*>(given));
        own->run(own->argument);
        return nullptr;
    };
    const bool started = pthread_attr_setstacksize(&attributes, stack) == 0 &&
                         pthread_create(&state->handle, &attributes, body, entry.get()) == 0;
    pthread_attr_destroy(&attributes);
    if (started) {
        entry.release(); // the thread's from here on
        state_ = std::move(state);
    }
    return started;
}

void Thread::join()
{
    if (!state_)
        return;
    if (pthread_equal(state_->handle, pthread_self()))
        pthread_detach(state_->handle);
    else
        pthread_join(state_->handle, nullptr);
    state_.reset();
}

} // namespace skuan::platform
