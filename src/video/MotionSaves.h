#pragma once

#include <string>
#include <string_view>

#include "imaging/JpegEncoder.h"

namespace tessaloom {

class DIB;
class FileSystem;
class MotionDetect;

/// Writes the pictures of a trigger to the files that the settings of its detector name.
///
/// Files that cannot be written are told to the log once, until one of their kind is written again.
class MotionSaves {
public:
    /// Both outlive this object.
    MotionSaves(FileSystem& files, JpegCodec& codec) : files_(files), encoder_(codec) {}

    /// Saves `frame`, and the difference image beside it, of the trigger that `detector` recorded last.
    void Save(const MotionDetect& detector, const DIB& frame);

private:
    std::string NextSequentialName(double moment);
    bool Write(const std::string& path, int quality, bool& failing);

    FileSystem& files_;
    JpegEncoder encoder_;
    std::string stamp_;  ///< Of the last sequential file.
    int counter_ = 0;
    bool fixedFails_ = false;
    bool sequentialFails_ = false;
};

}  // namespace tessaloom
