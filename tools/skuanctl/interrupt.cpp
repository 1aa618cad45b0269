// A timer looks often enough for a hand at a key.
#include <skuanctl/interrupt.h>
#include <skuanctl/platform_interrupt.h>

Interrupt::Interrupt()
{
    connect(&look_, &QTimer::timeout, this, [this] {
        if (!is_interrupted())
            return;
        look_.stop();
        Q_EMIT pressed();
    });
    look_.start(50);
    catch_interrupt();
}

Interrupt::~Interrupt()
{
    release_interrupt();
}
