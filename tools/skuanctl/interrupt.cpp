// A handler may do little more than set a flag; a timer looks at it often enough for a hand at a key.
#include <skuanctl/interrupt.h>

#include <csignal>

namespace {

volatile std::sig_atomic_t is_pressed = 0;

void on_interrupt(int number)
{
    is_pressed = 1;
    std::signal(number, SIG_DFL);
}

} // namespace

Interrupt::Interrupt()
{
    connect(&look_, &QTimer::timeout, this, [this] {
        if (!is_pressed)
            return;
        look_.stop();
        Q_EMIT pressed();
    });
    look_.start(50);
    std::signal(SIGINT, on_interrupt);
}

Interrupt::~Interrupt()
{
    std::signal(SIGINT, SIG_DFL);
}
