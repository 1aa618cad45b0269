// A function that runs when the last of a set of copies lets go of it.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/afunction.h>
#include <skuan/foundation/aref.h>

#include <atomic>

/// Holds a share of a function to be run at the end, or nothing. The function runs once, on the
/// thread that gives up the last share. Copies belong to any thread; one and the same object may be
/// released by several threads at once, but not copied from while another thread releases it.
class SKUAN_EXPORT AutoRelease
{
public:
    class C; ///< what the copies share

    AutoRelease() = default;
    explicit AutoRelease(AFunction at_end);
    AutoRelease(const AutoRelease& other);
    AutoRelease& operator=(const AutoRelease& other);
    ~AutoRelease() { release(); }

    /// Gives up this copy's share at once; nothing when it holds none.
    void release();

private:
    static C* share(C* shared);

    std::atomic<C*> shared_{nullptr};
};

/// Runs its function when it is destroyed.
class SKUAN_EXPORT AutoRelease::C : public AReferenced
{
public:
    explicit C(AFunction at_end) : at_end_(at_end) {}
    C(const C&) = delete;
    C& operator=(const C&) = delete;
    ~C() override;

private:
    AFunction at_end_;
};
