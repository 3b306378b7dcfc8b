#include "publish/FTPPush.h"

#include <algorithm>
#include <vector>

#include "core/ErrorReport.h"
#include "core/Log.h"
#include "imaging/JpegEncoder.h"

namespace tessaloom {
namespace {

constexpr std::string_view Module = "FTPPush.cls";

/// The folder and the file of a path on the server. The root folder keeps its "/".
std::pair<std::string, std::string> SplitRemotePath(std::string path) {
    std::ranges::replace(path, '\\', '/');
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return {"", std::move(path)};
    return {path.substr(0, std::max<std::size_t>(slash, 1)), path.substr(slash + 1)};
}

}  // namespace

FTPPush::FTPPush(SettingsOwner& owner, const PresentTime& present)
    : OwnedSettings(owner), present_(present), timing_({0, 86400}, {0, 86399}), schedule_(&owner) {
    (void)timing_.SetRate(60, present);
}

void FTPPush::Use(Tools tools, const DIB& picture, int canvasIndex) {
    transfer_.reset(new Sender{
        tools.jpeg, picture, canvasIndex, {tools.files, tools.clients}
    });
}

void FTPPush::Refresh() {
    if (!transfer_) return;
    if (enabled_ && Due() && schedule_.EnableNow(present_.Now())) Upload();
    transfer_->ftp.TimerEvent();
}

// An activity that never runs by itself does not run because it is new, either.
bool FTPPush::Due() {
    const double now = present_.Now();
    if (!timing_.Due(now)) return false;
    const bool isNew = timing_.NextTime() == 0;
    timing_.SetNextTime(now);
    return timing_.Rate() != 0 || !isNew;
}

void FTPPush::Upload() {
    Trap({Module, "Upload"}, [&] {
        if (!transfer_ || !transfer_->ftp.MaySend()) return;
        JpegEncoder encoder(transfer_->jpeg);
        encoder.BeginPass(transfer_->picture);
        const auto bytes = encoder.Bytes(quality_);
        if (bytes.empty()) return Log(LogLevel::Warning, "FTP push: the picture could not be encoded");

        auto [folder, file] = SplitRemotePath(path_);
        transfer_->ftp.SetAccount({serverName_, userName_, password_, passiveFTP_});
        transfer_->ftp.SendDataFile({bytes.begin(), bytes.end()}, {.remoteFolder = std::move(folder),
                                                                   .remoteFile = std::move(file),
                                                                   .canvasIndex = transfer_->canvasIndex,
                                                                   .mode = ftpMode_,
                                                                   .keepConnectionOpen = keepConnectionOpen_,
                                                                   .keepAlive = keepAlive_});
    });
}

void FTPPush::UnloadClass() {
    if (transfer_) transfer_->ftp.UnloadClass();
}

void FTPPush::SetEnabled(bool enabled) {
    if (Set(enabled_, enabled) && !enabled) ConnectionUnwanted();
}

void FTPPush::SetKeepConnectionOpen(bool keep) {
    if (Set(keepConnectionOpen_, keep) && !keep) ConnectionUnwanted();
}

void FTPPush::ConnectionUnwanted() const {
    if (transfer_) transfer_->ftp.LogOutWhenDone();
}

void FTPPush::SetInterval(double seconds) {
    if (timing_.SetRate(seconds, present_)) owner_.SettingChanged();
}

void FTPPush::SetBaseTime(double seconds) {
    if (timing_.SetBaseTime(seconds)) owner_.SettingChanged();
}

}  // namespace tessaloom
