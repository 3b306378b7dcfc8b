#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/SettingsOwner.h"
#include "script/host/ScriptEngine.h"
#include "time/PresentTime.h"
#include "time/TimedActivity.h"
#include "time/modTime.h"

namespace tessaloom {

class FileSystem;

/// The events that a script can take part in, in the order in which the files name them.
enum class ScriptEvent {
    Interval,
    TextUpdate,
    GraphicUpdate,
    Startup,
    Shutdown,
    MotionDetected,
    NewCSVData,
    WebRequest,
};

/// The script of a portfolio: loads the script file into the engine and runs its procedures when events
/// happen.
///
/// Owned by the portfolio, on the program's one thread. Every failure ends up in `Status` and leaves the
/// script not ready; no event is then delivered until a reload succeeds. Without an engine a script is never
/// ready. Events reach the script only when its procedure exists, the script is ready and the event's switch
/// is on.
class Script {
public:
    static constexpr std::size_t Events = 8;

    /// While it lives, nothing that is set loads the script: its outermost statements would run in the midst
    /// of a document that is being read. Only `ResetScript` does.
    class HeldBack {
    public:
        explicit HeldBack(Script& script) : script_(script) { script_.heldBack_ = true; }
        ~HeldBack() { script_.heldBack_ = false; }
        HeldBack(const HeldBack&) = delete;
        HeldBack& operator=(const HeldBack&) = delete;

    private:
        Script& script_;
    };

    /// `engine` may be null; it must outlive this object.
    Script(SettingsOwner& owner, const PresentTime& present, FileSystem& files,
           ScriptEngine* engine = nullptr);

    /// Plugs in another engine (or none) and forgets the script that was loaded.
    void SetEngine(ScriptEngine* engine);

    /// Loads the script file, or loads it again. Refused, with a status, while one of its procedures runs.
    void ResetScript();

    /// Stops the script and forgets it. A procedure that is running ends by itself.
    void UnloadClass();

    /// Runs procedure `name`. A run-time error stops the script until it is reloaded.
    void ExecuteMethod(std::string_view name, std::span<const ScriptArgument> arguments);

    // The events. Canvases are slots 1 .. 20, layers slots 1 .. 100, feeds count from 1.
    void CallInterval();
    void CallTextUpdate(int canvas, int index);
    void CallGraphicUpdate(int canvas, int index);
    void CallStartup();
    void CallShutdown();
    void CallMotionDetected(int videoFeed);
    void CallNewCSVData();
    void CallWebRequest(std::string_view ipAddress, std::string_view path);

    /// One of its procedures, or its outermost code, is on the stack. Events that come meanwhile (through a
    /// box that it shows) do not reach it.
    bool Running() const { return proceduresRunning_ > 0; }

    /// True when `event` would reach the script now.
    bool Delivers(ScriptEvent event) const {
        const auto index = static_cast<std::size_t>(event);
        return enabled_ && ready_ && found_[index] && allowed_[index];
    }

    /// The path of the script file. A script that is enabled is loaded anew.
    const std::string& FileName() const { return fileName_; }
    void SetFileName(std::string_view path);

    /// Switching on loads the script file; switching off stops the script.
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);

    /// The script was loaded without error and no run-time error has stopped it since.
    bool Ready() const { return ready_; }

    /// What happened since the script was last loaded: lines ended by CR LF.
    const std::string& Status() const { return status_; }

    bool AllowInterval() const { return Allow(ScriptEvent::Interval); }
    void SetAllowInterval(bool allow) { SetAllow(ScriptEvent::Interval, allow); }
    bool AllowTextUpdate() const { return Allow(ScriptEvent::TextUpdate); }
    void SetAllowTextUpdate(bool allow) { SetAllow(ScriptEvent::TextUpdate, allow); }
    bool AllowGraphicUpdate() const { return Allow(ScriptEvent::GraphicUpdate); }
    void SetAllowGraphicUpdate(bool allow) { SetAllow(ScriptEvent::GraphicUpdate, allow); }
    bool AllowStartup() const { return Allow(ScriptEvent::Startup); }
    void SetAllowStartup(bool allow) { SetAllow(ScriptEvent::Startup, allow); }
    bool AllowShutdown() const { return Allow(ScriptEvent::Shutdown); }
    void SetAllowShutdown(bool allow) { SetAllow(ScriptEvent::Shutdown, allow); }
    bool AllowMotionDetected() const { return Allow(ScriptEvent::MotionDetected); }
    void SetAllowMotionDetected(bool allow) { SetAllow(ScriptEvent::MotionDetected, allow); }
    bool AllowNewCSVData() const { return Allow(ScriptEvent::NewCSVData); }
    void SetAllowNewCSVData(bool allow) { SetAllow(ScriptEvent::NewCSVData, allow); }
    bool AllowWebRequest() const { return Allow(ScriptEvent::WebRequest); }
    void SetAllowWebRequest(bool allow) { SetAllow(ScriptEvent::WebRequest, allow); }

    /// Seconds between two interval events, 0 .. 86400; 0: none.
    double Rate() const { return interval_.Rate(); }
    void SetRate(double seconds);

    /// Whole seconds after midnight on which the interval events are aligned, 0 .. 86399.
    double BaseTime() const { return interval_.BaseTime(); }
    void SetBaseTime(double seconds);

    /// When the next interval event is due (a moment).
    double NextTime() const { return interval_.NextTime(); }
    void SetNextTime() { interval_.SetNextTime(present_.Now()); }

    /// Makes the interval event due at once. The clock is later than the tick's capture time, so that
    /// `SetNextTime`, which follows an interval event, leaves alone what that event has forced.
    void ForceUpdate() { interval_.Force(modTime::Clock()); }

    /// Recomputes the next time from the present, after the clock was set back.
    void RestartTime() { interval_.Restart(present_.Now()); }

private:
    bool Allow(ScriptEvent event) const { return allowed_[static_cast<std::size_t>(event)]; }
    void SetAllow(ScriptEvent event, bool allow);
    void Load();
    void FindProcedures();
    void Forget();
    void Deliver(ScriptEvent event, std::span<const ScriptArgument> arguments);
    void AddStatus(std::string_view line);
    void NotLoaded(std::string_view why);
    void Fail(std::string_view kind, const ScriptFault& fault);

    SettingsOwner& owner_;
    const PresentTime& present_;
    FileSystem& files_;
    ScriptEngine* engine_;
    TimedActivity interval_;
    std::string fileName_ = "script.txt";
    std::string status_;
    std::vector<std::string> lines_;  ///< The script without white space at the start and end of its lines.
    std::array<bool, Events> allowed_{};
    std::array<bool, Events> found_{};
    int proceduresRunning_ = 0;
    bool enabled_ = false;
    bool ready_ = false;
    bool heldBack_ = false;
};

}  // namespace tessaloom
