#include "video/MotionSaves.h"

#include <span>

#include "core/Log.h"
#include "core/modNumbers.h"
#include "imaging/DIB.h"
#include "platform/Ascii.h"
#include "platform/Bytes.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "video/MotionDetect.h"

namespace tessaloom {
namespace {

constexpr std::string_view Suffix = ".jpg";

/// Where the difference image of a frame's file goes: "motion.jpg" has "motion.diff.jpg" beside it.
std::string DifferencePath(std::string_view frameFile) {
    if (ascii::EndsWithText(frameFile, Suffix)) frameFile.remove_suffix(Suffix.size());
    return std::string(frameFile).append(".diff").append(Suffix);
}

}  // namespace

void MotionSaves::Save(const MotionDetect& detector, const DIB& frame) {
    const bool fixed = detector.SaveFixed();
    const bool sequential = detector.SaveSequential();
    if (!fixed && !sequential) return;

    std::string sequentialFile;
    encoder_.BeginPass(frame);
    if (fixed && !Write(detector.SaveFixedFileName(), detector.SaveFixedQuality(), fixedFails_)) return;
    if (sequential) {
        sequentialFile =
            JoinPath(detector.SaveSequentialPath(), NextSequentialName(detector.LastMotionTriggerTime()));
        if (!Write(sequentialFile, detector.SaveSequentialQuality(), sequentialFails_)) return;
    }
    if (!detector.SaveDiff()) return;
    encoder_.BeginPass(detector.Difference());
    const int quality = detector.SaveDiffQuality();
    if (fixed && !Write(DifferencePath(detector.SaveFixedFileName()), quality, fixedFails_)) return;
    if (sequential) Write(DifferencePath(sequentialFile), quality, sequentialFails_);
}

/// Triggers of one second get distinct names.
std::string MotionSaves::NextSequentialName(double moment) {
    std::string stamp = modNumbers::FormatNI(FormatDate{moment}, "YYMMDDHHMMSS");
    counter_ = stamp == stamp_ ? counter_ + 1 : 0;
    stamp_ = std::move(stamp);
    return stamp_ + modNumbers::FormatNI(counter_, "00") + std::string(Suffix);
}

/// False when the picture cannot be encoded, which ends the saves of this trigger.
bool MotionSaves::Write(const std::string& path, int quality, bool& failing) {
    const auto bytes = encoder_.Bytes(quality);
    const bool written = !bytes.empty() && files_.WriteFile(path, AsText(bytes));
    if (!written && !failing)
        Log(LogLevel::Warning,
            "Motion: \"" + path + "\" was not written: " +
                (bytes.empty() ? "the picture could not be encoded" : files_.LastFailure()));
    failing = !written;
    return !bytes.empty();
}

}  // namespace tessaloom
