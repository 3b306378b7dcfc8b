#include "publish/CanvasWebServer.h"

#include "core/ErrorReport.h"
#include "platform/Bytes.h"
#include "time/modTime.h"

namespace tessaloom {

namespace {

constexpr std::string_view Module = "CanvasWebServer.cls";
constexpr double Tolerance = 1e-6;  ///< Seconds; a moment is exact to half of that.

}  // namespace

void CanvasWebServer::SetPicture(const DIB& picture, JpegCodec& codec) {
    picture_ = &picture;
    encoder_ = std::make_unique<JpegEncoder>(codec);
}

SharedBytes CanvasWebServer::JPEGData() {
    Trap({Module, "JPEGData"}, [&] {
        const double now = modTime::Clock();
        const double age = (now - lastModified_) * modTime::SecondsPerDay;
        if (jpeg_ && interval_ > 0 && lastModified_ != 0 && age <= interval_ + Tolerance) return;
        lastModified_ = now;
        jpeg_.reset();
        if (!encoder_) return;
        encoder_->BeginPass(*picture_);
        const auto bytes = encoder_->Bytes(quality_);
        if (bytes.empty()) return;  // nothing composed yet, for one: the next request tries again
        jpeg_ = std::make_shared<const std::string>(AsText(bytes));
    });
    static const SharedBytes None = std::make_shared<const std::string>();
    return jpeg_ ? jpeg_ : None;
}

}  // namespace tessaloom
