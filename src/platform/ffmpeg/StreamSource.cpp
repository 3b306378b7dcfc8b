#include "platform/ffmpeg/StreamSource.h"

#include "platform/ffmpeg/StreamReader.h"

namespace tessaloom {

std::string StreamSource::Run(FrameInbox& inbox) {
    const CertificateCheck check(authorities_);
    const StreamReader::Tools tools{converter_, *decoder_, check};
    switch (address_.kind) {
        case StreamAddress::Kind::Stream:
            return StreamReader(address_, inbox, tools, nullptr).Run();
        case StreamAddress::Kind::File: {
            Pacer pacer(inbox);
            for (;;) {
                // Opened anew for each pass: not every file can be wound back, and it may have been replaced.
                StreamReader pass(address_, inbox, tools, &pacer);
                const std::string reason = pass.Run();
                if (!pass.Ended() || inbox.Stopped()) return reason;
            }
        }
        case StreamAddress::Kind::Unknown:
            break;
    }
    return "addresses of this kind are not known";
}

}  // namespace tessaloom
