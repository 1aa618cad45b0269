// Storages: how they are allocated, filled and freed.
#include <skuan/foundation/astring_builder.h>
#include <skuan/foundation/block_pool.h>
#include <skuan/foundation/text_kernels.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace {

using StoragePool = skuan::BlockPool<sizeof(AStringInternalStorageStruct)>;
using SegmentPool = skuan::BlockPool<sizeof(AStringSegment)>;

/// Everything but the characters, which are written before they are read.
AStringInternalStorageStruct* new_storage()
{
    void* const block = StoragePool::take();
    if (!block) {
        hardassertfail(__FILE__, __LINE__, "storage != 0");
        return nullptr;
    }
    auto* const storage = new (block) AStringInternalStorageStruct;
    storage->references = 1;
    storage->len = 0;
    storage->head.next = nullptr;
    return storage;
}

AStringSegment* new_segment()
{
    void* const block = SegmentPool::take();
    if (!block) {
        hardassertfail(__FILE__, __LINE__, "segment != 0");
        return nullptr;
    }
    auto* const segment = new (block) AStringSegment;
    segment->next = nullptr;
    return segment;
}

constexpr unsigned longest = ~0u - 1; // all ones stands for "to the end"

} // namespace

void AStringInternalStorageStruct::destroy(AStringInternalStorageStruct* storage)
{
    for (AStringSegment* segment = storage->head.next; segment;)
        SegmentPool::give(std::exchange(segment, segment->next));
    StoragePool::give(storage);
}

namespace skuan {

bool AStringBuilder::grow()
{
    if (!storage_) {
        storage_ = new_storage();
        if (!storage_)
            return false;
        tail_ = &storage_->head;
    } else {
        if (!SKUAN_CHECK(length() <= longest - AStringSegment::capacity))
            return false;
        AStringSegment* const segment = new_segment();
        if (!segment)
            return false;
        full_ += AStringSegment::capacity;
        tail_->next = segment;
        tail_ = segment;
    }
    begin_ = at_ = tail_->buf;
    end_ = begin_ + AStringSegment::capacity;
    return true;
}

void AStringBuilder::append(const AChar* text, unsigned n)
{
    while (n != 0 && (at_ != end_ || grow())) {
        const unsigned part = std::min(n, static_cast<unsigned>(end_ - at_));
        std::memcpy(at_, text, part * sizeof(AChar));
        at_ += part;
        text += part;
        n -= part;
    }
}

void AStringBuilder::append(const AString& text)
{
    text.for_each_run([this](const AChar* run, unsigned n) { append(run, n); });
}

void AStringBuilder::append(AChar c, unsigned count)
{
    while (count != 0 && (at_ != end_ || grow())) {
        const unsigned part = std::min(count, static_cast<unsigned>(end_ - at_));
        at_ = std::fill_n(at_, part, c);
        count -= part;
    }
}

bool AStringBuilder::append_utf8(const char* text, unsigned n)
{
    while (n != 0) {
        if (at_ == end_ && !grow())
            return false;
        unsigned used = widen_ascii(text, std::min(n, static_cast<unsigned>(end_ - at_)), at_);
        at_ += used;
        if (used == 0) {
            if (!AChar::consume_utf8(text, n, at_, &used))
                return false;
            ++at_;
        }
        text += used;
        n -= used;
    }
    return true;
}

void AStringBuilder::append_latin1(const char* text, unsigned n)
{
    while (n != 0 && (at_ != end_ || grow())) {
        const unsigned part = std::min(n, static_cast<unsigned>(end_ - at_));
        widen_latin1(text, part, at_);
        at_ += part;
        text += part;
        n -= part;
    }
}

/// Hands the storage over, or null when there are no characters, and begins anew.
AStringInternalStorageStruct* AStringBuilder::release()
{
    if (length() == 0) {
        clear();
        return nullptr;
    }
    AStringInternalStorageStruct* const storage = storage_;
    storage->len = length();
    storage_ = nullptr;
    begin_ = at_ = end_ = nullptr;
    full_ = 0;
    return storage;
}

AString AStringBuilder::finish()
{
    AStringInternalStorageStruct* const storage = release();
    return storage ? AString(AString::Storage::adopt(storage), 0, storage->len) : AString();
}

AString AStringBuilder::finish_permanently()
{
    AStringInternalStorageStruct* const storage = release();
    if (!storage)
        return AString();
    storage->references = AString::Storage::permanent;
    return AString(AString::Storage::adopt(storage), 0, storage->len);
}

void AStringBuilder::clear()
{
    if (storage_)
        AStringInternalStorageStruct::destroy(storage_);
    storage_ = nullptr;
    begin_ = at_ = end_ = nullptr;
    full_ = 0;
}

bool string_from_utf8(const char* bytes, unsigned n, AString* out)
{
    AStringBuilder builder;
    if (!builder.append_utf8(bytes, n))
        return false;
    *out = builder.finish();
    return true;
}

AString permanent_string(const char* ascii, unsigned n)
{
    AStringBuilder builder;
    builder.append_latin1(ascii, n);
    return builder.finish_permanently();
}

} // namespace skuan
