#include "platform/ffmpeg/StreamSources.h"

#include <utility>

#include "platform/ffmpeg/Library.h"
#include "platform/ffmpeg/StreamSource.h"

namespace tessaloom {

StreamSources::StreamSources(MakeJpegDecoder makeDecoder, std::string authorities)
    : makeDecoder_(std::move(makeDecoder)), authorities_(std::move(authorities)) {
    // What goes wrong is told in words of our own; the library's could hold passwords.
    av_log_set_level(AV_LOG_QUIET);
    avformat_network_init();
}

std::unique_ptr<CaptureSource> StreamSources::Make(const std::string& address) {
    return std::make_unique<StreamSource>(address, makeDecoder_(), authorities_);
}

}  // namespace tessaloom
