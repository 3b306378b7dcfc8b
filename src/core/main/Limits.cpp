#include "core/main/Limits.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/INI.h"
#include "core/Log.h"
#include "core/Store.h"
#include "core/modNumbers.h"
#include "platform/JpegCodec.h"
#include "platform/PictureLoader.h"
#include "platform/Platform.h"
#include "platform/UrlTransfer.h"

namespace tessaloom {

namespace {

std::optional<int> Setting(INI& settings, std::string_view key, Range<int> allowed) {
    constexpr std::string_view Section = "X-Limits";
    const std::string text = settings.GetKey(Section, key, WriteDefault::No, "");
    if (text.empty()) return std::nullopt;
    double number = 0;
    const bool usable = modNumbers::TryDblNI(text, number);
    const double held = Clamped<double>(number, {double(allowed.low), double(allowed.high)});
    if (!usable || held != number)
        Log(LogLevel::Warning, settings.File() + " [" + std::string(Section) + "] " + std::string(key) + "=" +
                                   text + (usable ? ": out of range" : ": not a number"));
    return usable ? std::optional(static_cast<int>(held)) : std::nullopt;
}

}  // namespace

void LoadLimits(const Platform& platform, INI& settings) {
    constexpr Range<int> Sizes{1, 2000};
    constexpr Range<int> Times{1, 3600};  // seconds

    PictureLimits pictures;
    if (const auto megapixels = Setting(settings, "PictureMegapixels", Sizes))
        pictures.pixels = std::int64_t{*megapixels} * 1'000'000;
    platform.pictureLoader.SetLimits(pictures);
    platform.jpegCodec.SetLimits(pictures);

    TransferLimits transfers;
    if (const auto megabytes = Setting(settings, "DownloadMegabytes", Sizes)) {
        transfers.bytes = static_cast<std::size_t>(*megabytes) << 20;
        transfers.bytesTogether = 4 * transfers.bytes;
    }
    if (const auto seconds = Setting(settings, "DownloadSeconds", Times))
        transfers.totalMilliseconds = *seconds * 1000;
    platform.urlTransfers.SetLimits(transfers);
}

}  // namespace tessaloom
