#include "platform/ffmpeg/StreamReader.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/PictureLimits.h"

namespace tessaloom {

namespace {

/// How long a source may take until its first pictures, and later until the next one: three times as long as
/// before, within these bounds.
constexpr std::chrono::steady_clock::duration Patience = std::chrono::seconds(10);
constexpr std::chrono::steady_clock::duration ShortestPatience = std::chrono::seconds(5);
constexpr std::chrono::steady_clock::duration LongestPatience = std::chrono::seconds(60);

/// How much the library may look at before it knows what it reads.
constexpr std::int64_t ProbeBytes = 5'000'000;
constexpr std::int64_t ProbeMicroseconds = 500'000;

constexpr const char* Unusable = "its pictures cannot be used";

/// Options for whichever protocol is in use; those that it does not know are left over.
class Options {
public:
    explicit Options(const char* protocols) {
        Set("protocol_whitelist", protocols);
        Set("rtsp_flags", "prefer_tcp");  // a packet lost on the way smears the picture for seconds
        Set("overrun_nonfatal", "1");     // a burst over UDP costs some pictures, not the stream
        Set("fifo_size", "8192");         // packets of 188 bytes
        Set("http_proxy", "");            // nor any from the environment
        Set("user_agent", "Tessaloom");
        if (!CertificateCheck::InForce()) Set("protocol_blacklist", "tls");
    }
    ~Options() { av_dict_free(&entries_); }
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;

    AVDictionary** Entries() { return &entries_; }

private:
    void Set(const char* key, const char* value) { av_dict_set(&entries_, key, value, 0); }

