#include <skuan/markup/xml_parse2.h>

#include <skuan/foundation/alist.h>
#include <skuan/foundation/aprotect.h>
#include <skuan/foundation/assertfail.h>
#include <skuan/foundation/atomic.h>
#include <skuan/foundation/semaphore.h>
#include <skuan/markup/xml_parse.h>

#include <QThread>

#include <atomic>
#include <climits>
#include <utility>

namespace {

struct InputQueueEntry
{
    unsigned generation;
    QByteArray bytes; ///< empty in the entry that marks a reset
};

struct XMLQueueEntry
{
    unsigned generation;
    XMLTree tree; ///< null in an entry that stands for a parse error
};

enum class Held { nothing, tree, error };

} // namespace

struct XMLParseEngine2::Private
{
    explicit Private(unsigned bufsize) : engine(bufsize) {}

    // Shared by both sides.
    AtomicUnsigned flow_begun;
    AtomicUnsigned generation;
    AProtect<AList<InputQueueEntry>> input;
    std::atomic<unsigned> backlog{0}; ///< bytes in `input`; changed under its lock
    BinarySemaphore wake{false};      ///< given when there is `input`, or the end
    std::atomic<bool> ending{false};
    AProtect<AList<XMLQueueEntry>> output;

    // The parser thread's, once input has begun.
    XMLParseEngine engine;
    bool error_sent = false;

    // The consumer's.
    AList<XMLQueueEntry> pending;
    Held held = Held::nothing;
    XMLTree held_tree;
};

XMLParseEngine2::XMLParseEngine2(unsigned bufsize) : d(std::make_unique<Private>(bufsize))
{
    // A thread without an event loop: a semaphore wakes it in half the time that a posted event takes.
    QThread* thread = QThread::create([this] {
        while (d->wake.semTake() && !d->ending)
            process_input();
    });
    moveToThread(thread);
    connect(this, &XMLParseEngine2::wake_thread, this, &XMLParseEngine2::wake_thread_action,
            Qt::DirectConnection);
    thread->start(QThread::InheritPriority);
}

XMLParseEngine2::~XMLParseEngine2()
{
    d->ending = true;
    d->wake.semGive();
    QThread* own = thread();
    own->wait();
    delete own;
}

void XMLParseEngine2::config_tag(const char* name)
{
    if (SKUAN_CHECK(d->flow_begun == 0))
        d->engine.config_tag(name);
}

void XMLParseEngine2::input_bytes(const QByteArray& bytes)
{
    if (bytes.isEmpty())
        return;
    d->flow_begun = 1;
    {
        const auto input = d->input.lock();
        input->push_back({d->generation.get(), bytes});
        d->backlog += static_cast<unsigned>(bytes.size());
    }
    Q_EMIT wake_thread();
}

void XMLParseEngine2::input_bytes(unsigned byte_count, const void* data)
{
    if (SKUAN_CHECK(byte_count < INT_MAX))
        input_bytes(QByteArray(static_cast<const char*>(data), static_cast<int>(byte_count)));
}

unsigned XMLParseEngine2::backlog() const
{
    return d->backlog;
}

void XMLParseEngine2::wake_thread_action()
{
    d->wake.semGive();
}

// The parser thread.

void XMLParseEngine2::process_input()
{
    AList<InputQueueEntry> batch;
    {
        const auto input = d->input.lock();
        std::swap(*input, batch);
        d->backlog = 0;
    }
    bool any = false;
    for (const auto* entry = batch.first_entry(); entry; entry = entry->next)
        any |= process_input(entry->value.generation, entry->value.bytes);
    if (any)
        Q_EMIT parse_result_available();
}

bool XMLParseEngine2::process_input(unsigned generation, const QByteArray& bytes)
{
    if (generation != d->generation.get())
        return false;
    if (bytes.isEmpty()) {
        d->error_sent = false;
        d->engine.reset();
        return false;
    }
    if (d->error_sent)
        return false; // told already, and everything up to the next reset is thrown away
    const char* rest = bytes.constData();
    auto left = static_cast<unsigned>(bytes.size());
    for (bool produced = false;;) {
        XMLTree tree = d->engine.get_xml();
        if (!tree.is_null()) {
            queue_output(generation, std::move(tree));
            produced = true;
            continue;
        }
        if (d->engine.parse_error()) {
            queue_error(generation);
            return true;
        }
        if (left == 0)
            return produced;
        const unsigned taken = d->engine.input_bytes(left, rest);
        if (taken == 0) { // the message in hand is longer than the buffer
            queue_error(generation);
            return true;
        }
        rest += taken;
        left -= taken;
    }
}

void XMLParseEngine2::queue_output(unsigned generation, XMLTree tree)
{
    d->output.lock()->push_back({generation, std::move(tree)});
}

void XMLParseEngine2::queue_error(unsigned generation)
{
    queue_output(generation, XMLTree());
    d->error_sent = true;
}

// The consumer's thread.

XMLTree XMLParseEngine2::get_xml()
{
    process_output();
    if (d->held != Held::tree)
        return XMLTree();
    d->held = Held::nothing;
    return std::move(d->held_tree);
}

bool XMLParseEngine2::parse_error()
{
    process_output();
    return d->held == Held::error;
}

// The thread is not woken: the mark is met when the next input is.
void XMLParseEngine2::reset()
{
    d->flow_begun = 1;
    {
        // Raised under the lock, so that no input of the new generation stands before its mark.
        auto input = d->input.lock();
        const unsigned generation = ++d->generation;
        while (!input->empty() && input->front().generation != generation) {
            d->backlog -= static_cast<unsigned>(input->front().bytes.size());
            input->pop_front();
        }
        input->push_back({generation, QByteArray()});
    }
    expire_output_pending();
    d->held = Held::nothing;
    d->held_tree = XMLTree();
}

void XMLParseEngine2::process_output()
{
    if (d->held != Held::nothing)
        return;
    expire_output_pending();
    if (d->pending.empty())
        return;
    d->held_tree = std::move(d->pending.front().tree);
    d->pending.pop_front();
    d->held = d->held_tree.is_null() ? Held::error : Held::tree;
}

void XMLParseEngine2::expire_output_pending()
{
    take_output_queue();
    const unsigned generation = d->generation.get();
    while (!d->pending.empty() && d->pending.front().generation != generation)
        d->pending.pop_front();
}

void XMLParseEngine2::take_output_queue()
{
    d->pending.splice_back(*d->output.lock());
}
