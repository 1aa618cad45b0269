// Tells the thread sanitizer what Qt's locks, threads and events order. Qt comes uninstrumented from
// the distribution, so that without this every use of them looks like a race.
//
// Built into every library and program of the tsan preset. The linker's --wrap (SkuanTsan.cmake) leads
// each call below through the function named __wrap_ here; __real_ is Qt's own. Events that Qt posts
// itself, queued signals above all, never pass the linker: Qt's hooks for signals and events cover
// them with one order for all, which hides races between threads that also exchange events.
#include <QDeadlineTimer>
#include <QObject>
#include <QtGlobal>
#include <qnamespace.h>

#include <sanitizer/tsan_interface.h>

/// What all events and signals release and acquire; one for all modules of a program.
extern "C" __attribute__((visibility("default"), weak)) char skuan_tsan_events;
char skuan_tsan_events = 0;

namespace {

void* event_order()
{
    return &skuan_tsan_events;
}

} // namespace

#define JOINED(a, b) a##b
#define REAL(symbol) JOINED(__real_, symbol)
#define WRAPPED(symbol) JOINED(__wrap_, symbol)

// Around the real call: nothing, or an acquire or release of what the first argument points at.
#define BEFORE_ACQUIRES(self)
#define BEFORE_RELEASES(self) __tsan_release(self);
#define BEFORE_SWAPS(self) __tsan_release(self);
#define AFTER_ACQUIRES(self) __tsan_acquire(self);
#define AFTER_RELEASES(self)
#define AFTER_SWAPS(self) __tsan_acquire(self);

#define WRAP(effect, result, symbol, parameters, arguments)                                                  \
    extern "C" result REAL(symbol) parameters;                                                               \
    extern "C" result WRAPPED(symbol) parameters                                                             \
    {                                                                                                        \
        BEFORE_##effect(self) result given = REAL(symbol) arguments;                                         \
        AFTER_##effect(self) return given;                                                                   \
    }
#define WRAP_VOID(effect, symbol, parameters, arguments)                                                     \
    extern "C" void REAL(symbol) parameters;                                                                 \
    extern "C" void WRAPPED(symbol) parameters                                                               \
    {                                                                                                        \
        BEFORE_##effect(self) REAL(symbol) arguments;                                                        \
        AFTER_##effect(self)                                                                                 \
    }
/// A post orders everything posted before it with everything delivered after it.
#define WRAP_POST(result, symbol, parameters, arguments)                                                     \
    extern "C" result REAL(symbol) parameters;                                                               \
    extern "C" result WRAPPED(symbol) parameters                                                             \
    {                                                                                                        \
        __tsan_release(event_order());                                                                       \
        return REAL(symbol) arguments;                                                                       \
    }
/// A wait for a thread: its last act is the signal finished().
#define WRAP_JOIN(symbol, parameters, arguments)                                                             \
    extern "C" bool REAL(symbol) parameters;                                                                 \
    extern "C" bool WRAPPED(symbol) parameters                                                               \
    {                                                                                                        \
        const bool ended = REAL(symbol) arguments;                                                           \
        __tsan_acquire(event_order());                                                                       \
        return ended;                                                                                        \
    }

// A failed try acquires as well: it hides a little, and saves a second kind of wrapper.
WRAP_VOID(ACQUIRES, _ZN6QMutex4lockEv, (void* self), (self))
WRAP_VOID(RELEASES, _ZN6QMutex6unlockEv, (void* self), (self))
WRAP(ACQUIRES, bool, _ZN6QMutex7tryLockEi, (void* self, int ms), (self, ms))
WRAP_VOID(ACQUIRES, _ZN14QReadWriteLock11lockForReadEv, (void* self), (self))
WRAP_VOID(ACQUIRES, _ZN14QReadWriteLock12lockForWriteEv, (void* self), (self))
WRAP(ACQUIRES, bool, _ZN14QReadWriteLock14tryLockForReadEv, (void* self), (self))
WRAP(ACQUIRES, bool, _ZN14QReadWriteLock14tryLockForReadEi, (void* self, int ms), (self, ms))
WRAP(ACQUIRES, bool, _ZN14QReadWriteLock15tryLockForWriteEv, (void* self), (self))
WRAP(ACQUIRES, bool, _ZN14QReadWriteLock15tryLockForWriteEi, (void* self, int ms), (self, ms))
WRAP_VOID(RELEASES, _ZN14QReadWriteLock6unlockEv, (void* self), (self))
WRAP_VOID(ACQUIRES, _ZN10QSemaphore7acquireEi, (void* self, int n), (self, n))
WRAP(ACQUIRES, bool, _ZN10QSemaphore10tryAcquireEi, (void* self, int n), (self, n))
WRAP(ACQUIRES, bool, _ZN10QSemaphore10tryAcquireEii, (void* self, int n, int ms), (self, n, ms))
WRAP_VOID(RELEASES, _ZN10QSemaphore7releaseEi, (void* self, int n), (self, n))
// A condition's wait gives its mutex, the first argument after the condition, away and takes it again.
WRAP(SWAPS, bool, _ZN14QWaitCondition4waitEP6QMutexm, (void* condition, void* self, unsigned long ms),
     (condition, self, ms))
