#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "core/OwnedSettings.h"
#include "imaging/JpegEncoder.h"
#include "platform/Sockets.h"
#include "time/Schedule.h"

namespace tessaloom {

class DIB;
class JpegCodec;

/// How one canvas appears in the built-in web server: its settings and the picture that is served.
///
/// Owned by the canvas's `VideoStreaming`.
class CanvasWebServer : private OwnedSettings {
public:
    explicit CanvasWebServer(SettingsOwner& owner) : OwnedSettings(owner), schedule_(&owner) {}

    /// What is encoded, and by what; both outlive this object. Without a picture `JPEGData` is empty.
    void SetPicture(const DIB& picture, JpegCodec& codec);

    /// The canvas as a JPEG file: the bytes in hand while they are no older than `Interval`, else encoded
    /// now. Empty, never null, when that failed.
    SharedBytes JPEGData();

    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled) { Set(enabled_, enabled); }

    /// The slot of the canvas, 1 .. 20; 0: none.
    int CanvasIndex() const { return canvasIndex_; }
    void SetCanvasIndex(int slot) { canvasIndex_ = slot; }

    /// The request path that selects this canvas.
    const std::string& FileName() const { return fileName_; }
    void SetFileName(std::string_view path) { Set(fileName_, std::string(path)); }

    /// The longest age in seconds of the picture that is served, 0 .. 60.
    double Interval() const { return interval_; }
    void SetInterval(double seconds) { Set(interval_, seconds, {0, 60}); }

    /// JPEG quality, 1 .. 100.
    int Quality() const { return quality_; }
    void SetQuality(int quality) { Set(quality_, quality, {1, 100}); }

    /// The file served while the schedule is off.
    const std::string& OffScheduleFile() const { return offScheduleFile_; }
    void SetOffScheduleFile(std::string_view path) { Set(offScheduleFile_, std::string(path)); }

    tessaloom::Schedule& Schedule() { return schedule_; }
    const tessaloom::Schedule& Schedule() const { return schedule_; }

    /// The moment of the last encoding; 0: none.
    double LastModified() const { return lastModified_; }

    /// Voids the age of the picture, after the clock was set back.
    void ForgetPicture() { lastModified_ = 0; }

private:
    tessaloom::Schedule schedule_;
    const DIB* picture_ = nullptr;
    std::unique_ptr<JpegEncoder> encoder_;
    SharedBytes jpeg_;  ///< Of `LastModified`.
    std::string fileName_;
    std::string offScheduleFile_ = "offair.jpg";
    double interval_ = 0;
    double lastModified_ = 0;
    int canvasIndex_ = 0;
    int quality_ = 80;
    bool enabled_ = false;
};

}  // namespace tessaloom
