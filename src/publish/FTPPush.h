#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/SettingsOwner.h"
#include "core/Store.h"
#include "time/PresentTime.h"
#include "time/Schedule.h"
#include "time/TimedActivity.h"

namespace tessaloom {

/// The FTP upload of one canvas: its settings and its timetable.
///
/// Owned by the canvas's `VideoStreaming`. The transfer itself is done by the uploader that is plugged in;
/// while there is none, nothing is ever due, `Stage` is "Idle" and `Status` is empty.
class FTPPush {
public:
    /// How a file is replaced on the server.
    enum Mode {
        DeleteAndRename = 0,  ///< Stored under another name; the old file is deleted, the new one renamed.
        RenameOver = 1,       ///< Stored under another name, then renamed over the old file.
        Direct = 2,           ///< Stored under its final name.
    };

    FTPPush(SettingsOwner& owner, const PresentTime& present);

    /// Plugs in what uploads the canvas's picture; an empty function unplugs it.
    void SetUploader(std::function<void()> upload) { upload_ = std::move(upload); }

    /// Uploads when that is due: the next time is moved on first, then the schedule is asked.
    void Refresh();

    /// Uploads at once, whatever the timetable. Does nothing without an uploader.
    void Upload();

    void SetNextUploadTime() { timing_.SetNextTime(present_.Now()); }

    /// Makes the upload due at once.
    void ForceUpdate() { timing_.Force(present_.Now()); }

    /// Recomputes the next time from the present, after the clock was set back.
    void RestartTime() { timing_.Restart(present_.Now()); }

    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled) { Set(enabled_, enabled); }

    /// Seconds between two uploads, 0 .. 86400; 0: never by itself.
    double Interval() const { return timing_.Rate(); }
    void SetInterval(double seconds);

    /// Whole seconds after midnight on which the uploads are aligned, 0 .. 86399.
    double BaseTime() const { return timing_.BaseTime(); }
    void SetBaseTime(double seconds);

    /// When the next upload is due (a moment).
    double NextUploadTime() const { return timing_.NextTime(); }

    /// JPEG quality, 1 .. 100.
    int Quality() const { return quality_; }
    void SetQuality(int quality) { Set(quality_, Clamped(quality, {1, 100})); }

    /// The remote folder and file.
    const std::string& Path() const { return path_; }
    void SetPath(std::string_view path) { Set(path_, std::string(path)); }

    const std::string& ServerName() const { return serverName_; }
    void SetServerName(std::string_view name) { Set(serverName_, std::string(name)); }
    const std::string& UserName() const { return userName_; }
    void SetUserName(std::string_view name) { Set(userName_, std::string(name)); }

    /// Kept in the canvas file in plain text; never logged.
    const std::string& Password() const { return password_; }
    void SetPassword(std::string_view password) { Set(password_, std::string(password)); }

    /// A `Mode`, 0 .. 2.
    int FTPMode() const { return ftpMode_; }
    void SetFTPMode(int mode) { Set(ftpMode_, Clamped(mode, {DeleteAndRename, Direct})); }

    bool PassiveFTP() const { return passiveFTP_; }
    void SetPassiveFTP(bool passive) { Set(passiveFTP_, passive); }

    /// The connection stays open between uploads, and is kept alive by a command every 30 s.
    bool KeepConnectionOpen() const { return keepConnectionOpen_; }
    void SetKeepConnectionOpen(bool keep) { Set(keepConnectionOpen_, keep); }
    bool KeepAlive() const { return keepAlive_; }
    void SetKeepAlive(bool keep) { Set(keepAlive_, keep); }

    tessaloom::Schedule& Schedule() { return schedule_; }
    const tessaloom::Schedule& Schedule() const { return schedule_; }

    /// The short name of the transfer's present step, and its longer description or last error.
    std::string Stage() const { return "Idle"; }
    std::string Status() const { return {}; }

private:
    template <typename T>
    void Set(T& field, std::type_identity_t<T> value) {
        if (Store(field, std::move(value))) owner_.SettingChanged();
    }

    SettingsOwner& owner_;
    const PresentTime& present_;
    TimedActivity timing_;
    tessaloom::Schedule schedule_;
    std::function<void()> upload_;
    std::string path_ = "push.jpg";
    std::string serverName_;
    std::string userName_;
    std::string password_;
    int quality_ = 80;
    int ftpMode_ = DeleteAndRename;
    bool enabled_ = false;
    bool passiveFTP_ = false;
    bool keepConnectionOpen_ = false;
    bool keepAlive_ = false;
};

}  // namespace tessaloom
