// Two ways to count references inside the object itself: AReference for polymorphic objects, which
// decide how they end, and ARef for small records without a virtual table.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/assertfail.h>
#include <skuan/foundation/atomic.h>

#include <utility>

/// A polymorphic object that counts its references: 0 after construction, and a copy starts its own
/// count. The object ends when the count comes back to 0. Any thread.
class SKUAN_EXPORT AReferenced
{
public:
    AReferenced() = default;
    AReferenced(const AReferenced&) {}
    AReferenced& operator=(const AReferenced&) { return *this; }
    virtual ~AReferenced();

    void add_reference() { ++count_; }
    void release_reference()
    {
        if (--count_ == 0)
            full_release();
    }

protected:
    /// What happens when the last reference has gone: deletes the object. Override it to pool the
    /// object or to hand its end to another thread.
    virtual void full_release();

private:
    AtomicUnsigned count_;
};

/// Holds one reference to a `T` derived from AReferenced, or nothing.
template <typename T>
class AReference
{
public:
    AReference() = default;
    AReference(T* object) : object_(object) { add(); }
    AReference(const AReference& other) : AReference(other.object_) {}
    AReference(AReference&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ~AReference() { drop(); }
    AReference& operator=(AReference other) noexcept
    {
        std::swap(object_, other.object_);
        return *this;
    }

    T* get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }
    bool operator==(const AReference& other) const { return object_ == other.object_; }
    bool operator!=(const AReference& other) const { return object_ != other.object_; }

private:
    void add()
    {
        if (object_)
            object_->add_reference();
    }
    void drop()
    {
        if (object_)
            object_->release_reference();
    }

    T* object_ = nullptr;
};

/// Holds one reference to a `T` without a virtual table, or nothing. `T` has as its first member
/// `AtomicUnsigned references`, which is 1 when the object is made, and a static `destroy(T*)` that
/// is called when the last holder lets go.
template <typename T>
class ARef
{
public:
    /// A count that is never changed, so that an object which lives as long as the process can be
    /// shared by all threads without their fighting over one word.
    static constexpr unsigned permanent = 0x80000000u;

    ARef() = default;
    ARef(std::nullptr_t) {}
    /// Takes over the reference with which a new object is born.
    static ARef adopt(T* object)
    {
        ARef holder;
        holder.object_ = object;
        return holder;
    }
    /// Takes a further reference, while the caller knows of a holder that stays. An object whose count is
    /// 0 is ending and cannot be held any more: the holder stays empty.
    explicit ARef(T* ref) : object_(ref)
    {
        if (ref && !increase_reference(ref)) {
            assertfail(__FILE__, __LINE__, "ref->increase_reference ()");
            object_ = nullptr;
        }
    }
    ARef(const ARef& other) : ARef(other.object_) {}
    ARef(ARef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ~ARef() { drop(); }
    ARef& operator=(const ARef& other)
    {
        ARef(other).swap(*this);
        return *this;
    }
    ARef& operator=(ARef&& other) noexcept
    {
        ARef(std::move(other)).swap(*this);
        return *this;
    }
    void swap(ARef& other) noexcept { std::swap(object_, other.object_); }

    T* get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }
    bool operator==(const ARef& other) const { return object_ == other.object_; }
    bool operator!=(const ARef& other) const { return object_ != other.object_; }

private:
    static bool increase_reference(T* object)
    {
        for (unsigned now = object->references.get(); now != 0; now = object->references.get()) {
            if (now >= permanent || object->references.cas(now, now + 1))
                return true;
        }
        return false;
    }
    void drop()
    {
        if (!object_)
            return;
        // The sole holder needs no locked subtraction: nobody else can reach the object any more.
        const unsigned now = object_->references.get();
        if (now >= permanent)
            return;
        if (now == 1 || --object_->references == 0)
            T::destroy(object_);
    }

    T* object_ = nullptr;
};
