#pragma once

#include "core/SettingsOwner.h"
#include "core/Store.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace tessaloom {

/// The daily window in which an activity may act.
///
/// Each end is a time of day, or lies some minutes from the day's sunrise or sunset. An end that an offset
/// pushes out of the day is not wrapped round.
class Schedule {
public:
    enum Mode { Always = 0, FromStartTo = 1 };           ///< The numbers of `ScheduleMode`.
    enum End { Absolute = 0, Sunrise = 1, Sunset = 2 };  ///< The numbers of `StartMode` and `StopMode`.

    static constexpr double LatestTime = 0.99988427;  ///< 23:59:50, as a fraction of a day.
    static constexpr double LongestOffset = 1440;     ///< Minutes.

    /// `owner`, if any, is told of each changed setting and outlives the schedule.
    explicit Schedule(SettingsOwner* owner = nullptr) : owner_(owner) {}

    /// All fields to 0, also the canvas index and the last state; `NeedsSaving` is cleared and nobody is
    /// told.
    void Reset();

    /// Whether the activity may act at moment `time`. Both ends, to a microsecond, belong to the window; ends
    /// that coincide mean always. When the answer differs from the one before and there is a canvas, it is
    /// told to redraw.
    bool EnableNow(double time);

    /// One line, for example "24-hours" or "08:00:00 to sunset-15.5 min".
    std::string Description() const;

    /// What makes the owning canvas redraw; called by `EnableNow` only while `SetCanvasIndex` is not 0.
    void SetRedraw(std::function<void()> redraw) { redraw_ = std::move(redraw); }

    /// The owning canvas's slot, 0: none.
    void SetCanvasIndex(int index) { canvasIndex_ = index; }

    int ScheduleMode() const { return scheduleMode_; }
    void SetScheduleMode(int mode);

    int StartMode() const { return start_.mode; }
    void SetStartMode(int end);
    int StopMode() const { return stop_.mode; }
    void SetStopMode(int end);

    /// Times of day, fractions of a day, 0 .. LatestTime.
    double StartAbsoluteTime() const { return start_.absoluteTime; }
    void SetStartAbsoluteTime(double time);
    double StopAbsoluteTime() const { return stop_.absoluteTime; }
    void SetStopAbsoluteTime(double time);

    /// Minutes after (or, negative, before) the sun's event, -1440 .. 1440.
    double StartSunriseOffset() const { return start_.sunriseOffset; }
    void SetStartSunriseOffset(double minutes);
    double StopSunriseOffset() const { return stop_.sunriseOffset; }
    void SetStopSunriseOffset(double minutes);
    double StartSunsetOffset() const { return start_.sunsetOffset; }
    void SetStartSunsetOffset(double minutes);
    double StopSunsetOffset() const { return stop_.sunsetOffset; }
    void SetStopSunsetOffset(double minutes);

    /// Set by every setter that changes a value; cleared by loading and saving.
    bool NeedsSaving() const { return needsSaving_; }
    void SetNeedsSaving(bool needs) { needsSaving_ = needs; }

private:
    struct WindowEnd {
        int mode = Absolute;
        double absoluteTime = 0;
        double sunriseOffset = 0;
        double sunsetOffset = 0;

        double TimeOfDay(double day) const;  ///< Fraction of a day; may lie outside 0 .. 1.
        std::string Description(std::string_view sunriseUnit) const;
    };

    bool InWindow(double time) const;

    /// Stores and, when that changed the field, flags and tells it.
    template <typename T>
    void Set(T& field, T value, Range<T> range);

    SettingsOwner* owner_;
    std::function<void()> redraw_;
    int canvasIndex_ = 0;
    int scheduleMode_ = Always;
    WindowEnd start_;
    WindowEnd stop_;
    bool needsSaving_ = false;
    bool lastState_ = false;
};

}  // namespace tessaloom
