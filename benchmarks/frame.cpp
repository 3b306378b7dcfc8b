// A composed frame of 1920 x 1080: one full picture, three of 640 x 360 at 60 %, ten lines of shadowed text,
// all layers cached. Composed as a whole, and after one layer changed: the canvas remembers where. Beside it
// the same composition in calls of OpenCV, which remember nothing, and, with JPEG, the overlay and drawtext
// filters with the mjpeg encoder. All on one thread, turn by turn in one run.

#define __STDC_CONSTANT_MACROS  // asked for by the filter library's headers
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/frame.h>
#include <libavutil/log.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>
#include <memory>
#include <opencv2/core.hpp>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "benchmarks/Effort.h"
#include "imaging/BmpFile.h"
#include "imaging/Graphic.h"
#include "imaging/JpegEncoder.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "platform/jpeg/TurboJpegCodec.h"
#include "platform/qt/QtPictureLoader.h"
#include "platform/text/FreeTypeFonts.h"
#include "support/TestPlatform.h"
#include "text/Text.h"

namespace tessaloom {
namespace {

constexpr int Width = 1920, Height = 1080, SmallWidth = 640, SmallHeight = 360, Small = 3;
constexpr int Lines = 10, LinePixels = 24, LineX = 20, LineStep = 56, TextWidth = 520, Quality = 80;
constexpr double ShadowIntensity = 30;  // what a canvas begins with, percent
constexpr double Opacity = 0.6;

int SmallX(int i) { return 20 + i * 630; }
int SmallY(int i) { return 600 + i * 40; }
int LineY(int i) { return 20 + i * LineStep; }
std::string Line(int i) { return "Station 12 - a line of text - number " + std::to_string(i); }
std::string FirstLine(int turn) { return Line(turn % 2 == 0 ? 0 : Lines); }

/// Of the processor: what else runs on the machine does not count.
double Milliseconds(const std::function<void()>& work) {
    const std::clock_t start = std::clock();
    work();
    return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

double Median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// Soft waves with a little noise, as a camera has them.
void Paint(DIB& scene, int width, int height, int seed) {
    std::mt19937 random(static_cast<unsigned>(seed));
    scene.SetWidthHeight(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            std::uint8_t* pixel = scene.DIBPtr() + static_cast<std::ptrdiff_t>(y) * scene.Stride() + x * 3;
            for (int c = 0; c < 3; ++c)
                pixel[c] = static_cast<std::uint8_t>(128 + 90 * std::sin((x * (c + 1) + y * seed) / 97.0) +
                                                     static_cast<int>(random() % 8));
        }
}

cv::Mat TopDown(const DIB& picture) {
    cv::Mat bottomUp(picture.Height(), picture.Width(), CV_8UC3, const_cast<std::uint8_t*>(picture.DIBPtr()),
                     static_cast<std::size_t>(picture.Stride()));
    cv::Mat result;
    cv::flip(bottomUp, result, 0);
    return result;
}

struct Scenes {
    DIB full, small[Small];
    std::shared_ptr<DIB> frames[2];  ///< What a feed brings, turn by turn.

    Scenes() {
        Paint(full, Width, Height, 1);
        for (int i = 0; i < Small; ++i) Paint(small[i], SmallWidth, SmallHeight, i + 2);
        for (int i = 0; i < 2; ++i) {
            frames[i] = std::make_shared<DIB>();
            Paint(*frames[i], SmallWidth, SmallHeight, i + 7);
        }
    }
};

/// Our canvas, on fakes but for fonts and codecs.
class Ours {
public:
    explicit Ours(const Scenes& scenes)
        : scenes_(scenes), portfolio_(platform_), canvas_(portfolio_.Canvas(1)) {
        canvas_.SetWidthHeight(Width, Height);
        canvas_.SetEnabled(true);
        Picture(1, scenes.full, 0, 0);
        for (int i = 0; i < Small; ++i) Picture(i + 2, scenes.small[i], SmallX(i), SmallY(i)).SetOpacity(60);
        for (int i = 0; i < Lines; ++i) {
            Text& line = *canvas_.AddText(i + 1);
            line.SetValue(Line(i));
            line.SetFontName("Liberation Sans");
            line.SetFontSize(LinePixels * 0.75F);
            line.SetFontSmoothing(1);
            line.SetColor(0xFFFFFF);
            line.Setx(LineX);
            line.SetY(LineY(i));
            line.SetShadow(true);
            line.SetLayer(2);
        }
        fakes_.time.Advance(1);
        portfolio_.SetCaptureTime(fakes_.time.Now());
        portfolio_.UpdateImages();
    }

    void Compose() {
        canvas_.ForceRedraw();
        canvas_.UpdateImage();
    }
    /// The first of the small pictures shows another frame: as with a feed, which shares its frames.
    void ComposeNewFrame(int turn) {
        Graphic& layer = *canvas_.Graphic(2);
        layer.SetSourceType(Graphic::VideoFeed);
        layer.SetSourceVideoFeed(Graphic::NoFeed);
        layer.Image().ShareIntoPictureDIB(scenes_.frames[turn % 2]);
        layer.SetChanged(true);
        canvas_.UpdateImage();
    }

    /// The first line has another text, which is drawn.
    void ComposeNewLine(int turn) {
        TextLayer(0).SetValue(FirstLine(turn));
        canvas_.UpdateImage();
    }

    std::size_t Encode() {
        encoder_.BeginPass(canvas_.Picture());
        return encoder_.Bytes(Quality).size();
    }
    const DIB& Result() const { return canvas_.Picture(); }
    Text& TextLayer(int i) { return *canvas_.Text(i + 1); }

private:
    Graphic& Picture(int slot, const DIB& picture, int x, int y) {
        const std::string name = "picture" + std::to_string(slot) + ".bmp";
        const auto bytes = WriteBmp(picture);
        fakes_.files[name].bytes.assign(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        Graphic& layer = *canvas_.AddGraphic(slot);
        layer.SetSourceType(1);
        layer.SetSourceFileName(name);
        layer.Setx(x);
        layer.SetY(y);
        return layer;
    }

    const Scenes& scenes_;
    testing::TestPlatform fakes_;
    FreeTypeFonts fonts_;
    QtPictureLoader pictures_;
    TurboJpegCodec codec_;
    Platform platform_{fakes_.files,   fakes_.profile,    fakes_.locale, fakes_.time,
                       fonts_,         pictures_,         codec_,        fakes_.dialogs,
                       fakes_.desktop, fakes_.mainWindow, fakes_.timer,  fakes_.urlTransfers};
    Portfolio portfolio_;
    Canvas& canvas_;
    JpegEncoder encoder_{codec_};
};

/// The same in calls of OpenCV. The lines' coverage and densities are found once, as ours are: here from
/// ours.
class Theirs {
public:
    Theirs(const Scenes& scenes, Ours& ours) : full_(TopDown(scenes.full)), picture_(full_.clone()) {
        for (const DIB& small : scenes.small) small_.push_back(TopDown(small));
        for (const auto& frame : scenes.frames) frames_.push_back(TopDown(*frame));
        for (int i = 0; i < Lines; ++i) lines_.push_back(Taken(ours.TextLayer(i), LineY(i)));
        for (int turn : {1, 0}) {
            ours.ComposeNewLine(turn);
            firstLines_.insert(firstLines_.begin(), Taken(ours.TextLayer(0), LineY(0)));
        }
    }

    void Compose() {
        full_.copyTo(picture_);
        for (int i = 0; i < Small; ++i) {
            cv::Mat part = picture_(cv::Rect(SmallX(i), SmallY(i), SmallWidth, SmallHeight));
            cv::addWeighted(small_[static_cast<std::size_t>(i)], Opacity, part, 1 - Opacity, 0, part);
        }
        for (const Cached& line : lines_) {
            cv::Mat part = picture_(line.box);
            cv::multiply(part, line.light, part, 1 / 255.0);
            cv::multiply(part, line.rest, part, 1 / 255.0);
            cv::add(part, line.paint, part);
        }
    }

    void ComposeNewFrame(int turn) {
        small_[0] = frames_[static_cast<std::size_t>(turn % 2)];
        Compose();
    }

    void ComposeNewLine(int turn) {
        lines_[0] = firstLines_[static_cast<std::size_t>(turn % 2)];
        Compose();
    }

    const cv::Mat& Result() const { return picture_; }

private:
    struct Cached {
        cv::Rect box;
        cv::Mat light, paint, rest;
    };

    static Cached Taken(Text& layer, int top) {
        DIB shadow, text;
        for (DIB* bitmap : {&shadow, &text}) bitmap->SetWidthHeight(Width, Height);
        layer.MergeShadowTo(shadow);
        layer.MergeImageTo(text);  // white on black: its coverage
        const cv::Rect box(LineX - 8, top - 4, TextWidth, LineStep - 8);
        Cached cached{box, TopDown(shadow)(box).clone(), TopDown(text)(box).clone(), {}};
        // At the density of the canvas's shadows.
        cached.light.convertTo(cached.light, CV_8UC3, -ShadowIntensity / 100.0, 255);
        cv::bitwise_not(cached.paint, cached.rest);
        return cached;
    }

    cv::Mat full_, picture_;
    std::vector<cv::Mat> small_, frames_;
    std::vector<Cached> lines_, firstLines_;
};

/// Overlay and drawtext filters in `format`, then the mjpeg encoder.
class Filters {
public:
    Filters(const Scenes& scenes, AVPixelFormat format, AVPixelFormat overlays, const char* blend)
        : format_(format) {
        graph_ = avfilter_graph_alloc();
        graph_->nb_threads = 1;
        std::string chain, last = "[base]";
        for (int i = 0; i < Small; ++i) {
            const std::string next = "[o" + std::to_string(i) + "]";
            chain += last + "[s" + std::to_string(i) + "]overlay=x=" + std::to_string(SmallX(i)) +
                     ":y=" + std::to_string(SmallY(i)) + ":format=" + blend + next + ";";
            last = next;
        }
        chain += last;
        for (int i = 0; i < Lines; ++i)
            chain +=
                (i > 0 ? "," : "") +
                std::string("drawtext=font='Liberation Sans':fontcolor=white:shadowx=2:shadowy=2:fontsize=") +
                std::to_string(LinePixels) + ":x=" + std::to_string(LineX) +
                ":y=" + std::to_string(LineY(i)) + ":text='" + Escaped(Line(i)) + "'";
        chain += std::string(",format=yuvj420p[out]");
        AVFilterInOut *inputs = nullptr, *outputs = nullptr;
        outputs = Source("base", base_, Width, Height, format, outputs);
        for (int i = 0; i < Small; ++i)
            outputs = Source("s" + std::to_string(i), smalls_[i], SmallWidth, SmallHeight, overlays, outputs);
        Need(avfilter_graph_create_filter(&sink_, avfilter_get_by_name("buffersink"), "sink", nullptr,
                                          nullptr, graph_));
        inputs = avfilter_inout_alloc();
        *inputs = {av_strdup("out"), sink_, 0, nullptr};
        Need(avfilter_graph_parse_ptr(graph_, chain.c_str(), &inputs, &outputs, nullptr));
        Need(avfilter_graph_config(graph_, nullptr));
        avfilter_inout_free(&inputs);
        avfilter_inout_free(&outputs);

        full_ = Converted(scenes.full, format, 255);
        for (int i = 0; i < Small; ++i) {  // one frame, which the filter repeats
            AVFrame* frame = Converted(scenes.small[i], overlays, static_cast<int>(Opacity * 255));
            Need(av_buffersrc_add_frame(smalls_[i], frame));
            Need(av_buffersrc_add_frame(smalls_[i], nullptr));
            av_frame_free(&frame);
        }
        encoder_ = avcodec_alloc_context3(avcodec_find_encoder(AV_CODEC_ID_MJPEG));
        encoder_->width = Width;
        encoder_->height = Height;
        encoder_->pix_fmt = AV_PIX_FMT_YUVJ420P;
        encoder_->time_base = {1, 25};
        encoder_->thread_count = 1;
        encoder_->flags |= AV_CODEC_FLAG_QSCALE;
        encoder_->global_quality = FF_QP2LAMBDA * Scale;
        Need(avcodec_open2(encoder_, encoder_->codec, nullptr));
    }
    ~Filters() {
        av_frame_free(&full_);
        av_frame_free(&result_);
        av_packet_free(&packet_);
        avcodec_free_context(&encoder_);
        avfilter_graph_free(&graph_);
    }
    Filters(const Filters&) = delete;
    Filters& operator=(const Filters&) = delete;

    std::size_t Frame(int number) {
        full_->pts = number;
        Need(av_buffersrc_add_frame_flags(base_, full_, AV_BUFFERSRC_FLAG_KEEP_REF));
        Need(av_buffersink_get_frame(sink_, result_));
        result_->quality = encoder_->global_quality;
        Need(avcodec_send_frame(encoder_, result_));
        Need(avcodec_receive_packet(encoder_, packet_));
        const auto size = static_cast<std::size_t>(packet_->size);
        av_packet_unref(packet_);
        av_frame_unref(result_);
        return size;
    }
    bool Ready() const { return ready_; }

private:
    static constexpr int Scale = 3;  // about the size of ours at 80

    static std::string Escaped(std::string text) {
        for (std::size_t at = 0; (at = text.find(',', at)) != std::string::npos; at += 2)
            text.insert(at, "\\");
        return text;
    }
    void Need(int result) { ready_ = ready_ && result >= 0; }

    AVFilterInOut* Source(const std::string& name, AVFilterContext*& context, int width, int height,
                          AVPixelFormat format, AVFilterInOut* before) {
        const std::string arguments = "video_size=" + std::to_string(width) + "x" + std::to_string(height) +
                                      ":pix_fmt=" + std::to_string(format) + ":time_base=1/25";
        Need(avfilter_graph_create_filter(&context, avfilter_get_by_name("buffer"), name.c_str(),
                                          arguments.c_str(), nullptr, graph_));
        AVFilterInOut* const output = avfilter_inout_alloc();
        *output = {av_strdup(name.c_str()), context, 0, before};
        return output;
    }

    AVFrame* Converted(const DIB& picture, AVPixelFormat format, int alpha) {
        const cv::Mat rows = TopDown(picture);
        AVFrame* frame = av_frame_alloc();
        frame->format = format;
        frame->width = picture.Width();
        frame->height = picture.Height();
        Need(av_frame_get_buffer(frame, 0));
        SwsContext* scaler =
            sws_getContext(picture.Width(), picture.Height(), AV_PIX_FMT_BGR24, picture.Width(),
                           picture.Height(), format, SWS_POINT, nullptr, nullptr, nullptr);
        const std::uint8_t* from[] = {rows.data};
        const int steps[] = {static_cast<int>(rows.step[0])};
        sws_scale(scaler, from, steps, 0, picture.Height(), frame->data, frame->linesize);
        sws_freeContext(scaler);
        for (int y = 0; y < frame->height && alpha < 255; ++y)
            for (int x = 0; x < frame->width; ++x) {
                if (frame->data[3])
                    frame->data[3][y * frame->linesize[3] + x] = static_cast<std::uint8_t>(alpha);
                else
                    frame->data[0][y * frame->linesize[0] + x * 4 + 3] = static_cast<std::uint8_t>(alpha);
            }
        return frame;
    }

    AVPixelFormat format_;
    AVFilterGraph* graph_ = nullptr;
    AVFilterContext *base_ = nullptr, *smalls_[Small] = {}, *sink_ = nullptr;
    AVFrame *full_ = nullptr, *result_ = av_frame_alloc();
    AVPacket* packet_ = av_packet_alloc();
    AVCodecContext* encoder_ = nullptr;
    bool ready_ = true;
};

/// In the mean, and in 999 of 1,000 components.
bool Alike(const cv::Mat& ours, const cv::Mat& theirs) {
    cv::Mat difference;
    cv::absdiff(ours, theirs, difference);
    const double mean = cv::norm(difference, cv::NORM_L1) / static_cast<double>(difference.total() * 3);
    const double most = cv::norm(difference, cv::NORM_INF);
    std::printf("ours and OpenCV's differ by %.3f in the mean, %.0f at most\n", mean, most);
    return mean < 0.5 && most <= 8;
}

struct Row {
    const char* name;
    std::function<void(int)> draw;
    std::vector<double> times;
};

void Run(std::span<Row> rows) {
    const int turns = Effort(120, 4);
    for (int turn = 0; turn < turns; ++turn)
        for (std::size_t i = 0; i < rows.size(); ++i) {
            Row& row = rows[(i + static_cast<std::size_t>(turn)) % rows.size()];
            row.times.push_back(Milliseconds([&] { row.draw(turn); }));
        }
}

/// What the memory alone asks of a frame: the full picture is copied to where a result would be.
/// OpenCV's calls run in between, so that the caches are as they are in the other rows.
void MeasureTraffic(const Scenes& scenes, Ours& ours, Theirs& theirs) {
    DIB result;
    result.SetWidthHeight(Width, Height);
    Row rows[] = {
        {"composed frame",            [&](int) { ours.Compose(); },                              {}},
        {"  the full picture copied",
         [&](int) { std::memcpy(result.DIBPtr(), scenes.full.DIBPtr(), result.SizeInBytes()); },
         {}                                                                                        },
        {"",                          [&](int) { theirs.Compose(); },                            {}},
    };
    Run(rows);
    const double time = Median(rows[0].times), least = Median(rows[1].times);
    std::printf("%-36s %8.3f ms  ratio %5.2f\n", rows[1].name, least, time / least);
}

/// Composes without JPEG; whether both came to the same.
bool MeasureComposing(Ours& ours, Theirs& theirs) {
    struct Kind {
        const char *name, *theirs;
        std::function<void(int)> draw, drawTheirs;
        double bound;
    };
    const Kind kinds[] = {
        {"composed frame",                    "  OpenCV calls",                        [&](int) { ours.Compose(); }, [&](int) { theirs.Compose(); },
         0.4                                                                                                                                                             },
        {"one small picture has a new frame", "  OpenCV calls, all again",
         [&](int turn) { ours.ComposeNewFrame(turn); },                                                              [&](int turn) { theirs.ComposeNewFrame(turn); }, 0.4},
        {"one line has a new text, drawn",    "  OpenCV calls, all again; line ready",
         [&](int turn) { ours.ComposeNewLine(turn); },                                                               [&](int turn) { theirs.ComposeNewLine(turn); },  0.4},
    };
    bool good = true;
    for (const Kind& kind : kinds) {
        Row rows[] = {
            {kind.name,   kind.draw,       {}},
            {kind.theirs, kind.drawTheirs, {}},
        };
        Run(rows);
        good = Alike(TopDown(ours.Result()), theirs.Result()) && good;
        const double time = Median(rows[0].times), theirTime = Median(rows[1].times);
        std::printf("%-36s %8.3f ms\n", kind.name, time);
        std::printf("%-36s %8.3f ms  ratio %5.2f  (%.2f)%s\n", kind.theirs, theirTime, time / theirTime,
                    kind.bound, time <= kind.bound * theirTime ? "" : "  missed");
    }
    return good;
}

int Measure() {
    cv::setNumThreads(1);
    av_log_set_level(AV_LOG_ERROR);
    const Scenes scenes;
    Ours ours(scenes);
    Theirs theirs(scenes, ours);
    const bool good = MeasureComposing(ours, theirs);
    MeasureTraffic(scenes, ours, theirs);

    Filters planes(scenes, AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUVA420P, "yuv420");
    Filters packed(scenes, AV_PIX_FMT_BGR24, AV_PIX_FMT_BGRA, "rgb");
    std::size_t sizes[4] = {};
    Row published[] = {
        {"composed frame and JPEG",
         [&](int) {
             ours.Compose();
             sizes[0] = ours.Encode();
         },                                                                             {}},
        {"one new frame and JPEG",
         [&](int turn) {
             ours.ComposeNewFrame(turn);
             sizes[1] = ours.Encode();
         },                                                                             {}},
        {"  filters, mjpeg, yuv420p", [&](int turn) { sizes[2] = planes.Frame(turn); }, {}},
        {"  filters, mjpeg, bgr24",   [&](int turn) { sizes[3] = packed.Frame(turn); }, {}},
    };
    Run(published);
    if (!planes.Ready() || !packed.Ready()) {
        std::puts("the filters do not work here");
        return 1;
    }
    const double bounds[] = {0, 0, 2.2, 4};
    for (int i = 0; i < 4; ++i) {
        const double time = Median(published[i].times), times = time / Median(published[0].times);
        std::printf("%-36s %8.3f ms %8zu bytes %7.1f frames a second", published[i].name, time, sizes[i],
                    1000 / time);
        if (bounds[i] > 0)
            std::printf("  ours %.2f times as many (%.1f)%s", times, bounds[i],
                        times >= bounds[i] ? "" : "  missed");
        std::puts("");
    }
    return good ? 0 : 1;
}

}  // namespace
}  // namespace tessaloom

int main() { return tessaloom::Measure(); }
