#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "imaging/Graphic.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "support/TestPlatform.h"
#include "text/Text.h"

namespace tessaloom::testing {

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
};

}  // namespace tessaloom::testing
