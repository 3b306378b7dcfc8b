// Text layers: expanding tags, drawing a changed line, a canvas full of clocks, taking a weather record; and
// ten lines on a canvas of 1920 x 1080 beside Pango with Cairo and the drawtext filter, turn by turn in one
// run, so that all see the same machine.

#define __STDC_CONSTANT_MACROS  // asked for by the filter library's headers
extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/frame.h>
#include <libavutil/log.h>
}
#include <pango/pangocairo.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/Effort.h"
#include "imaging/DIB.h"
#include "locale/DateParts.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "platform/text/FreeTypeFonts.h"
#include "support/FakeLayerHost.h"
#include "support/TestPlatform.h"
#include "text/TagSource.h"
#include "text/Tags.h"
#include "text/Text.h"
#include "text/VWS.h"

namespace tessaloom {
namespace {

constexpr int Width = 1920, Height = 1080, Lines = 10, LinePixels = 24;

double Microseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// The median of `turns` measurements of `repeats` calls each, for one call.
double Typical(int turns, int repeats, const std::function<void()>& work) {
    std::vector<double> times;
    for (int turn = 0; turn < Effort(turns, 1); ++turn)
        times.push_back(Microseconds([&] {
                            for (int i = 0; i < repeats; ++i) work();
                        }) /
                        repeats);
    return Median(times);
}

void Print(const char* what, double value, const char* unit, double limit) {
    std::printf("%-52s %10.3f %-13s (limit %g)\n", what, value, unit, limit);
}

/// A line of thirty characters, another one for each number.
std::string Line(int number) {
    std::string line = "Station 12 caption, frame ";
    const std::string digits = std::to_string(10000 + number % 10000);
    return line + digits.substr(1);
}

class Source final : public TagSource {
public:
    double LastMotionTime(int) const override { return 46037.25; }
    const VWS* Weather() const override { return weather; }
    const VWS* weather = nullptr;
};

std::string Record(int number) {
    const std::string second = std::to_string(number % 60), minute = std::to_string(number / 60 % 60),
                      hour = std::to_string(number / 3600 % 24), day = std::to_string(1 + number / 86400);
    std::string text = "0,1.01,2026,7," + day + "," + hour + "," + minute + "," + second + ",3.2,5.1," +
                       std::to_string(number % 360);
    for (int k = 11; k <= 40; ++k) text += ",21.50";
    return text + "\r\n";
}

/// Files in memory whose writing costs nothing, so that the reading alone is measured.
class RecordFile final : public testing::MemoryFileSystem {
public:
    bool ReplaceFile(std::string_view, std::string_view, Access) override { return true; }
};

void MeasureTags() {
    testing::TestPlatform platform;
    platform.time.Set(testing::FakeTime::FirstDay, 13, 5, 59.7);
    Source source;
    std::string text;
    const auto expand = [&](const std::string& typed) {
        return Typical(101, 2000, [&] {
            text = typed;
            ExpandTags(text, platform.time.Now(), source);
        });
    };
    Print("expand a text without tags", expand("Just a caption of a station"), "us", 0.2);
    Print("expand ten tags of date and time",
          expand("<DATEYYYY><DATE0M><DATE0D> <TIMEHH><TIMEMM><TIMESS> <TIME100S><TIME><DATEMONTH><DATED>"),
          "us", 5);
    testing::CountingOwner owner;
    RecordFile files;
    VWS weather(owner, platform.time, files);
    weather.SetCSVFile("w.csv");
    files["w.csv"].bytes = Record(0);
    weather.GetCSVData();
    source.weather = &weather;
    Print("expand ten tags of the weather",
          expand("<csvouttemp> <csvmaxtemptoday> <csvwind> <csvgust> <csvcomp> <csvbarom> <csvbaromtrend> "
                 "<csvdailyrain> <csvdew> <csvstatwind>"),
          "us", 5);
}

struct OneLayer {
    testing::TestPlatform platform;
    testing::FakeLayerHost host;
    FreeTypeFonts fonts;
    Source source;
    LayerTiming entry;
    Text layer{host, entry, fonts, &source};

    OneLayer() { layer.SetFontSize(LinePixels * 0.75F); }

