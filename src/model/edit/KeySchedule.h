#pragma once

#include <string>

#include "model/Key.h"
#include "time/Schedule.h"

namespace tessaloom {

/// A schedule as one value: the texts of its keys in the order of the file, parted by ";". All of it comes
/// back, also what the present mode does not ask.
struct ScheduleText {
    static constexpr std::string_view Fallback = "0;0;0;0;0;0;0;0;0";

    /// A text of another shape sets nothing and is `NotANumber`.
    static KeyFault Read(Schedule& schedule, const std::string& text);
    static KeyFault Judge(const std::string& text);
    static std::string Write(const Schedule& schedule);
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
            [](const Owner& owner) { return ScheduleText::Write(find(owner)); }};
}

}  // namespace tessaloom
