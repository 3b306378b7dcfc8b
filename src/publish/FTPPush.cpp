#include "publish/FTPPush.h"

#include "core/ErrorReport.h"

namespace tessaloom {
namespace {

constexpr std::string_view Module = "FTPPush.cls";

}  // namespace

FTPPush::FTPPush(SettingsOwner& owner, const PresentTime& present)
    : owner_(owner), present_(present), timing_({0, 86400}, {0, 86399}), schedule_(&owner) {
    (void)timing_.SetRate(60, present);
}

void FTPPush::Refresh() {
    if (!enabled_ || !upload_ || timing_.Rate() == 0) return;
    const double now = present_.Now();
    if (!timing_.Due(now)) return;
    timing_.SetNextTime(now);
    if (schedule_.EnableNow(now)) Upload();
}

void FTPPush::Upload() {
    Trap({Module, "Upload"}, [&] {
        if (upload_) upload_();
    });
}

void FTPPush::SetInterval(double seconds) {
    if (timing_.SetRate(seconds, present_)) owner_.SettingChanged();
}

void FTPPush::SetBaseTime(double seconds) {
    if (timing_.SetBaseTime(seconds)) owner_.SettingChanged();
}

}  // namespace tessaloom
