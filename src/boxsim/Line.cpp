#include "boxsim/Line.h"

#include <algorithm>
#include <utility>

namespace vantor::boxsim {

namespace {

constexpr std::int64_t kThirdsPerMicro = 3;
/// 10 bits at 9600 baud: 1 041 666 2/3 ns.
constexpr std::int64_t kByteThirds = 3125;
static_assert(kByteThirds * 9600 == 10 * kThirdsPerMicro * 1'000'000);

}  // namespace

Line::Line(EventLoop& loop, Judge judge, Deliver deliver)
    : loop_(loop), judge_(std::move(judge)), deliver_(std::move(deliver)) {}

Line::~Line() {
    clear();
}

Micros Line::rounded(Thirds thirds) {
    return Micros((thirds + kThirdsPerMicro - 1) / kThirdsPerMicro);
}

void Line::put(std::uint8_t byte, Micros notBefore, bool endsLine) {
    const Micros earliest = std::max(notBefore, loop_.now());
    queue_.push_back({.byte = byte,
                      .endsLine = endsLine,
                      .notBefore = earliest.count() * kThirdsPerMicro,
                      .length = kByteThirds});
    arm();
}

void Line::putBreak(Micros end, Micros length) {
    queue_.push_back({.notBefore = end.count() * kThirdsPerMicro, .breakLength = length});
    arm();
}

void Line::clear() {
    queue_.clear();
    if (timer_ != 0) loop_.cancel(timer_);
    timer_ = 0;
}

Micros Line::freeAt() const {
    Thirds at = free_;
    for (const Item& item : queue_) at = std::max(at, item.notBefore) + item.length;
    return std::max(rounded(at), loop_.now());
}

void Line::arm() {
    if (timer_ != 0 || queue_.empty()) return;
    due_ = std::max(free_, queue_.front().notBefore) + queue_.front().length;
    timer_ = loop_.callAfter(rounded(due_) - loop_.now(), [this] { fire(); });
}

void Line::fire() {
    timer_ = 0;
    free_ = due_;
    const Item item = queue_.front();
    queue_.pop_front();
    if (item.breakLength) {
        arm();
        if (breakEnded_) breakEnded_(*item.breakLength);
        return;
    }
    pass(item, item.verdict ? *item.verdict : judge_(item.byte, item.endsLine));
}

void Line::pass(Item item, Verdict verdict) {
    // The queue is put in order and the timer armed before anybody is told, because whoever is
    // told may put more or clear the line.
    if (verdict.unplug) {
        arm();
        if (unplugged_) unplugged_();
        return;
    }
    if (verdict.delay > Micros{0}) {
        item.notBefore =
            (loop_.now() + std::exchange(verdict.delay, Micros{0})).count() * kThirdsPerMicro;
        item.length = 0;
        item.verdict = verdict;
        queue_.push_front(item);
        arm();
        return;
    }
    std::optional<std::uint8_t> arrived;
    if (verdict.before) {
        arrived = std::exchange(verdict.before, std::nullopt);
        item.length = kByteThirds;
        item.verdict = verdict;
        queue_.push_front(item);
    } else {
        if (verdict.deliver) arrived = verdict.byte;
        if (verdict.again) {
            item.length = kByteThirds;
            item.verdict = Verdict{.byte = verdict.byte};
            queue_.push_front(item);
        }
    }
    arm();
    if (arrived) deliver_(*arrived);
}

}  // namespace vantor::boxsim
