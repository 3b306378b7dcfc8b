#pragma once

#include "platform/jpeg/JpegFrameDecoder.h"

namespace tessaloom::testing {

inline std::unique_ptr<JpegDecoder> MakeFrameDecoder() { return std::make_unique<JpegFrameDecoder>(); }

}  // namespace tessaloom::testing
