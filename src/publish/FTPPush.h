#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "core/OwnedSettings.h"
#include "publish/InetFTP.h"
#include "time/PresentTime.h"
#include "time/Schedule.h"
#include "time/TimedActivity.h"

namespace tessaloom {

class DIB;
class JpegCodec;

/// The FTP upload of one canvas: its settings and its timetable.
///
/// Owned by the canvas's `VideoStreaming`. The transfer itself is done by its `InetFTP`, which exists from
/// `Use` on; without it nothing is ever due, `Stage` is "Idle" and `Status` is empty.
class FTPPush : private OwnedSettings {
public:
    /// What the uploads work with. All of it outlives this object.
    struct Tools {
        FileSystem& files;
        JpegCodec& jpeg;
        FtpClients& clients;
    };

    FTPPush(SettingsOwner& owner, const PresentTime& present);

    /// From now on `picture`, that of canvas `canvasIndex`, is what is uploaded.
    void Use(Tools tools, const DIB& picture, int canvasIndex);

    /// Begins an upload when that is due (the next time is moved on first, then the schedule is asked), and
    /// moves the one in progress along.
    void Refresh();

    /// Begins an upload, whatever the timetable; refused while one is in progress.
    void Upload();

    /// Ends the transfer and the connection.
    void UnloadClass();

    /// Makes the upload due at once.
    void ForceUpdate() { timing_.Force(present_.Now()); }

    /// Recomputes the next time from the present, after the clock was set back.
    void RestartTime() { timing_.Restart(present_.Now()); }

    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);

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
    void SetQuality(int quality) { Set(quality_, quality, {1, 100}); }

    /// The remote folder and file: what follows the last "/" or "\" is the file.
    const std::string& Path() const { return path_; }
    void SetPath(std::string_view path) { Set(path_, std::string(path)); }

    /// Host and, after ":", port; see `FtpAccount` for secured connections.
    const std::string& ServerName() const { return serverName_; }
    void SetServerName(std::string_view name) { Set(serverName_, std::string(name)); }
    const std::string& UserName() const { return userName_; }
    void SetUserName(std::string_view name) { Set(userName_, std::string(name)); }

    /// Kept in the canvas file in plain text; never logged.
    const std::string& Password() const { return password_; }
    void SetPassword(std::string_view password) { Set(password_, std::string(password)); }

    /// An `InetFTP::Mode`, 0 .. 2.
    int FTPMode() const { return ftpMode_; }
    void SetFTPMode(int mode) { Set(ftpMode_, mode, {InetFTP::DeleteAndRename, InetFTP::Direct}); }

    bool PassiveFTP() const { return passiveFTP_; }
    void SetPassiveFTP(bool passive) { Set(passiveFTP_, passive); }

    /// The connection stays open between uploads, and is kept alive by a command every 30 s.
    bool KeepConnectionOpen() const { return keepConnectionOpen_; }
    void SetKeepConnectionOpen(bool keep);
    bool KeepAlive() const { return keepAlive_; }
    void SetKeepAlive(bool keep) { Set(keepAlive_, keep); }

    tessaloom::Schedule& Schedule() { return schedule_; }
    const tessaloom::Schedule& Schedule() const { return schedule_; }

    /// The short name of the transfer's present step, and its longer description or last error.
    std::string Stage() const { return transfer_ ? transfer_->ftp.Stage() : "Idle"; }
    std::string Status() const { return transfer_ ? transfer_->ftp.Status() : ""; }

    /// The transfer itself; null before `Use`.
    const InetFTP* Transfer() const { return transfer_ ? &transfer_->ftp : nullptr; }

private:
    struct Sender {
        JpegCodec& jpeg;
        const DIB& picture;
        int canvasIndex;
        InetFTP ftp;
    };

    bool Due();
    void ConnectionUnwanted() const;

    const PresentTime& present_;
    TimedActivity timing_;
    tessaloom::Schedule schedule_;
    std::unique_ptr<Sender> transfer_;
    std::string path_ = "push.jpg";
    std::string serverName_;
    std::string userName_;
    std::string password_;
    int quality_ = 80;
    int ftpMode_ = InetFTP::DeleteAndRename;
    bool enabled_ = false;
    bool passiveFTP_ = false;
    bool keepConnectionOpen_ = false;
    bool keepAlive_ = false;
};

}  // namespace tessaloom
