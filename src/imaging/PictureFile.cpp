#include "imaging/PictureFile.h"

#include <utility>

#include "core/ErrorReport.h"
#include "locale/Error.h"
#include "platform/Ascii.h"
#include "platform/PictureFormat.h"

namespace tessaloom {

PictureFile::PictureFile(const PictureAccess& access)
    : access_(access), surface_(access.files, access.jpeg, access.pictures, access.errors) {}

bool PictureFile::Stale(std::string_view name) const {
    if (!loadedStamp_ || !loadedStamp_->settled || loadedName_ != name) return true;
    return StampOf(name) != loadedStamp_;
}

PictureFile::Outcome PictureFile::Load(std::string_view name, DIB& target, std::string_view origin) {
    // Taken before reading: what is written meanwhile then counts as another file.
    const auto stamp = StampOf(name);
    int result = LoadJpegIntoDIB(access_.files, access_.jpeg, access_.pictures, name, target, &buffers_);
    refusal_ = PictureRefusal::None;
    if (result == NotJpegName) result = LoadThroughSurface(name, target);
    if (result != Loaded) {
        const bool wasGood = fault_ == Loaded && loadedName_ == name;
        const bool changing = (stamp && !stamp->settled) || StampOf(name) != stamp;
        loadedStamp_.reset();
        std::string source(name);
        if (origin.empty()) return Fail(source, result, wasGood || changing);
        return Fail(source.append(" (").append(origin).append(")"), result, false);
    }
    loadedName_ = name;
    loadedStamp_ = stamp;
    fault_ = Loaded;
    secondChance_ = false;
    return Outcome::Loaded;
}

std::optional<FileStamp> PictureFile::StampOf(std::string_view name) const {
    if (auto stamp = access_.files.Stamp(name)) return stamp;
    // Blanks around the name of a JPEG file mean nothing.
    const std::string_view trimmed = ascii::Trimmed(name);
    return trimmed.empty() ? std::nullopt : access_.files.Stamp(trimmed);
}

int PictureFile::LoadThroughSurface(std::string_view name, DIB& target) {
    if (!access_.files.FileExists(name)) return Missing;
    surface_.InitPictureBox();
    surface_.SetAutoSize(autoSize_);
    if (!surface_.SetPictureFile(name)) {
        refusal_ = surface_.Refusal();
        return Unreadable;
    }
    const DeviceContext* source = surface_.hDC();
    if (!source) return Unreadable;
    DIB& spare = buffers_.spare;
    spare.SetWidthHeight(surface_.Width(), surface_.Height());
    if (!spare.DIBPtr()) {
        spare.SetWidthHeight(0, 0);
        return Unreadable;
    }
    spare.hDC()->BitBlt(0, 0, spare.Width(), spare.Height(), *source, 0, 0);
    target.Swap(spare);
    return Loaded;
}

std::string PictureFile::WhyUnreadable() const {
    if (refusal_ == PictureRefusal::NotSupported)
        return faultSource_ + " is not a supported picture (" + std::string(PictureFormatNames) + ")";
    std::string text = "No picture that is whole and not too large can be read from " + faultSource_;
    if (refusal_ != PictureRefusal::None) text.append(": ").append(Words(refusal_));
    return text;
}

PictureFile::Outcome PictureFile::Fail(const std::string& source, int result, bool maybeUnfinished) {
    if (maybeUnfinished && !secondChance_) {
        secondChance_ = true;
        return Outcome::Failed;
    }
    if (fault_ == result && faultSource_ == source) return Outcome::FailedAgain;
    fault_ = result;
    faultSource_ = source;
    const auto number = result == Missing ? ErrorNumber::FileNotFound : ErrorNumber::DeviceIO;
    Report({.module = "Image.cls",
            .procedure = "LoadPicture",
            .number = static_cast<int>(number),
            .description = result == Missing ? "There is no picture file " + faultSource_ : WhyUnreadable()});
    return Outcome::Failed;
}

}  // namespace tessaloom
