// What strings are made of: a chain of segments, counted by the strings that look at it.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/achar.h>
#include <skuan/foundation/aref.h>

/// 64 characters; every segment of a storage is full, except the last.
struct AStringSegment
{
    static constexpr unsigned capacity = 64;

    AStringSegment* next;
    AChar buf[capacity];
};

/// What strings share. The first segment lies inside, so that a short string is one block. A builder
/// fills it and lets go of it when it is finished; nothing writes to it afterwards.
struct AStringInternalStorageStruct
{
    AtomicUnsigned references;
    unsigned len;
    AStringSegment head;

    SKUAN_EXPORT static void destroy(AStringInternalStorageStruct* storage);
};

/// A place in a storage.
struct AStringSegmentPosition
{
    const AStringSegment* current_segment = nullptr;
    unsigned segment_offset = 0;    ///< index into `buf`
    unsigned absolute_position = 0; ///< from the start of the storage, not of the view
};
