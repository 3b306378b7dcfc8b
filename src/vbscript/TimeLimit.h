#pragma once

#include "vbscript/Error.h"
#include "vbscript/Host.h"

namespace tessaloom::vbscript {

/// How long a script may still run, by the host's steady clock.
class TimeLimit {
public:
    explicit TimeLimit(Host& host) : host_(host) {}

    /// From now on; 0 or less: without end.
    void Start(double seconds) {
        limited_ = seconds > 0;
        end_ = limited_ ? host_.SteadySeconds() + seconds : 0;
    }

    bool IsOver() const { return limited_ && host_.SteadySeconds() >= end_; }

    static constexpr int IsUp = 18;  ///< The number of the error that ends a script whose time is up.

    /// For long work outside of the machine: throws that error when it is over. No handler of the script
    /// sees it.
    void Enforce() const {
        if (IsOver())
            throw RuntimeError(IsUp, u"The script was stopped: its time is up",
                               std::u16string(RuntimeSource));
    }

    /// The time during its life does not count: a box waits for the user.
    class Pause {
    public:
        explicit Pause(TimeLimit& limit) : limit_(limit), began_(limit.host_.SteadySeconds()) {}
        ~Pause() { limit_.end_ += limit_.host_.SteadySeconds() - began_; }
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

    private:
        TimeLimit& limit_;
        double began_;
    };

private:
    Host& host_;
    bool limited_ = false;
    double end_ = 0;
};

}  // namespace tessaloom::vbscript
