#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "core/OwnedSettings.h"
#include "imaging/JpegEncoder.h"
#include "time/PresentTime.h"
#include "time/Schedule.h"
#include "time/TimedActivity.h"

namespace tessaloom {

class DIB;
class Desktop;
class FileSystem;
class JpegCodec;

/// What became of one timed save the last time it ran.
struct SaveResult {
    double moment = 0;     ///< The capture time of that run; 0: never ran.
    std::string path;      ///< The file that was written, or was to be.
    bool written = false;  ///< False: the picture could not be encoded or the file not be written.
    std::string failure;   ///< Why not; "" when it was written.
};

/// The three timed ways in which a canvas publishes its picture to disk: the fixed file, the sequential files
/// and the desktop wallpaper ("background").
///
/// Owned by the canvas, which calls `DoSaves` on every tick. Rates are seconds (0 .. 86400; 0: never by
/// itself), base times whole seconds after midnight (0 .. 86399), next times moments, qualities JPEG
/// qualities (1 .. 100). What goes wrong with a file stops nothing: the file stays unwritten or stale and the
/// other outputs go on.
class CanvasSaves : private OwnedSettings {
public:
    /// What the saves work with. All of it outlives this object.
    struct Tools {
        FileSystem& files;
        JpegCodec& jpeg;
        Desktop& desktop;
    };

    /// `owner` is told of changed settings; `present` gives the capture time.
    CanvasSaves(SettingsOwner& owner, const PresentTime& present, Tools tools);

    /// Called with every new running number, which the canvas file keeps at once (section "Capture", key
    /// "SequentialNumber"), whether or not the canvas is saved.
    void OnSequentialNumber(std::function<void(int)> keep) { keepNumber_ = std::move(keep); }

    /// Called with one line when an output fails that had worked before (or never ran), not again until it
    /// works.
    void OnFailure(std::function<void(const std::string& message)> log) { log_ = std::move(log); }

    /// Runs every save that is due, once, on the composed picture.
    void DoSaves(const DIB& picture);

    /// Moves the next time of an activity that is due to the first grid point after the capture time.
    void SetNextFixedTime() { fixed_.timing.SetNextTime(present_.Now()); }
    void SetNextSequentialTime() { sequential_.timing.SetNextTime(present_.Now()); }
    void SetNextBackgroundTime() { background_.timing.SetNextTime(present_.Now()); }

    /// Makes all three activities due at once.
    void ForceUpdate();

    /// Recomputes all next times from the present, after the clock was set back.
    void RestartTimes();

    /// How the last run of each save ended.
    const SaveResult& LastFixed() const { return fixed_.last; }
    const SaveResult& LastSequential() const { return sequential_.last; }
    const SaveResult& LastBackground() const { return background_.last; }

    // The fixed save: one file, rewritten each time.

    bool FixedEnabled() const { return fixed_.enabled; }
    void SetFixedEnabled(bool enabled) { Set(fixed_.enabled, enabled); }
    double FixedRate() const { return fixed_.timing.Rate(); }
    void SetFixedRate(double seconds) { SetRate(fixed_, seconds); }
    double FixedBaseTime() const { return fixed_.timing.BaseTime(); }
    void SetFixedBaseTime(double seconds) { SetBaseTime(fixed_, seconds); }
    double FixedNextFrame() const { return fixed_.timing.NextTime(); }
    void SetFixedNextFrame(double moment) { fixed_.timing.SetNextTimeTo(moment); }
    Schedule& FixedSchedule() { return fixed_.schedule; }
    const Schedule& FixedSchedule() const { return fixed_.schedule; }
    int FixedQuality() const { return fixed_.quality; }
    void SetFixedQuality(int quality) { Set(fixed_.quality, quality, Qualities); }

    /// The path of the fixed file, used as it stands.
    const std::string& FixedFileName() const { return fixedFileName_; }
    void SetFixedFileName(std::string_view path) { Set(fixedFileName_, std::string(path)); }

    /// Numbered older copies are kept beside the fixed file, up to number `CascadeCount` (1 .. 1000).
    /// Mode 0: the newest picture is also copy 0000; mode 1: copies begin at 0001 and hold older ones only.
    bool CascadeEnabled() const { return cascadeEnabled_; }
    void SetCascadeEnabled(bool enabled) { Set(cascadeEnabled_, enabled); }
    int CascadeCount() const { return cascadeCount_; }
    void SetCascadeCount(int highest) { Set(cascadeCount_, highest, {1, 1000}); }
    int CascadeMode() const { return cascadeMode_; }
    void SetCascadeMode(int mode) { Set(cascadeMode_, mode, {0, 1}); }

