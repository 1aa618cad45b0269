// Here a thread's data lie in a block that goes with the thread itself.
#include <skuan/platform/thread_pointer.h>

namespace skuan::platform {
namespace {

// Initial-exec: one load and one offset instead of a call. The words fit the room that the loader keeps for
// libraries that are loaded late.
constinit thread_local void* pointers[thread_pointers] __attribute__((tls_model("initial-exec"))) = {};

struct End
{
    const ThreadPointer which;
    void (*const at_end)(void*);

    ~End()
    {
        if (void* const value = thread_pointer(which))
            at_end(value);
    }
};

} // namespace

void* thread_pointer(ThreadPointer which) noexcept
{
    return pointers[unsigned(which)];
}

bool set_thread_pointer(ThreadPointer which, void* value, void (*at_end)(void*)) noexcept
{
    pointers[unsigned(which)] = value;
    if (which == ThreadPointer::blocks)
        static thread_local const End blocks{which, at_end};
    else
        static thread_local const End nodes{which, at_end};
    return true;
}

} // namespace skuan::platform