    void Show(const std::string& text) {
        layer.SetValue(text);
        layer.ProcessText();
        layer.UpdateImage();
        layer.Image().FinalOpacityDIB();
    }
};

/// Reads the list of the installed fonts, too. To be called before anything else is drawn.
void MeasureFirstLine() {
    std::unique_ptr<OneLayer> one;
    const double time = Microseconds([&] {
        one = std::make_unique<OneLayer>();
        one->Show(Line(0));
    });
    Print("first line of the process", time / 1000, "ms", 10);
}

void MeasureLine() {
    for (const auto& [what, smoothing, limit] :
         {std::tuple("a changed line of 30 characters, two-level", 0, 60.0),
          std::tuple("a changed line of 30 characters, grey", 1, 60.0),
          std::tuple("a changed line of 30 characters, sub-pixel", 2, 100.0)}) {
        OneLayer one;
        one.layer.SetFontSmoothing(smoothing);
        int number = 0;
        one.Show(Line(1234567890));
        Print(what, Typical(301, 20, [&] { one.Show(Line(number++)); }), "us", limit);
    }
    std::vector<double> first;
    OneLayer one;
    one.Show(Line(0));  // the list of fonts is read once in a process
    one.layer.SetFontSmoothing(1);
    for (const char* face : {"Times New Roman", "Courier New", "DejaVu Sans", "Verdana", "No Such Face"}) {
        one.layer.SetFontName(face);
        first.push_back(Microseconds([&] { one.Show(Line(0)); }));
    }
    Print("first use of a face", *std::ranges::max_element(first) / 1000, "ms", 10);
}

void MeasureClocks() {
    testing::TestPlatform services;
    FreeTypeFonts fonts;
    Platform& fakes = services.platform;
    Platform platform{
        fakes.fileSystem, fakes.profile, fakes.locale,  fakes.systemTime, fonts,       fakes.pictureLoader,
        fakes.jpegCodec,  fakes.dialogs, fakes.desktop, fakes.mainWindow, fakes.timer, fakes.urlTransfers};
    Portfolio portfolio(platform);
    for (int slot = 1; slot <= 2; ++slot) {  // a canvas has 100 texts at most
        Canvas& canvas = portfolio.Canvas(slot);
        canvas.SetWidthHeight(Width, Height);
        canvas.SetEnabled(true);
        for (int i = 1; i <= Canvas::MaxText; ++i) {
            Text& layer = *canvas.AddText(i);
            layer.SetValue("<TIME100>");
            layer.SetFontSize(LinePixels * 0.75F);
            layer.SetFontSmoothing(1);
            layer.Setx((i - 1) % 10 * 190);
            layer.SetY((i - 1) / 10 * 50);
            layer.SetRate(0.1);
        }
    }
    const auto tick = [&] {
        services.time.Advance(0.1);
        portfolio.SetCaptureTime(services.time.Now());
        portfolio.UpdateImages();
    };
    tick();
    Print("200 layers of <TIME100> at 0.1 s, share of one core", Typical(101, 1, tick) / 1e5 * 100, "%", 15);
}

void MeasureRecords() {
    testing::TestPlatform platform;
    testing::CountingOwner owner;
    for (const int window : {60, 3600}) {
        RecordFile files;
        VWS weather(owner, platform.time, files);
        weather.SetCSVFile("w.csv");
        weather.SetCSVWindStatisticsInterval(window);
        int number = 0;
        const auto take = [&] {
            files["w.csv"].bytes = Record(number += 15);
            weather.GetCSVData();
        };
        const double empty = Typical(21, 20, take);
        for (int i = 0; i < VWS::DatabaseRecords; ++i) take();
        const std::string what = "a weather record, window of " + std::to_string(window) + " s";
        Print((what + ", new").c_str(), empty, "us", 50);
        Print((what + ", full ring").c_str(), Typical(101, 20, take), "us", 50);
    }
}

// --- Ten lines on one picture ---

class OurLines {
public:
    explicit OurLines(int smoothing) {
        canvas_.SetWidthHeight(Width, Height);
        canvas_.Clear(0x404040);
        for (int i = 0; i < Lines; ++i) {
            auto& layer = layers_.emplace_back(std::make_unique<Text>(host_, entries_[i], fonts_, &source_));
            layer->SetFontSize(LinePixels * 0.75F);
            layer->SetFontName("Liberation Sans");
            layer->SetFontSmoothing(smoothing);
            layer->SetColor(0xFFFFFF);
            layer->Setx(20);
            layer->SetY(20 + i * 40);
        }
    }
    void Draw(int frame) {
        for (auto& layer : layers_) {
            layer->SetValue(Line(frame));
            layer->ProcessText();
            layer->UpdateImage();
        }
        for (auto& layer : layers_) layer->MergeImageTo(canvas_);
    }

private:
    testing::TestPlatform platform_;
    testing::FakeLayerHost host_;
    FreeTypeFonts fonts_;
    Source source_;
    LayerTiming entries_[Lines];
    std::vector<std::unique_ptr<Text>> layers_;
    DIB canvas_;
};

class CairoLines {
public:
    CairoLines() {
        surface_ = cairo_image_surface_create(CAIRO_FORMAT_RGB24, Width, Height);
        cairo_ = cairo_create(surface_);
        cairo_set_source_rgb(cairo_, 1, 1, 1);
        PangoFontDescription* font = pango_font_description_from_string("Liberation Sans");
        pango_font_description_set_absolute_size(font, LinePixels * PANGO_SCALE);
        for (PangoLayout*& layout : layouts_) {
            layout = pango_cairo_create_layout(cairo_);
            pango_layout_set_font_description(layout, font);
        }
        pango_font_description_free(font);
    }
    ~CairoLines() {
        for (PangoLayout* layout : layouts_) g_object_unref(layout);
        cairo_destroy(cairo_);
        cairo_surface_destroy(surface_);
    }
    CairoLines(const CairoLines&) = delete;
    CairoLines& operator=(const CairoLines&) = delete;

