// Picture files of any kind, through the two decoders and onto a surface: no byte of a file may do harm.

#include <QGuiApplication>
#include <cstdlib>

#include "imaging/ErrorsFile.h"
#include "imaging/Picture.h"
#include "platform/jpeg/JpegFrameDecoder.h"
#include "platform/jpeg/TurboJpegCodec.h"
#include "platform/qt/QtPictureLoader.h"
#include "support/MemoryFileSystem.h"
#include "support/TestLocales.h"

namespace {

using namespace tessaloom;

struct Parts {
    int count = 1;
    char name[5] = "fuzz", *arguments[2] = {name, nullptr};
    QGuiApplication application{count, arguments};  // text in vector pictures needs it
    QtPictureLoader loader;
    TurboJpegCodec codec;
    JpegFrameDecoder frames;
    tessaloom::testing::MemoryFileSystem files;
    UserLocale locale = tessaloom::testing::EnglishLocale();
    ErrorsFile errors{files, locale};
    Picture picture{files, codec, loader, errors};

    Parts() {
        constexpr PictureLimits Limits{.side = 4000, .pixels = 500'000, .work = 5'000'000};
        loader.SetLimits(Limits);
        codec.SetLimits(Limits);
        frames.SetLimits(Limits);
        picture.InitPictureBox();
        picture.SetAutoSize(true);
    }

    /// As pictures of a camera.
    void DecodeFrame(std::span<const std::uint8_t> file) {
        JpegHeader header;
        if (frames.ReadHeader(file, header) != JpegResult::Ok) return;
        std::vector<std::uint8_t> rows(static_cast<std::size_t>(header.width) * 3 *
                                       static_cast<std::size_t>(header.height));
        frames.Decode(file, header, rows.data(), header.width * 3);
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool offscreen = qputenv("QT_QPA_PLATFORM", "offscreen");
    static Parts& parts = *new Parts;  // lives as long as the pool of surfaces
    if (!offscreen) std::abort();
    parts.files["picture"].bytes.assign(reinterpret_cast<const char*>(data), size);
    parts.files["errors.txt"].bytes.clear();
    parts.picture.SetPictureFile("picture");
    parts.DecodeFrame({data, size});
    if (const LoadedPicture loaded = parts.loader.Load({data, size})) {
        const auto width = static_cast<std::size_t>(loaded.width),
                   height = static_cast<std::size_t>(loaded.height);
        if (loaded.pixels.size() != (width * 3 + 3) / 4 * 4 * height) std::abort();
        if (!loaded.alpha.empty() && loaded.alpha.size() != width * height) std::abort();
    }
    return 0;
}
