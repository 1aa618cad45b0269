// The system's semaphore object.
#include <skuan/platform/semaphore.h>

#include <skuan/platform/clock.h>

#include <windows.h>

namespace skuan::platform {

struct Semaphore::State
{
    HANDLE handle;

    ~State() { CloseHandle(handle); }
};

Semaphore::Semaphore(unsigned initial, unsigned maximum)
{
    if (maximum < 1 || maximum > highest || initial > maximum)
        return;
    if (HANDLE handle = CreateSemaphoreW(nullptr, LONG(initial), LONG(maximum), nullptr))
        state_.reset(new State{handle});
}

Semaphore::~Semaphore() = default;

Semaphore::Give Semaphore::give(unsigned n)
{
    if (!state_)
        return Give::failed;
    if (n == 0)
        return Give::given; // the system takes 0 for a mistake
    if (n > highest)
        return Give::too_many;
    if (ReleaseSemaphore(state_->handle, LONG(n), nullptr))
        return Give::given;
    if (GetLastError() != ERROR_TOO_MANY_POSTS)
        return Give::failed;
    SetLastError(ERROR_SUCCESS);
    return Give::too_many;
}

Semaphore::Take Semaphore::take(unsigned ms)
{
    if (!state_)
        return Take::failed;
    // By the exact clock: the system's count of milliseconds moves in steps of 16.
    const std::int64_t deadline = monotonic_ns() + std::int64_t{ms} * 1'000'000;
    DWORD wait = ms == no_limit ? INFINITE : ms;
    for (;;) {
        switch (WaitForSingleObjectEx(state_->handle, wait, TRUE)) {
        case WAIT_OBJECT_0:
            return Take::taken;
        case WAIT_TIMEOUT:
            return Take::timed_out;
        case WAIT_IO_COMPLETION: // a completion routine ran on this thread; go on waiting
            break;
        default:
            return Take::failed;
        }
        if (ms == no_limit)
            continue;
        const std::int64_t left = deadline - monotonic_ns();
        if (left < 0)
            return Take::timed_out;
        wait = DWORD((left + 999'999) / 1'000'000);
    }
}

} // namespace skuan::platform
