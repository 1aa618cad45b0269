#include <skuan/foundation/auto_release.h>

AutoRelease::C::~C()
{
    at_end_.run();
}

AutoRelease::AutoRelease(AFunction at_end) : shared_(share(new C(at_end))) {}

AutoRelease::AutoRelease(const AutoRelease& other) : shared_(share(other.shared_)) {}

AutoRelease& AutoRelease::operator=(const AutoRelease& other)
{
    // The new share first: with an assignment to itself the last one must not go in between.
    if (C* const old = shared_.exchange(share(other.shared_)))
        old->release_reference();
    return *this;
}

void AutoRelease::release()
{
    if (C* const old = shared_.exchange(nullptr))
        old->release_reference();
}

AutoRelease::C* AutoRelease::share(C* shared)
{
    if (shared)
        shared->add_reference();
    return shared;
}
