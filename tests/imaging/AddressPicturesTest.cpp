// Picture layers whose addresses lead to a real server, decoders and files.

#include <thread>

#include "imaging/ErrorsFile.h"
#include "imaging/Graphic.h"
#include "imaging/modPictureBox.h"
#include "platform/UserLocale.h"
#include "platform/curl/CurlTransfers.h"
#include "platform/jpeg/TurboJpegCodec.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/qt/QtPictureLoader.h"
#include "support/CaughtReports.h"
#include "support/FakeLayerHost.h"
#include "support/LocalHttpServer.h"
#include "support/PictureData.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::testing {
namespace {

namespace fs = std::filesystem;
using Connection = LocalHttpServer::Connection;

std::string Text(const std::vector<std::uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }

class AddressPictures : public ::testing::Test {
protected:
    AddressPictures() { fs::current_path(folder.Path()); }
    ~AddressPictures() override { fs::current_path(before); }

    /// The layer is due; polls until its picture has come, or has not.
    void Update(const std::string& address) {
        layer.SetSourceURL(address);
        layer.UpdateImage();
        for (int i = 0; i < 60'000 && layer.SourcePending(); ++i) {
            transfers.Poll();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        transfers.Poll();
        layer.Image().GetFinalizedDIB();
    }

    int Shown(int part) {
        return layer.Image().GetFinalizedDIB().Pixel(part % 2 == 0 ? 8 : 25, part < 2 ? 6 : 18);
    }

    fs::path before = fs::current_path();
    TemporaryFolder folder;
    LocalHttpServer server;
    PosixFileSystem files;
    TurboJpegCodec codec;
    QtPictureLoader loader;
    UserLocale locale;
    ErrorsFile errors{files, locale};
    CurlTransfers transfers;
    PictureAccess access{files, codec, loader, errors, transfers};
    CaughtReports reports;
    FakeLayerHost host;
    LayerTiming timing;
    Graphic layer{host, timing, access};
};

TEST_F(AddressPictures, AreShownInEveryFormatUnderTheirTemporaryNames) {
    layer.SetSourceType(Graphic::Address);
    layer.SetCanvasValue(3);
    layer.SetIndexValue(7);
    const struct {
        const char *data, *path, *file;
    } rows[] = {
        {"quarters.jpg", "/cam.JPEG",        "tmp03007.jpg"},
        {"quarters.jpg", "/cam",             "tmp03007.bin"},
        {"quarters.png", "/cam.png",         "tmp03007.bin"},
        {"quarters.bmp", "/cam.bmp",         "tmp03007.bmp"},
        {"quarters.png", "/mislabelled.gif", "tmp03007.gif"},
        {"quarters.jpg", "/mislabelled.bmp", "tmp03007.bmp"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path);
        layer.Image().ClearDIB();
        server.Serve(row.path, Text(PictureData(row.data)));
        Update(server.Address(row.path));
        EXPECT_TRUE(fs::exists(row.file));
        ASSERT_EQ(layer.Width(), 33);
        for (const int part : {0, 1, 2, 3})
            for (const int shift : {0, 8, 16})
                EXPECT_NEAR(Shown(part) >> shift & 0xFF, Quarters[part] >> shift & 0xFF, 12);
    }
    EXPECT_EQ(reports.Count(), 0);
}

TEST_F(AddressPictures, StayAsTheyWereWhateverAServerSends) {
    constexpr TransferLimits Patient{.bytes = 4 << 20}, Brief{.bytes = 4 << 20, .totalMilliseconds = 200};
    transfers.SetLimits(Patient);
    layer.SetSourceType(Graphic::Address);
    const std::string good = Text(PictureData("quarters.jpg"));
    server.Serve("/good.jpg", good);
    Update(server.Address("/good.jpg"));
    ASSERT_EQ(layer.Width(), 33);

    const std::string page = "<html><body>Not here</body></html>";
    const std::string huge = "P6 100000 100000 255\n";
    server.Serve("/page.jpg", page);
    server.Serve("/empty.jpg", "");
    server.Serve("/cut.jpg", good.substr(0, good.size() - 20));
    server.Serve("/cut.gif", Text(PictureData("animated.gif")).substr(0, 60));
    server.Serve("/cut.bmp", Text(PictureData("quarters.bmp")).substr(0, 600));
    server.Serve("/png.jpg", Text(PictureData("quarters.png")));
    server.Serve("/huge.bin", huge);
    server.Serve("/endless.png", "\x8AMNG\r\n\x1A\n");  // the name does not count
    server.Serve("/page.gif", page);
    server.Serve("/entities.svg", "<!DOCTYPE svg [<!ENTITY a 'a'>]><svg/>");
    server.On("/short.jpg",
              [&](Connection& to) { to.Send("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n" + good); });
    server.On("/silent.jpg", [](Connection& to) { to.GoneWithin(-1); });
    server.On("/trickle.jpg", [&](Connection& to) {
        to.Send("HTTP/1.1 200 OK\r\n\r\n");
        for (const char byte : good)
            if (to.GoneWithin(10) || !to.Send({&byte, 1})) return;
    });
    server.On("/flood.jpg", [&](Connection& to) {
        to.Send("HTTP/1.1 200 OK\r\n\r\n" + good);
        while (to.Send(std::string(65536, '\0'))) {}
    });
    for (const char* path : {"/missing.jpg", "/page.jpg", "/empty.jpg", "/cut.jpg", "/cut.gif", "/cut.bmp",
                             "/png.jpg", "/huge.bin", "/endless.png", "/page.gif", "/entities.svg",
                             "/short.jpg", "/silent.jpg", "/trickle.jpg", "/flood.jpg"}) {
        SCOPED_TRACE(path);
        reports.Clear();
        const bool holds =
            std::string_view(path) == "/silent.jpg" || std::string_view(path) == "/trickle.jpg";
        transfers.SetLimits(holds ? Brief : Patient);
        for (int again = 0; again < 2; ++again) Update(server.Address(path));
        EXPECT_EQ(layer.Width(), 33);
        EXPECT_GT(Shown(1) >> 8 & 0xFF, 240) << "green";
        EXPECT_EQ(reports.Count(), 1);
        EXPECT_EQ(reports.CountAbout(path), 1);
    }
    transfers.SetLimits(Patient);
    for (const auto& entry : fs::directory_iterator(folder.Path()))
        EXPECT_LE(entry.file_size(), 4U << 20) << entry.path();
    Update(server.Address("/good.jpg"));
    EXPECT_EQ(layer.Width(), 33);
}

TEST_F(AddressPictures, OfDamagedFilesNeverDoHarm) {
    std::mt19937 random(20260115);
    layer.SetSourceType(Graphic::PictureFile);
    layer.SetOpacityUseFile(true);
    layer.SetFeatherWidth(2);
    layer.SetShadow(true);
    DIB canvas;
    canvas.SetWidthHeight(64, 64);
    int shown = 0;
    for (int round = 0; round < 400; ++round) {
        for (const auto& entry : fs::directory_iterator(TEST_DATA "/pictures")) {
            const std::string name = "f" + entry.path().extension().string();
            files.WriteFile(name, Text(Mutated(PictureData(entry.path().filename().string()), random)));
            layer.SetSourceFileName(name);
            layer.SetOpacityFileName(name);
            layer.SetRotationAngle(static_cast<float>(random() % 4 * 45));
            layer.SetCropLeft(static_cast<int>(random() % 50));
            layer.UpdateImage();
            canvas.Clear(0);
            layer.MergeImageTo(canvas);
            layer.MergeShadowTo(canvas);
            shown += layer.Width() > 0 ? 1 : 0;
        }
    }
    EXPECT_GT(shown, 0);
}

}  // namespace
}  // namespace tessaloom::testing
