// A QObject that is handed back to its owner, not deleted, when nobody refers to it any more.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/atomic.h>

#include <QObject>

/// Counts its references: 0 after construction. When the count comes back to 0 it says so by
/// `zero_references`; what becomes of the object is its owner's decision. Fits AReference. Any thread
/// may add and release.
///
/// The owner connects the signal to its own thread, looks there at `releasable()` again, since a new
/// reference may have come meanwhile, and only there reuses or deletes the object.
class SKUAN_EXPORT AReusableRefObject : public QObject
{
    Q_OBJECT

public:
    explicit AReusableRefObject(QObject* parent = nullptr) : QObject(parent) {}

    void add_reference() { ++references_; }
    void release_reference()
    {
        if (--references_ == 0)
            Q_EMIT zero_references(this);
    }
    /// True while nobody holds a reference.
    bool releasable() const { return references_ == 0; }

Q_SIGNALS:
    /// Emitted on the thread that released the last reference.
    void zero_references(AReusableRefObject* object);

private:
    AtomicUnsigned references_;
};
