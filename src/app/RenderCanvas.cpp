#include <chrono>
#include <string_view>
#include <thread>

#include "app/Commands.h"
#include "app/ScratchFiles.h"
#include "core/Log.h"
#include "core/RunFlags.h"
#include "core/main/modMain.h"
#include "core/modNumbers.h"
#include "imaging/Graphic.h"
#include "imaging/JpegEncoder.h"
#include "imaging/modPictureBox.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "platform/Bytes.h"
#include "platform/Platform.h"
#include "publish/CanvasSaves.h"
#include "time/modTime.h"

namespace tessaloom {

namespace {

/// How long pictures from addresses are waited for, and how often they are asked about meanwhile.
constexpr std::chrono::seconds Patience{10};
constexpr std::chrono::milliseconds Pause{5};

/// Ticks the portfolio until the canvas has been composed from all its sources.
void Compose(Portfolio& portfolio) {
    Canvas& canvas = portfolio.Canvas(1);
    // One moment for all ticks: nothing falls due again, and gives up what is on its way, in the meantime.
    portfolio.SetCaptureTime(modTime::Clock());
    canvas.ForceReload();
    portfolio.UpdateImages();
    const auto end = std::chrono::steady_clock::now() + Patience;
    while (canvas.SourcesPending()) {
        if (std::chrono::steady_clock::now() > end) {
            Log(LogLevel::Warning, "Not all pictures came from their addresses in time");
            break;
        }
        std::this_thread::sleep_for(Pause);
        portfolio.UpdateImages();
    }
    // A second look at the rest: the canvas may show itself, and a file may just have been rewritten.
    for (int slot = 1; slot <= Canvas::MaxGraphic; ++slot) {
        Graphic* const graphic = canvas.Graphic(slot);
        if (graphic && graphic->SourceType() != Graphic::Address) graphic->ForceUpdate();
    }
    portfolio.UpdateImages();
}

}  // namespace

int RenderCanvas(Platform& platform, const std::string& canvasFile, const std::string& out) {
    ScratchFiles files(platform.fileSystem);
    Platform unchanging = {files,
                           platform.profile,
                           platform.locale,
                           platform.systemTime,
                           platform.fonts,
                           platform.pictureLoader,
                           platform.jpegCodec,
                           platform.dialogs,
                           platform.desktop,
                           platform.mainWindow,
                           platform.timer,
                           platform.urlTransfers};
    modNumbers::InitNumberFormat(platform.locale);
    modPictureBox::InitializePictureBox();
    modMain::PeekSettings(platform);
    Flags() = {.running = true};

    Portfolio portfolio(unchanging);
    portfolio.SetFaultHandler([](const DocumentFault& fault) { Log(LogLevel::Warning, fault.Text()); });
    Canvas& canvas = portfolio.Canvas(1);
    canvas.SetFileName(canvasFile);
    if (!canvas.LoadFile(Reading::Passive)) {
        Log(LogLevel::Error, "Cannot read the canvas " + canvasFile);
        return ExitStatus::Failure;
    }
    canvas.SetEnabled(true);
    Compose(portfolio);

    JpegEncoder encoder(platform.jpegCodec);
    encoder.BeginPass(canvas.Picture());
    const std::string_view bytes = AsText(encoder.Bytes(canvas.Saves().FixedQuality()));
    if (bytes.empty()) {
        Log(LogLevel::Error, "Cannot encode the picture of " + canvasFile);
        return ExitStatus::Failure;
    }
    if (!platform.fileSystem.ReplaceFile(out, bytes)) {
        Log(LogLevel::Error, "Cannot write " + out + ": " + platform.fileSystem.LastFailure());
        return ExitStatus::Failure;
    }
    return ExitStatus::Success;
}

}  // namespace tessaloom
