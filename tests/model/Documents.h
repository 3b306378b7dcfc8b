#pragma once

#include "imaging/Graphic.h"
#include "model/Canvas.h"
#include "model/CanvasView.h"
#include "model/Portfolio.h"
#include "support/TestPlatform.h"
#include "text/Text.h"

namespace tessaloom::testing {

/// A file of tests/data/model.
inline std::string Data(const std::string& name) {
    std::ifstream file(TEST_DATA "/model/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Counts the compositions of a canvas.
class CountingView : public CanvasView {
public:
    explicit CountingView(int& shown) : shown_(shown) {}
    void ShowPicture(const DIB&) override { ++shown_; }
    void CanvasChanged() override {}
    void ActivitateFormTimer() override {}
    int Left() const override { return 12; }
    int Top() const override { return 34; }

private:
    int& shown_;
};

/// A portfolio on a platform of fakes, and short ways to build documents and to look at them.
struct Documents : TestPlatform {
    Portfolio portfolio{platform};
    std::vector<DocumentFault> faults;

    Documents() {
        portfolio.SetFaultHandler([this](const DocumentFault& fault) { faults.push_back(fault); });
        portfolio.SetCaptureTime(time.Now());
    }

    /// Canvas `slot`, open, `width` x `height`, black.
    Canvas& Open(int slot, int width = 40, int height = 30) {
        Canvas& canvas = portfolio.Canvas(slot);
        canvas.SetWidthHeight(width, height);
        canvas.SetBackgroundColor(0);
        canvas.SetEnabled(true);
        return canvas;
    }

    /// A plain block as graphic layer `slot`.
    static Graphic& Block(Canvas& canvas, int slot, int colour, int x, int y, int width, int height,
                          int pass = 1) {
        Graphic& graphic = *canvas.AddGraphic(slot);
        graphic.SetBackgroundColor(colour);
        graphic.Setx(x);
        graphic.SetY(y);
        graphic.SetStretchWidth(width);
        graphic.SetStretchHeight(height);
        graphic.SetLayer(pass);
        return graphic;
    }

    /// A text of solid boxes as text layer `slot`; each character is 6 x 12 pixels.
    static Text& Boxes(Canvas& canvas, int slot, std::string_view text, int colour, int x, int y,
                       int pass = 1) {
        Text& layer = *canvas.AddText(slot);
        layer.SetFontSize(9);
        layer.SetValue(text);
        layer.SetColor(colour);
        layer.Setx(x);
        layer.SetY(y);
        layer.SetLayer(pass);
        return layer;
    }

    /// The next tick, `seconds` later: all that the main timer runs.
    void Tick(double seconds = 1) {
        time.Advance(seconds);
        portfolio.SetCaptureTime(time.Now());
        portfolio.UpdateOtherPre();
        portfolio.UpdateImages();
        portfolio.UpdateVideoFeeds();
        portfolio.UpdateInputDevices();
        portfolio.UpdateOtherPost();
    }

    std::string Value(std::string_view file, std::string_view section, std::string_view key) {
        return profile.Get(file, section, key);
    }

    void Write(std::string_view file, std::string_view text) { files[file].bytes = text; }

    /// The keys of each section of a profile file, in order.
    std::map<std::string, std::vector<std::string>> Contents(const std::string& file) {
        std::map<std::string, std::vector<std::string>> sections;
        for (const ProfileSection& section : profile.Sections(file))
            for (const ProfileKey& key : profile.Keys(file, section.name))
                sections[section.name].push_back(key.name + "=" + key.value);
        return sections;
    }

    /// The lines of a profile file that a file of tests/data/model does not have.
    std::vector<std::string> Differences(const std::string& file, const std::string& data) {
        Write("expected", Data(data));
        auto expected = Contents("expected");
        std::vector<std::string> lines;
        for (const auto& [section, keys] : Contents(file))
            for (const std::string& line : keys)
                if (!std::ranges::count(expected[section], line)) lines.push_back(line);
        return lines;
    }

    /// What was reported since the last call.
    std::vector<std::string> TakeFaults() {
        std::vector<std::string> lines;
        for (const DocumentFault& fault : std::exchange(faults, {})) lines.push_back(fault.Text());
        return lines;
    }
};

}  // namespace tessaloom::testing