    // The sequential save: a new file each time.

    bool SequentialEnabled() const { return sequential_.enabled; }
    void SetSequentialEnabled(bool enabled) { Set(sequential_.enabled, enabled); }
    double SequentialRate() const { return sequential_.timing.Rate(); }
    void SetSequentialRate(double seconds) { SetRate(sequential_, seconds); }
    double SequentialBaseTime() const { return sequential_.timing.BaseTime(); }
    void SetSequentialBaseTime(double seconds) { SetBaseTime(sequential_, seconds); }
    double SequentialNextFrame() const { return sequential_.timing.NextTime(); }
    void SetSequentialNextFrame(double moment) { sequential_.timing.SetNextTimeTo(moment); }
    Schedule& SequentialSchedule() { return sequential_.schedule; }
    const Schedule& SequentialSchedule() const { return sequential_.schedule; }
    int SequentialQuality() const { return sequential_.quality; }
    void SetSequentialQuality(int quality) { Set(sequential_.quality, quality, Qualities); }

    /// The folder of the files; it must exist.
    const std::string& SequentialPath() const { return sequentialPath_; }
    void SetSequentialPath(std::string_view folder) { Set(sequentialPath_, std::string(folder)); }

    /// 0: files are named by time stamp; 1: by running number.
    int SequentialType() const { return sequentialType_; }
    void SetSequentialType(int type) { Set(sequentialType_, type, {0, 1}); }

    /// The next running number, 0 .. 99999999.
    int SequentialNumber() const { return sequentialNumber_; }
    void SetSequentialNumber(int number) { Set(sequentialNumber_, number, {0, HighestNumber}); }

    // The background capture: the desktop's wallpaper, always at quality 100.

    bool BackgroundEnabled() const { return background_.enabled; }
    void SetBackgroundEnabled(bool enabled) { Set(background_.enabled, enabled); }
    double BackgroundRate() const { return background_.timing.Rate(); }
    void SetBackgroundRate(double seconds) { SetRate(background_, seconds); }
    double BackgroundBaseTime() const { return background_.timing.BaseTime(); }
    void SetBackgroundBaseTime(double seconds) { SetBaseTime(background_, seconds); }
    double BackgroundNextFrame() const { return background_.timing.NextTime(); }
    void SetBackgroundNextFrame(double moment) { background_.timing.SetNextTimeTo(moment); }
    Schedule& BackgroundSchedule() { return background_.schedule; }
    const Schedule& BackgroundSchedule() const { return background_.schedule; }

private:
    static constexpr int HighestNumber = 99999999;
    static constexpr Range<int> Qualities{1, 100};

    struct Activity {
        Activity(SettingsOwner& owner, const PresentTime& present, std::string_view title);

        bool Candidate(double now) const { return enabled && timing.Rate() != 0 && timing.Due(now); }

        TimedActivity timing;
        tessaloom::Schedule schedule;
        SaveResult last;
        std::string_view name;  ///< As the log calls it.
        int quality;
        bool enabled = false;
        bool failing = false;  ///< The last run failed and was logged.
    };

    using Bytes = std::span<const std::uint8_t>;  ///< A whole JPEG file; empty when it could not be made.

    void SetRate(Activity& activity, double seconds);
    void SetBaseTime(Activity& activity, double seconds);

    static bool Runs(Activity& activity, double now);
    bool SaveFixed(double now);
    bool SaveSequential(double now);
    void SaveBackground(double now);
    void ShiftCascade();
    std::string NextSequentialName(double now);
    bool WriteWallpaper(const std::string& jpegPath, const std::string& bitmapPath, Bytes bytes);
    bool WriteBytes(std::string_view path, Bytes bytes);
    void Finish(Activity& activity, double now, std::string path, bool written, std::string_view why);

    /// False, always: the later outputs of the pass are skipped.
    bool EncodingFailed(Activity& activity, double now, std::string_view path);

    const PresentTime& present_;
    Tools tools_;
    Activity fixed_;
    Activity sequential_;
    Activity background_;
    std::string fixedFileName_ = "images\\fixed.jpg";
    std::string sequentialPath_ = "sequential\\";
    int cascadeCount_ = 100;
    int cascadeMode_ = 0;
    int sequentialType_ = 0;
    int sequentialNumber_ = 0;
    bool cascadeEnabled_ = false;
    JpegEncoder encoder_;
    std::string failure_;  ///< Why the last file that failed was not written.
    std::function<void(int)> keepNumber_;
    std::function<void(const std::string&)> log_;
};

}  // namespace tessaloom
