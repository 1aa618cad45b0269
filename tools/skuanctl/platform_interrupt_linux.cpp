// A handler of a signal may do little more than set a flag.
#include <skuanctl/platform_interrupt.h>

#include <csignal>

namespace {

volatile std::sig_atomic_t is_pressed = 0;

void on_interrupt(int number)
{
    is_pressed = 1;
    std::signal(number, SIG_DFL);
}

} // namespace

void catch_interrupt()
{
    std::signal(SIGINT, on_interrupt);
}

bool is_interrupted()
{
    return is_pressed != 0;
}

void release_interrupt()
{
    std::signal(SIGINT, SIG_DFL);
}
