#include <string_view>

#include "app/Commands.h"
#include "app/ReadOnlyFiles.h"
#include "core/Log.h"
#include "core/RunFlags.h"
#include "core/main/modMain.h"
#include "core/modNumbers.h"
#include "imaging/JpegEncoder.h"
#include "imaging/modPictureBox.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "platform/Platform.h"
#include "publish/CanvasSaves.h"
#include "time/modTime.h"

namespace tessaloom {

namespace {

/// Ticks the portfolio until the canvas has been composed from all its sources.
void Compose(Portfolio& portfolio) {
    // One tick composes the canvas; a canvas that shows itself takes a second one to show what it shows.
    constexpr int Ticks = 2;
    for (int tick = 0; tick < Ticks; ++tick) {
        portfolio.SetCaptureTime(modTime::Clock());
        portfolio.Canvas(1).ForceReload();
        portfolio.UpdateImages();
    }
}

std::string Bytes(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

int RenderCanvas(Platform& platform, const std::string& canvasFile, const std::string& out) {
    ReadOnlyFiles files(platform.fileSystem);
    Platform readOnly = {files,
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

    Portfolio portfolio(readOnly);
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
    const std::string bytes = Bytes(encoder.Bytes(canvas.Saves().FixedQuality()));
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
