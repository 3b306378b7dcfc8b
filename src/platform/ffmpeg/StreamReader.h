#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "platform/CaptureSource.h"
#include "platform/JpegDecoder.h"
#include "platform/ffmpeg/CertificateCheck.h"
#include "platform/ffmpeg/FrameConverter.h"
#include "platform/ffmpeg/Library.h"
#include "platform/ffmpeg/Pacer.h"
#include "platform/ffmpeg/StreamAddress.h"

namespace tessaloom {

/// One opening of a stream or file: reads packets, decodes pictures, hands over those that are wanted.
class StreamReader {
public:
    /// What lasts from one opening to the next.
    struct Tools {
        FrameConverter& converter;
        JpegDecoder& jpegs;
        const CertificateCheck& certificates;  ///< Of the thread that reads.
    };

    /// pacer: holds pictures back to their own speed; null: they are taken as they come.
    StreamReader(const StreamAddress& address, FrameInbox& inbox, Tools tools, Pacer* pacer);
    ~StreamReader();
    StreamReader(const StreamReader&) = delete;
    StreamReader& operator=(const StreamReader&) = delete;

    /// Reads to the end; returns why it ended.
    std::string Run();

    /// True when the end was that of the file, not a failure, and pictures had come before it.
    bool Ended() const { return ended_; }

private:
    using Clock = std::chrono::steady_clock;

    static int MustGiveUp(void* self);
    static int OpenPart(AVFormatContext* context, AVIOContext** part, const char* url, int flags,
                        AVDictionary** options);

    /// Whether opening or reading is over: nobody wants it, nothing came in time, or it may not go on.
    bool Over();

    /// Whether a place is out of bounds: in clear, though the address is a secured one.
    bool Leaves(std::string_view place);
    bool LeavesBy(AVIOContext& part);

    std::string Open();
    std::string OpenDecoder();
    std::string Read();

    /// Nothing while all is well, else why reading is over.
    std::optional<std::string> Feed(const AVPacket* packet);
    std::optional<std::string> TakeFrame();
    std::optional<std::string> TakeJpeg(const AVPacket& packet, JpegResult result);

    /// Into the inbox, where nobody sees it yet.
    JpegResult DecodeJpeg(const AVPacket& packet);

    /// A picture has come. time: its own, in units of the stream. True: somebody wants it.
    bool Arrived(std::int64_t time);

    bool Late() const { return Clock::now() > deadline_; }
    void ExtendDeadline();
    std::string Reason(int error) const;

    const StreamAddress& address_;
    FrameInbox& inbox_;
    const Tools tools_;
    Pacer* pacer_;
    Clock::time_point deadline_;
    Clock::time_point lastPicture_;
    AVFormatContext* opening_ = nullptr;  ///< While the library opens it.
    Owned<AVFormatContext> input_;
    Owned<AVCodecContext> decoder_;
    Owned<AVPacket> packet_;
    Owned<AVFrame> frame_;
    decltype(AVFormatContext::io_open) openPart_ = nullptr;  ///< The library's own way.
    int stream_ = -1;
    bool independent_ = false;  ///< Every picture can be decoded without those before it.
    bool jpegs_ = false;        ///< They are such as the decoder of JPEG pictures takes.
    bool announced_ = false;    ///< The inbox knows of the packet at hand, and wants its picture.
    bool pictures_ = false;     ///< Some have come.
    bool damaged_ = false;      ///< The last one could not be decoded, though it needs no other.
    bool ended_ = false;
    bool left_ = false;  ///< It led to a place out of bounds.
};

}  // namespace tessaloom