WRAP(SWAPS, bool, _ZN14QWaitCondition4waitEP6QMutex14QDeadlineTimer,
     (void* condition, void* self, QDeadlineTimer end), (condition, self, end))

WRAP_JOIN(_ZN7QThread4waitEm, (void* self, unsigned long ms), (self, ms))
WRAP_JOIN(_ZN7QThread4waitE14QDeadlineTimer, (void* self, QDeadlineTimer end), (self, end))
WRAP_POST(void, _ZN7QThread4quitEv, (void* self), (self))
WRAP_POST(void, _ZN7QThread4exitEi, (void* self, int code), (self, code))
WRAP_POST(void, _ZN7QObject11deleteLaterEv, (void* self), (self))
WRAP_POST(void, _ZN16QCoreApplication9postEventEP7QObjectP6QEventi, (void* to, void* event, int priority),
          (to, event, priority))
namespace {

/// Calls another slot, in order with its caller, who may be waiting for it.
struct OrderedSlot : QtPrivate::QSlotObjectBase
{
    QtPrivate::QSlotObjectBase* const inner;

    explicit OrderedSlot(QtPrivate::QSlotObjectBase* slot) : QSlotObjectBase(&act), inner(slot) {}

    static void act(int what, QSlotObjectBase* base, QObject* receiver, void** arguments, bool*)
    {
        auto* const self = static_cast<OrderedSlot*>(base);
        __tsan_acquire(event_order());
        if (what == Call)
            self->inner->call(receiver, arguments);
        if (what == Destroy) {
            self->inner->destroyIfLastRef();
            delete self;
        }
        __tsan_release(event_order());
    }
};

} // namespace

#define INVOKE                                                                                               \
    _ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv

extern "C" bool REAL(INVOKE)(QObject* to, QtPrivate::QSlotObjectBase* slot, int type, void* result);
extern "C" bool WRAPPED(INVOKE)(QObject* to, QtPrivate::QSlotObjectBase* slot, int type, void* result)
{
    auto* const ordered = new OrderedSlot(slot);
    __tsan_release(event_order());
    const bool done = REAL(INVOKE)(to, ordered, type, result);
    __tsan_acquire(event_order());
    return done;
}

/// As Qt declares it in a private header.
struct QSignalSpyCallbackSet
{
    void (*signal_begin_callback)(QObject*, int, void**);
    void (*slot_begin_callback)(QObject*, int, void**);
    void (*signal_end_callback)(QObject*, int);
    void (*slot_end_callback)(QObject*, int);
};
Q_CORE_EXPORT void qt_register_signal_spy_callbacks(QSignalSpyCallbackSet* callbacks);

namespace {

void signal_begins(QObject*, int, void**)
{
    __tsan_release(event_order());
}

void slot_begins(QObject*, int, void**)
{
    __tsan_acquire(event_order());
}

// The ends matter to a signal that waits for its slot on another thread.
void slot_ends(QObject*, int)
{
    __tsan_release(event_order());
}

void signal_ends(QObject*, int)
{
    __tsan_acquire(event_order());
}

bool event_arrives(void**)
{
    __tsan_acquire(event_order());
    return false; // not handled here: let it go on
}

QSignalSpyCallbackSet spies = {signal_begins, slot_begins, signal_ends, slot_ends};

const bool hooked = [] {
    qt_register_signal_spy_callbacks(&spies);
    return QInternal::registerCallback(QInternal::EventNotifyCallback, event_arrives);
}();

} // namespace

#define SANITIZER_HOOK extern "C" __attribute__((used, visibility("default"), weak)) const char*

// Qt's and the C libraries' own accesses are beyond judging. The long history is for the suppression
// below, which has to find the stack of an older access.
SANITIZER_HOOK __tsan_default_options()
{
    return "ignore_noninstrumented_modules=1:history_size=7:second_deadlock_stack=1";
}

// A queued signal copies its arguments after the hook above and before Qt's own lock, which nothing here
// can see.
SANITIZER_HOOK __tsan_default_suppressions()
{
    return "race:QtMetaTypePrivate::QMetaTypeFunctionHelper\n";
}
