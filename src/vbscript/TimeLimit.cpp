#include "vbscript/TimeLimit.h"

#include "platform/Alarm.h"
#include "vbscript/Host.h"

namespace tessaloom::vbscript {

TimeLimit::Run::Run(TimeLimit& limit, double seconds) : limit_(limit), outer_(running_) {
    limit_.over_ = false;
    limit_.limited_ = seconds > 0;
    flag_.store(false, std::memory_order_relaxed);
    if (limit_.limited_) {
        limit_.end_ = limit_.host_.SteadySeconds() + seconds;
        limit_.host_.TimeAlarm().Set(flag_, seconds);  // may throw where no thread can be had
    }
    running_ = &limit_;
}

TimeLimit::Run::~Run() {
    if (limit_.limited_) limit_.host_.TimeAlarm().Cancel();
    limit_.over_ = limit_.limited_ = false;
    running_ = outer_;
    // a script of another engine around this one looks at its own clock again
    flag_.store(outer_ != nullptr, std::memory_order_relaxed);
}

void TimeLimit::Heed() {
    if (running_ && running_->IsOver()) throw TimeUp();
}

bool TimeLimit::IsOver() {
    if (over_ || running_ != this || !flag_.load(std::memory_order_relaxed)) return over_;
    flag_.store(false, std::memory_order_relaxed);
    const double left = limited_ ? end_ - host_.SteadySeconds() : 1;
    if (left <= 0)
        Interrupt();
    else if (limited_)
        host_.TimeAlarm().Set(flag_, left);  // a box had stopped the clock
    return over_;
}

void TimeLimit::Interrupt() {
    over_ = true;
    if (running_ == this) flag_.store(true, std::memory_order_relaxed);
}

TimeLimit::Pause::Pause(TimeLimit& limit) : limit_(limit), began_(limit.host_.SteadySeconds()) {}

TimeLimit::Pause::~Pause() {
    const double seconds = limit_.host_.SteadySeconds() - began_;
    if (!counts_ && seconds >= ShortestAnswer) limit_.end_ += seconds;
}

}  // namespace tessaloom::vbscript
