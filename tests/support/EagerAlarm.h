#pragma once

#include "platform/Alarm.h"

namespace tessaloom::testing {

/// Rings at once, so that whoever it wakes looks at his clock at every chance: a clock of a test then counts
/// the looks.
class EagerAlarm final : public Alarm {
public:
    void Set(std::atomic<bool>& flag, double) override { flag.store(true, std::memory_order_relaxed); }
    void Cancel() override {}
};

}  // namespace tessaloom::testing