    void Draw(int frame) {
        int row = 20;
        for (PangoLayout* layout : layouts_) {
            pango_layout_set_text(layout, Line(frame).c_str(), -1);
            cairo_move_to(cairo_, 20, row);
            pango_cairo_show_layout(cairo_, layout);
            row += 40;
        }
        cairo_surface_flush(surface_);
    }

private:
    cairo_surface_t* surface_;
    cairo_t* cairo_;
    PangoLayout* layouts_[Lines];
};

/// One filter a line, on one frame that goes round and is drawn on in place.
class FilterLines {
public:
    FilterLines() {
        std::string chain;
        for (int i = 0; i < Lines; ++i)
            chain += (i > 0 ? "," : "") +
                     std::string("drawtext=font='Liberation Sans':fontcolor=white:fontsize=") +
                     std::to_string(LinePixels) + ":x=20:y=" + std::to_string(20 + i * 40) +
                     ":text='Station 12 caption, frame %{eif\\:n\\:d\\:4}'";
        const std::string size = "video_size=" + std::to_string(Width) + "x" + std::to_string(Height);
        graph_ = avfilter_graph_alloc();
        graph_->nb_threads = 1;
        AVFilterInOut *inputs = avfilter_inout_alloc(), *outputs = avfilter_inout_alloc();
        ready_ = avfilter_graph_create_filter(&source_, avfilter_get_by_name("buffer"), "in",
                                              (size + ":pix_fmt=bgr24:time_base=1/10").c_str(), nullptr,
                                              graph_) >= 0 &&
                 avfilter_graph_create_filter(&sink_, avfilter_get_by_name("buffersink"), "out", nullptr,
                                              nullptr, graph_) >= 0;
        *outputs = {av_strdup("in"), source_, 0, nullptr};
        *inputs = {av_strdup("out"), sink_, 0, nullptr};
        ready_ = ready_ && avfilter_graph_parse_ptr(graph_, chain.c_str(), &inputs, &outputs, nullptr) >= 0 &&
                 avfilter_graph_config(graph_, nullptr) >= 0;
        avfilter_inout_free(&inputs);
        avfilter_inout_free(&outputs);
        frame_ = av_frame_alloc();
        frame_->format = AV_PIX_FMT_BGR24;
        frame_->width = Width;
        frame_->height = Height;
        ready_ = ready_ && av_frame_get_buffer(frame_, 0) >= 0;
    }
    ~FilterLines() {
        av_frame_free(&frame_);
        avfilter_graph_free(&graph_);
    }
    FilterLines(const FilterLines&) = delete;
    FilterLines& operator=(const FilterLines&) = delete;

    void Draw(int frame) {
        frame_->pts = frame;
        ready_ = ready_ && av_buffersrc_add_frame(source_, frame_) >= 0 &&
                 av_buffersink_get_frame(sink_, frame_) >= 0;
    }
    bool Ready() const { return ready_; }

private:
    AVFilterGraph* graph_ = nullptr;
    AVFilterContext *source_ = nullptr, *sink_ = nullptr;
    AVFrame* frame_ = nullptr;
    bool ready_ = false;
};

bool CompareLines() {
    av_log_set_level(AV_LOG_ERROR);
    OurLines grey(1), subPixel(2);
    CairoLines cairo;
    FilterLines filters;
    struct {
        const char* name;
        std::function<void(int)> draw;
        std::vector<double> times;
    } rows[] = {
        {"grey",         [&](int frame) { grey.Draw(frame); },     {}},
        {"sub-pixel",    [&](int frame) { subPixel.Draw(frame); }, {}},
        {"Pango, Cairo", [&](int frame) { cairo.Draw(frame); },    {}},
        {"drawtext",     [&](int frame) { filters.Draw(frame); },  {}},
    };
    const int frames = Effort(301, 3);
    for (int frame = 0; frame < frames; ++frame)
        for (std::size_t i = 0; i < std::size(rows); ++i) {
            auto& row = rows[(i + static_cast<std::size_t>(frame)) % std::size(rows)];
            row.times.push_back(Microseconds([&] { row.draw(frame); }));
        }
    if (!filters.Ready()) {
        std::puts("drawtext does not work here");
        return false;
    }
    const double ours = Median(rows[0].times);
    for (const auto& row : rows)
        std::printf("ten lines, %-14s %10.1f us   %6.2f of grey\n", row.name, Median(row.times),
                    Median(row.times) / ours);
    return true;
}

}  // namespace

bool MeasureText() {
    MeasureFirstLine();
    MeasureTags();
    MeasureLine();
    MeasureClocks();
    MeasureRecords();
    return CompareLines();
}

}  // namespace tessaloom

int main() { return tessaloom::MeasureText() ? 0 : 1; }
