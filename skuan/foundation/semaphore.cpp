#include <skuan/foundation/semaphore.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/platform/semaphore.h>

#include <algorithm>

using System = skuan::platform::Semaphore;

static_assert(CountingSemaphore::no_limit == System::no_limit);

CountingSemaphore::CountingSemaphore(unsigned initial, unsigned maximum)
    : CountingSemaphore(initial, maximum, WhenFull::assertion)
{
}

CountingSemaphore::CountingSemaphore(unsigned initial, unsigned maximum, WhenFull when_full)
    : when_full_(when_full)
{
    if (!SKUAN_CHECK(maximum >= 1 && maximum <= System::highest))
        maximum = std::clamp(maximum, 1u, System::highest);
    if (!SKUAN_CHECK(initial <= maximum))
        initial = maximum;
    semaphore_ = std::make_unique<System>(initial, maximum);
}

CountingSemaphore::~CountingSemaphore() = default;

void CountingSemaphore::semGive(unsigned n)
{
    // Not even the two words of this object are read after the give: its taker may destroy them.
    const bool full_is_fine = when_full_ == WhenFull::accept;
    const System::Give result = semaphore_->give(n);
    (void)SKUAN_CHECK(result == System::Give::given || (result == System::Give::too_many && full_is_fine));
}

bool CountingSemaphore::semTake(unsigned ms)
{
    const System::Take result = semaphore_->take(ms);
    (void)SKUAN_CHECK(result == System::Take::taken || (result == System::Take::timed_out && ms != no_limit));
    return result == System::Take::taken;
}

void CountingSemaphore::semTakeN(unsigned n)
{
    for (; n > 0; --n)
        semTake();
}
