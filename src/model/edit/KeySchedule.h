#pragma once

#include <string>

#include "model/Key.h"
#include "time/Schedule.h"

namespace tessaloom {

/// A schedule as one value: its description, "24-hours" or "08:00:00 to sunset-15.5 min".
struct ScheduleText {
    static constexpr std::string_view Fallback = "24-hours";

    /// Sets the ends that the text names and leaves the others alone. A text that is no description sets
    /// nothing and is `NotATime`; offsets beyond a day are `OutOfRange`.
    static KeyFault Read(Schedule& schedule, const std::string& text);
    static KeyFault Judge(const std::string& text);
};

/// The row of a property table for the schedule that `find` gives for its owner.
template <typename Owner, auto find>
constexpr Key<Owner> ScheduleEntry() {
    return {"Schedule",
            ScheduleText::Fallback,
            false,
            false,
            [](Owner& owner, const std::string& text) { return ScheduleText::Read(find(owner), text); },
            &ScheduleText::Judge,
            [](const Owner& owner) { return find(owner).Description(); }};
}

}  // namespace tessaloom
