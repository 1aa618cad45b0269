// Two stages: an answer waits for its time, then for its company.
#include <simulator/answer_queue_p.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace simulator {

AnswerQueue::AnswerQueue(std::function<void(const Batch&)> out, unsigned seed)
    : out_(std::move(out)), random_(seed)
{
    for (QTimer* timer : {&due_timer_, &gather_timer_}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    connect(&due_timer_, &QTimer::timeout, this, [this] { pump(); });
    connect(&gather_timer_, &QTimer::timeout, this, [this] { leave(gathered_.size()); });
}

void AnswerQueue::set_faults(const Faults& faults)
{
    const bool delay_changed = faults.delay != faults_.delay;
    faults_ = faults;
    if (delay_changed) {
        due_timer_.stop();
        for (Waiting& waiting : waiting_)
            waiting.due = Clock::now() + faults_.delay;
    }
    if (faults_.hold)
        gather_timer_.stop();
    pump();
}

void AnswerQueue::push(QByteArray answer)
{
    bytes_ += answer.size();
    waiting_.push_back(
        {faults_.delay.count() > 0 ? Clock::now() + faults_.delay : Clock::time_point(), std::move(answer)});
    pump();
}

void AnswerQueue::clear()
{
    waiting_.clear();
    gathered_.clear();
    bytes_ = 0;
    due_timer_.stop();
    gather_timer_.stop();
}

void AnswerQueue::pump()
{
    if (faults_.hold || (waiting_.empty() && gathered_.empty()))
        return;
    const Clock::time_point now = faults_.delay.count() > 0 ? Clock::now() : Clock::time_point::max();
    while (!waiting_.empty() && waiting_.front().due <= now) {
        gathered_.push_back(std::move(waiting_.front().answer));
        waiting_.pop_front();
    }
    while (gathered_.size() >= batch_size())
        leave(batch_size());
    if (!waiting_.empty() && !due_timer_.isActive())
        due_timer_.start(std::chrono::ceil<std::chrono::milliseconds>(waiting_.front().due - now));
    if (!gathered_.empty())
        gather_timer_.start(faults_.gather_wait);
}

void AnswerQueue::leave(std::size_t count)
{
    Batch batch;
    if (count == gathered_.size()) {
        batch.swap(gathered_);
    } else {
        const auto end = gathered_.begin() + static_cast<std::ptrdiff_t>(count);
        batch.assign(std::make_move_iterator(gathered_.begin()), std::make_move_iterator(end));
        gathered_.erase(gathered_.begin(), end);
    }
    if (faults_.shuffle)
        std::shuffle(batch.begin(), batch.end(), random_);
    for (const QByteArray& answer : batch)
        bytes_ -= answer.size();
    if (!batch.empty())
        out_(batch);
}

std::size_t AnswerQueue::batch_size() const
{
    return faults_.gather != 0 ? faults_.gather : faults_.shuffle ? 8 : 1;
}

} // namespace simulator
