#include "publish/CanvasSaves.h"

#include <algorithm>

#include "core/ErrorReport.h"
#include "core/modNumbers.h"
#include "imaging/BmpFile.h"
#include "imaging/DIB.h"
#include "platform/Bytes.h"
#include "platform/Desktop.h"
#include "platform/FileSystem.h"
#include "platform/JpegCodec.h"
#include "platform/Paths.h"
#include "time/modTime.h"

namespace tessaloom {
namespace {

constexpr std::string_view Module = "Canvas.cls";
constexpr std::string_view WallpaperName = "TessaloomWallPaper";
constexpr std::string_view StampPattern = "YYMMDDHHMMSS";
constexpr int WallpaperQuality = 100;

constexpr Range<double> Rates{0, 86400};
constexpr Range<double> BaseTimes{0, 86399};
constexpr double InitialRate = 60;
constexpr int InitialQuality = 80;

// The hundredths of the second that the clock shows. A moment is exact to about half a microsecond only, so
// the microsecond that `CalcNextUpdate` allows is allowed here, too: 5.47 s must not read as 5.46.
int Hundredths() {
    const double hundredths = 100 * modNumbers::Frac(modTime::Clock() * modTime::SecondsPerDay);
    return std::min(99, static_cast<int>(hundredths + 0.0001));
}

bool DecodeInto(JpegCodec& codec, std::span<const std::uint8_t> file, DIB& picture) {
    JpegHeader header;
    if (codec.ReadHeader(file, header) != JpegResult::Ok) return false;
    picture.SetWidthHeight(header.width, header.height);
    return picture.DIBPtr() != nullptr &&
           codec.Decode(file, header, picture.DIBPtr(), picture.Stride()) == JpegResult::Ok;
}

}  // namespace

CanvasSaves::Activity::Activity(SettingsOwner& owner, const PresentTime& present, std::string_view title)
    : timing(Rates, BaseTimes), schedule(&owner), name(title), quality(InitialQuality) {
    (void)timing.SetRate(InitialRate, present);
}

CanvasSaves::CanvasSaves(SettingsOwner& owner, const PresentTime& present, Tools tools)
    : OwnedSettings(owner),
      present_(present),
      tools_(tools),
      fixed_(owner, present, "Fixed save"),
      sequential_(owner, present, "Sequential save"),
      background_(owner, present, "Wallpaper"),
      encoder_(tools.jpeg) {
    background_.quality = WallpaperQuality;
}

void CanvasSaves::DoSaves(const DIB& picture) {
    if (!fixed_.enabled && !sequential_.enabled && !background_.enabled) return;
    const double now = present_.Now();
    if (!fixed_.Candidate(now) && !sequential_.Candidate(now) && !background_.Candidate(now)) return;

    Trap({Module, "DoSaves"}, [&] {
        const bool fixed = Runs(fixed_, now);
        const bool sequential = Runs(sequential_, now);
        const bool background = Runs(background_, now);
        if (!fixed && !sequential && !background) return;

        encoder_.BeginPass(picture);
        if (fixed && !SaveFixed(now)) return;
        if (sequential && !SaveSequential(now)) return;
        if (background) SaveBackground(now);
    });
}

void CanvasSaves::ForceUpdate() {
    const double now = present_.Now();
    for (Activity* activity : {&fixed_, &sequential_, &background_}) activity->timing.Force(now);
}

void CanvasSaves::RestartTimes() {
    const double now = present_.Now();
    for (Activity* activity : {&fixed_, &sequential_, &background_}) activity->timing.Restart(now);
}

void CanvasSaves::SetRate(Activity& activity, double seconds) {
    if (activity.timing.SetRate(seconds, present_)) owner_.SettingChanged();
}

void CanvasSaves::SetBaseTime(Activity& activity, double seconds) {
    if (activity.timing.SetBaseTime(seconds)) owner_.SettingChanged();
}

// A run that the schedule suppresses has its next time moved on all the same: it is not made up.
bool CanvasSaves::Runs(Activity& activity, double now) {
    if (!activity.Candidate(now)) return false;
    activity.timing.SetNextTime(now);
    return activity.schedule.EnableNow(now);
}

bool CanvasSaves::SaveFixed(double now) {
    const Bytes bytes = encoder_.Bytes(fixed_.quality);
    if (bytes.empty()) return EncodingFailed(fixed_, now, fixedFileName_);

    // Mode 0 copies the new picture to copy 0000, mode 1 renames the old one: hence the two places to write.
    bool written = false;
    if (cascadeMode_ == 0) written = WriteBytes(fixedFileName_, bytes);
    if (cascadeEnabled_) ShiftCascade();
    if (cascadeMode_ == 1) written = WriteBytes(fixedFileName_, bytes);
    Finish(fixed_, now, fixedFileName_, written, failure_);
    return true;
}

void CanvasSaves::ShiftCascade() {
    FileSystem& files = tools_.files;
    const std::string prefix = JoinPath(ParentFolderName(fixedFileName_), BaseName(fixedFileName_));
    const std::string suffix = std::string(".").append(ExtensionName(fixedFileName_));
    const auto copy = [&](int number) { return prefix + modNumbers::FormatNI(number, "0000") + suffix; };

    for (int i = cascadeCount_; i >= cascadeMode_; --i) {
        const std::string source = i == cascadeMode_ ? fixedFileName_ : copy(i - 1);
        if (i == cascadeCount_) files.DeleteFile(copy(i), true);
        if (i == 0)
            files.CopyFile(source, copy(i));
        else
            files.RenameFile(source, copy(i));
    }
}

bool CanvasSaves::SaveSequential(double now) {
    const Bytes bytes = encoder_.Bytes(sequential_.quality);
    if (bytes.empty()) return EncodingFailed(sequential_, now, sequentialPath_);

    std::string path = JoinPath(sequentialPath_, NextSequentialName(now));
    const bool written = WriteBytes(path, bytes);
    Finish(sequential_, now, std::move(path), written, failure_);
    return true;
}

// Formatting rounds to the nearest second. Below a rate of 1 s the hundredths follow, so there the stamp is
// truncated by a bias of half a second; at 1 s and above it is left to round. Kept: archives sort by it.
std::string CanvasSaves::NextSequentialName(double now) {
    using modNumbers::FormatNI;
    if (sequentialType_ == 1) {
        std::string name = FormatNI(sequentialNumber_, "00000000");
        sequentialNumber_ = sequentialNumber_ >= HighestNumber ? 0 : sequentialNumber_ + 1;
        if (keepNumber_) keepNumber_(sequentialNumber_);
        return name + ".jpg";
    }
    if (sequential_.timing.Rate() >= 1) return FormatNI(FormatDate{now}, StampPattern) + ".jpg";
    return FormatNI(FormatDate{now - modTime::HalfSecondBias}, StampPattern) + FormatNI(Hundredths(), "00") +
           ".jpg";
}

void CanvasSaves::SaveBackground(double now) {
    const std::string folder = tools_.desktop.UserDataFolder();
    const std::string path =
        folder + "/" + std::string(WallpaperName);  // the desktop knows no other separator
    std::string bitmap = path + ".bmp";
    const Bytes bytes = encoder_.Bytes(background_.quality);
    if (bytes.empty()) {
        EncodingFailed(background_, now, bitmap);
        return;
    }
    if (folder.empty()) return Finish(background_, now, std::move(bitmap), false, "no folder for user data");

    bool written = WriteWallpaper(path + ".jpg", bitmap, bytes);
    tools_.files.DeleteFile(path + ".jpg", true);
    if (written && !tools_.desktop.SetWallpaper(bitmap)) {
        written = false;
        failure_ = "the desktop refused it";
    }
    Finish(background_, now, std::move(bitmap), written, failure_);
}

// By way of the JPEG file, so that the wallpaper shows the same pixels as the other outputs.
bool CanvasSaves::WriteWallpaper(const std::string& jpegPath, const std::string& bitmapPath, Bytes bytes) {
    if (!WriteBytes(jpegPath, bytes)) return false;
    const auto file = tools_.files.ReadFile(jpegPath);
    DIB picture;
    if (file && DecodeInto(tools_.jpeg, AsBytes(*file), picture))
        return WriteBytes(bitmapPath, WriteBmp(picture));
    failure_ = "the picture could not be converted";
    return false;
}

bool CanvasSaves::WriteBytes(std::string_view path, Bytes bytes) {
    if (tools_.files.WriteFile(path, AsText(bytes))) return true;
    failure_ = tools_.files.LastFailure();
    return false;
}

bool CanvasSaves::EncodingFailed(Activity& activity, double now, std::string_view path) {
    Finish(activity, now, std::string(path), false, "the picture could not be encoded");
    return false;
}

void CanvasSaves::Finish(Activity& activity, double now, std::string path, bool written,
                         std::string_view why) {
    if (!written && !activity.failing && log_)
        log_(std::string(activity.name) + ": \"" + path + "\" was not written: " + std::string(why));
    activity.failing = !written;
    activity.last = {now, std::move(path), written, std::string(written ? "" : why)};
}

}  // namespace tessaloom