    AVDictionary* entries_ = nullptr;
};

bool DecodesIndependently(AVCodecID codec) {
    const AVCodecDescriptor* descriptor = avcodec_descriptor_get(codec);
    return descriptor && (descriptor->props & AV_CODEC_PROP_INTRA_ONLY);
}

}  // namespace

StreamReader::StreamReader(const StreamAddress& address, FrameInbox& inbox, Tools tools, Pacer* pacer)
    : address_(address), inbox_(inbox), tools_(tools), pacer_(pacer) {}

StreamReader::~StreamReader() = default;

int StreamReader::MustGiveUp(void* self) { return static_cast<StreamReader*>(self)->Over(); }

bool StreamReader::Over() {
    // An RTSP camera's redirection is seen here alone, before anything is sent to the new place.
    const bool left = left_ || (opening_ && opening_->url && Leaves(opening_->url));
    return left || inbox_.Stopped() || Late() || !tools_.certificates.Refusal().empty();
}

bool StreamReader::Leaves(std::string_view place) {
    constexpr std::string_view Encrypted = "crypto+";  // a part that is also encrypted by itself
    if (place.starts_with(Encrypted)) place.remove_prefix(Encrypted.size());
    if (address_.secured && !StreamAddress::Secured(place)) left_ = true;
    return left_;
}

/// By a redirection, when the part is open.
bool StreamReader::LeavesBy(AVIOContext& part) {
    std::uint8_t* place = nullptr;
    if (av_opt_get(&part, "location", AV_OPT_SEARCH_CHILDREN, &place) < 0 || !place) return false;
    const bool leaves = Leaves(reinterpret_cast<const char*>(place));
    av_free(place);
    return leaves;
}

/// Opens the stream itself, and the parts that a playlist names.
int StreamReader::OpenPart(AVFormatContext* context, AVIOContext** part, const char* url, int flags,
                           AVDictionary** options) {
    auto& reader = *static_cast<StreamReader*>(context->opaque);
    if (reader.Leaves(url)) return AVERROR(EPERM);
    const int result = reader.openPart_(context, part, url, flags, options);
    if (result < 0 || !reader.LeavesBy(**part)) return result;
    avio_closep(part);
    return AVERROR(EPERM);
}

std::string StreamReader::Run() {
    ExtendDeadline();
    if (std::string failure = Open(); !failure.empty()) return failure;
    if (std::string failure = OpenDecoder(); !failure.empty()) return failure;
    return Read();
}

std::string StreamReader::Open() {
    if (address_.secured && !CertificateCheck::InForce()) return "certificates cannot be verified here";
    AVFormatContext* context = avformat_alloc_context();
    if (!context) return Reason(AVERROR(ENOMEM));
    openPart_ = std::exchange(context->io_open, &StreamReader::OpenPart);
    context->opaque = this;
    context->interrupt_callback = {&StreamReader::MustGiveUp, this};
    context->probesize = ProbeBytes;
    context->max_analyze_duration = ProbeMicroseconds;
    context->fps_probe_size = 0;
    Options options(address_.protocols);
    opening_ = context;
    // Frees the context when it fails.
    int result = avformat_open_input(&context, address_.location.c_str(), nullptr, options.Entries());
    opening_ = nullptr;
    if (result < 0) return Reason(result);
    input_.reset(context);
    result = avformat_find_stream_info(context, nullptr);
    return result < 0 ? Reason(result) : "";
}

std::string StreamReader::OpenDecoder() {
    const AVCodec* codec = nullptr;
    stream_ = av_find_best_stream(input_.get(), AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
    if (stream_ < 0 || !codec) return "it holds no video that can be decoded";
    for (unsigned i = 0; i < input_->nb_streams; ++i)
        if (static_cast<int>(i) != stream_) input_->streams[i]->discard = AVDISCARD_ALL;
    const AVStream& stream = *input_->streams[stream_];
    decoder_.reset(avcodec_alloc_context3(codec));
    packet_.reset(av_packet_alloc());
    frame_.reset(av_frame_alloc());
    if (!decoder_ || !packet_ || !frame_) return Reason(AVERROR(ENOMEM));
    int result = avcodec_parameters_to_context(decoder_.get(), stream.codecpar);
    if (result < 0) return Reason(result);
    decoder_->thread_count = 1;
    // A file is in no hurry, and its pictures may not be in the order of their showing.
    if (!pacer_) decoder_->flags |= AV_CODEC_FLAG_LOW_DELAY;
    // This decoder makes up what is missing unless told not to. Others tell damage themselves; some, so told,
    // refuse sound pictures, and films would stand still at each lost packet.
    if (codec->id == AV_CODEC_ID_MJPEG) decoder_->err_recognition |= AV_EF_EXPLODE;
    decoder_->max_pixels = PictureLimits().pixels;
    result = avcodec_open2(decoder_.get(), codec, nullptr);
    if (result < 0) return Reason(result);
    independent_ = DecodesIndependently(codec->id);
    // Colours of the range of films are the library's to tell.
    jpegs_ = codec->id == AV_CODEC_ID_MJPEG && stream.codecpar->color_range != AVCOL_RANGE_MPEG;
    if (pacer_) {
        const AVRational rate = av_guess_frame_rate(input_.get(), input_->streams[stream_], nullptr);
        pacer_->BeginPass(rate.num > 0 && rate.den > 0 ? av_q2d(av_inv_q(rate)) : 0.04);
    }
    return "";
}

std::string StreamReader::Read() {
    for (;;) {
        const int result = av_read_frame(input_.get(), packet_.get());
        if (Over()) return Reason(AVERROR_EXIT);
        if (result == AVERROR(EAGAIN)) continue;
        const bool end = result == AVERROR_EOF;
        if (result < 0 && !end) return Reason(result);
        if (end || packet_->stream_index == stream_) {
            const auto failure = Feed(end ? nullptr : packet_.get());
            av_packet_unref(packet_.get());
            if (failure) return *failure;
        } else {
            av_packet_unref(packet_.get());
        }
        if (!end) continue;
        if (pacer_) pacer_->EndPass();
        ended_ = pictures_;
        return pictures_ || damaged_ ? Reason(AVERROR_EOF) : "it holds no picture";
    }
}

/// A null packet drains the decoder.
std::optional<std::string> StreamReader::Feed(const AVPacket* packet) {
    // Where each picture stands for itself, those that nobody asks for are not even decoded.
    announced_ = independent_ && pictures_ && packet && !pacer_;
    if (announced_ && !inbox_.Arrived()) {
        ExtendDeadline();
        return std::nullopt;
    }
    if (jpegs_ && packet) {
        const JpegResult result = DecodeJpeg(*packet);
        if (result != JpegResult::Unsupported) return TakeJpeg(*packet, result);
    }
    // Damaged packets are skipped; the deadline ends a stream that has nothing else.
    if (avcodec_send_packet(decoder_.get(), packet) < 0) damaged_ = independent_;
    while (avcodec_receive_frame(decoder_.get(), frame_.get()) >= 0) {
        const auto failure = TakeFrame();
        av_frame_unref(frame_.get());
        if (failure) return failure;
    }
    return std::nullopt;
}

std::optional<std::string> StreamReader::TakeFrame() {
    if ((frame_->flags & AV_FRAME_FLAG_CORRUPT) || frame_->decode_error_flags) return std::nullopt;
    if (!Arrived(frame_->best_effort_timestamp)) return std::nullopt;
    if (tools_.converter.Convert(*frame_, inbox_)) return std::nullopt;
    return Unusable;
}

std::optional<std::string> StreamReader::TakeJpeg(const AVPacket& packet, JpegResult result) {
    if (result == JpegResult::TooLarge) return Unusable;
    if (result != JpegResult::Ok) {
        damaged_ = true;
    } else if (Arrived(packet.pts == AV_NOPTS_VALUE ? packet.dts : packet.pts)) {
        inbox_.Commit();
    }
    return std::nullopt;
}

JpegResult StreamReader::DecodeJpeg(const AVPacket& packet) {
    const std::span file(packet.data, static_cast<std::size_t>(packet.size));
    JpegHeader header;
    const JpegResult result = tools_.jpegs.ReadHeader(file, header);
    if (result != JpegResult::Ok) return result;
    // Two files, of every other row each, may make one picture.
    if (header.height * 2 == input_->streams[stream_]->codecpar->height) return JpegResult::Unsupported;
    if (!inbox_.Accepts(header.width, header.height)) return JpegResult::TooLarge;
    const std::span<std::uint8_t> rows = inbox_.Begin({.width = header.width, .height = header.height});
    if (rows.empty()) return JpegResult::TooLarge;
    return tools_.jpegs.Decode(file, header, rows.data(), static_cast<int>(rows.size()) / header.height);
}

bool StreamReader::Arrived(std::int64_t time) {
    if (pacer_) {
        const double unit = av_q2d(input_->streams[stream_]->time_base);
        pacer_->Wait(time == AV_NOPTS_VALUE ? -1 : static_cast<double>(time) * unit);
    }
    ExtendDeadline();
    pictures_ = true;
    damaged_ = false;
    return announced_ || inbox_.Arrived();
}

void StreamReader::ExtendDeadline() {
    const auto now = Clock::now();
    const auto interval = now - lastPicture_;
    deadline_ = now + (pictures_ ? std::clamp(3 * interval, ShortestPatience, LongestPatience) : Patience);
    lastPicture_ = now;
}

std::string StreamReader::Reason(int error) const {
    if (inbox_.Stopped()) return "closed";
    if (left_) return "it leads to a place that is not secured";
    if (!tools_.certificates.Refusal().empty()) return tools_.certificates.Refusal();
    if (damaged_ && (Late() || !pictures_)) return "its pictures are damaged";
    if (Late()) return "nothing came in time";
    if (error == AVERROR_EOF) return "the stream has ended";
    return ErrorText(error);
}

}  // namespace tessaloom
