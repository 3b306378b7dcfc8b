#include "platform/ffmpeg/StreamSources.h"
#include "platform/jpeg/TurboJpegCodec.h"
#include "support/CaughtFrames.h"
#include "support/FilmClips.h"
#include "support/FrameDecoder.h"
#include "support/LocalHttpServer.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::testing {
namespace {

using Random = std::mt19937;

const std::string StartMarker = "\xFF\xD8", ScanMarker = "\xFF\xDA", EndMarker = "\xFF\xD9";
const std::string StrayBytes(3, '\0');

/// A JPEG file of waves and noise around a brightness.
std::string Picture(int brightness) {
    constexpr int Width = 320, Height = 240;
    Random random(static_cast<unsigned>(brightness));
    std::vector<std::uint8_t> rows;
    for (int y = 0; y < Height; ++y)
        for (int x = 0; x < 3 * Width; ++x) {
            const double waves = 30 * std::sin(x / 31.0) * std::cos(y / 7.0);
            rows.push_back(static_cast<std::uint8_t>(brightness + waves + static_cast<int>(random() % 20)));
        }
    std::vector<std::uint8_t> buffer;
    const auto file = TurboJpegCodec().Encode(rows.data(), Width, Height, Width * 3, 80, buffer);
    return {file.begin(), file.end()};
}

/// The same with a restart marker between rows of blocks.
std::string PictureWithRestarts(int brightness) {
    ::setenv("TJ_RESTART", "1", 1);
    std::string file = Picture(brightness);
    ::unsetenv("TJ_RESTART");
    return file;
}

/// The place of a byte of the picture data that has `room` bytes of it behind itself.
std::size_t Somewhere(const std::string& file, Random& random, std::size_t room) {
    constexpr std::size_t Head = 14;  // bytes of the scan's
    const std::size_t data = file.find(ScanMarker) + Head;
    return data + random() % (file.size() - EndMarker.size() - room - data);
}

/// Makes another file of a whole one.
using Make = std::function<std::string(std::string whole, Random& random)>;

std::string Whole(std::string whole, Random&) { return whole; }

Make CutAt(int percent) {
    return [=](const std::string& whole, Random&) {
        return whole.substr(0, whole.size() * static_cast<std::size_t>(percent) / 100);
    };
}

std::string CutAnywhere(const std::string& whole, Random& random) {
    constexpr std::size_t Enough = 200;  // bytes, so that it shows
    return whole.substr(0, Somewhere(whole, random, Enough));
}

std::string CutAnywhereAndEnded(const std::string& whole, Random& random) {
    return CutAnywhere(whole, random) + EndMarker;
}

std::string HalfOfZeros(const std::string& whole, Random&) {
    return whole.substr(0, whole.size() / 2) + std::string(whole.size() / 2, '\0') + EndMarker;
}

Make Lost(std::size_t count) {
    return
        [=](std::string file, Random& random) { return file.erase(Somewhere(file, random, count), count); };
}

/// The places of all restart markers.
std::vector<std::size_t> RestartsOf(const std::string& file) {
    std::vector<std::size_t> places;
    for (std::size_t i = file.find(ScanMarker); i + 1 < file.size(); ++i)
        if (file[i] == '\xFF' && file[i + 1] >= '\xD0' && file[i + 1] <= '\xD7') places.push_back(i);
    return places;
}

std::string RowLost(std::string file, Random& random) {
    const auto restarts = RestartsOf(file);
    const std::size_t row = random() % (restarts.size() - 1);
    return file.erase(restarts[row], restarts[row + 1] - restarts[row]);
}

std::string RestartLost(std::string file, Random& random) {
    const auto restarts = RestartsOf(file);
    return file.erase(restarts[random() % restarts.size()], 2);
}

/// As a widespread camera leaves them in each of its pictures.
std::string StrayBytesBeforeRestarts(std::string file, Random& random) {
    auto restarts = RestartsOf(file);
    for (const std::size_t place : {restarts.at(10), restarts.at(3)})
        file.insert(place, std::string("strays").substr(random() % 6));
    return file;
}

/// Replaces 64 bytes.
Make Changed(char (*change)(char byte, Random& random)) {
    return [=](std::string file, Random& random) {
        constexpr std::size_t Count = 64;
        const std::size_t start = Somewhere(file, random, Count);
        for (std::size_t i = start; i < start + Count; ++i) file[i] = change(file[i], random);
        return file;
    };
}

char Flipped(char byte, Random&) { return static_cast<char>(byte ^ 0x55); }
char Zeroed(char, Random&) { return '\0'; }
char Any(char, Random& random) { return static_cast<char>(random()); }

std::string WithoutItsEnd(const std::string& whole, Random&) {
    return whole.substr(0, whole.size() - EndMarker.size());
}

Make StrayBytesBefore(const std::string& marker) {
    return [=](std::string file, Random&) { return file.insert(file.find(marker), StrayBytes); };
}

std::string StrayBytesBehind(const std::string& whole, Random&) { return whole + StrayBytes; }

std::string EndedTwice(const std::string& whole, Random&) { return whole + EndMarker; }

std::string WithoutItsTables(std::string file, Random&) {
    constexpr std::size_t Head = 2;  // bytes of a marker
    for (std::size_t at; (at = file.find("\xFF\xC4")) < file.find(ScanMarker);)
        file.erase(
            at, Head + static_cast<std::size_t>(file[at + 2] << 8 | static_cast<std::uint8_t>(file[at + 3])));
    return file;
}

std::string WithAComment(std::string file, Random&) {
    const std::string comment("\xFF\xFE\0\4Hi", 6);
    return file.insert(StartMarker.size(), comment);
}

/// What becomes of a file. The rest of a picture may look sound by chance, so some damage passes.
enum class Fate { Shown, Refused, SeldomShown };

class DamagedPictures : public ::testing::Test {
protected:
    /// What comes of one opening of an address.
    std::vector<CaughtFrames::Frame> Caught(const std::string& address) {
        const auto source = sources.Make(address);
        CaughtFrames frames;
        frames.Start(*source);
        reason = frames.Reason();
        return frames.All();
    }

    /// What comes of a camera that sends these files one after the other, then hangs up.
    std::vector<CaughtFrames::Frame> Sent(const std::vector<std::string>& files) {
        camera.On("/camera", [&](LocalHttpServer::Connection& line) {
            line.Send("HTTP/1.1 200 OK\r\nContent-Type: multipart/x-mixed-replace; boundary=next\r\n\r\n");
            for (const std::string& file : files)
                line.Send("--next\r\nContent-Type: image/jpeg\r\nContent-Length: " +
                          std::to_string(file.size()) + "\r\n\r\n" + file + "\r\n");
        });
        return Caught(camera.Address("/camera"));
    }

    StreamSources sources{MakeFrameDecoder};
    LocalHttpServer camera;
    std::string reason;  ///< Why the last source ended.
};

TEST_F(DamagedPictures, OfACameraAreNotShownButThoseInBetween) {
    constexpr std::size_t Attempts = 20;
    const std::map<Fate, std::size_t> MostShown = {
        {Fate::Shown,       Attempts    },
        {Fate::Refused,     0           },
        {Fate::SeldomShown, Attempts / 4}
    };
    const std::string plain = Picture(180), restarted = PictureWithRestarts(180);
    const struct {
        const char* name;
        Fate fate;
        const std::string& whole;
        Make make;
    } cases[] = {
        {"whole",                   Fate::Shown,       plain,     Whole                        },
        {"cut at 30 %",             Fate::Refused,     plain,     CutAt(30)                    },
        {"cut at 60 %",             Fate::Refused,     plain,     CutAt(60)                    },
        {"cut at 95 %",             Fate::Refused,     plain,     CutAt(95)                    },
        {"cut anywhere",            Fate::Refused,     plain,     CutAnywhere                  },
        {"cut and ended",           Fate::Refused,     plain,     CutAnywhereAndEnded          },
        {"half of zeros",           Fate::Refused,     plain,     HalfOfZeros                  },
        {"much lost",               Fate::Refused,     plain,     Lost(1400)                   },
        {"restarts",                Fate::Shown,       restarted, Whole                        },
        {"a row lost",              Fate::Refused,     restarted, RowLost                      },
        {"a restart lost",          Fate::Refused,     restarted, RestartLost                  },
        {"stray bytes at restarts", Fate::Shown,       restarted, StrayBytesBeforeRestarts     },
        {"no tables",               Fate::Shown,       plain,     WithoutItsTables             },
        {"cut among restarts",      Fate::Refused,     restarted, CutAnywhere                  },
        {"bytes flipped",           Fate::SeldomShown, plain,     Changed(Flipped)             },
        {"bytes zeroed",            Fate::SeldomShown, plain,     Changed(Zeroed)              },
        {"bytes of something else", Fate::SeldomShown, plain,     Changed(Any)                 },
        {"bytes lost",              Fate::SeldomShown, plain,     Lost(100)                    },
        {"a comment",               Fate::Shown,       plain,     WithAComment                 },
        {"no end",                  Fate::Shown,       plain,     WithoutItsEnd                },
        {"stray bytes at the end",  Fate::Shown,       plain,     StrayBytesBefore(EndMarker)  },
        {"stray bytes inside",      Fate::Shown,       plain,     StrayBytesBefore(ScanMarker) },
        {"stray bytes before",      Fate::Shown,       plain,     StrayBytesBefore(StartMarker)},
        {"bytes behind the end",    Fate::Shown,       plain,     StrayBytesBehind             },
        {"a second end",            Fate::Shown,       plain,     EndedTwice                   },
    };
    const std::string between = Picture(60);
    const auto rowsBetween = Sent({between}).at(0).rows;
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        Random random(1);
        std::vector<std::string> files;
        for (std::size_t i = 0; i < Attempts; ++i)
            files.push_back(row.make(row.whole, random)), files.push_back(between);
        auto shown = Sent(files);
        EXPECT_EQ(std::erase_if(shown, [&](const auto& frame) { return frame.rows == rowsBetween; }),
                  Attempts);
        EXPECT_LE(shown.size(), MostShown.at(row.fate));
        if (row.fate != Fate::Shown) continue;
        const auto rows = Sent({row.whole}).at(0).rows;
        EXPECT_EQ(std::ranges::count(shown, rows, &CaughtFrames::Frame::rows), Attempts);
    }
}

TEST_F(DamagedPictures, AreTheReasonWhereNothingElseComes) {
    Random random(1);
    const std::string whole = Picture(180), cut = CutAt(60)(whole, random), ended = cut + EndMarker;
    EXPECT_EQ(Sent({cut, ended, cut}).size(), 0U);
    EXPECT_EQ(reason, "its pictures are damaged");
    EXPECT_EQ(Sent({whole, cut}).size(), 1U);
    EXPECT_NE(reason, "its pictures are damaged") << "it broke off in the middle of one";
    const std::pair<std::string, std::size_t> snapshots[] = {
        {cut,   0},
        {ended, 0},
        {whole, 1}
    };
    for (const auto& [file, count] : snapshots) {
        camera.Serve("/snapshot.jpg", file);
        EXPECT_EQ(Caught(camera.Address("/snapshot.jpg")).size(), count);
        EXPECT_EQ(reason, count ? "the stream has ended" : "its pictures are damaged");
    }
}

TEST_F(DamagedPictures, OfFilesAreNotShown) {
    Random random(1);
    const TemporaryFolder folder;
    const std::string good = Picture(60), path = folder / "film.mjpeg";
    const auto rows = Sent({good}).at(0).rows;
    std::ofstream(path) << good << CutAt(60)(Picture(180), random) << EndMarker << good;
    const auto source = sources.Make(path);
    CaughtFrames frames;
    frames.Start(*source);
    EXPECT_TRUE(frames.Wait(4)) << "two in each pass";
    for (const auto& frame : frames.All()) EXPECT_EQ(frame.rows, rows);
}

TEST_F(DamagedPictures, OfFilmsCostThoseAloneThatAreKnownToBeDamaged) {
    constexpr std::size_t Pictures = 250, Packet = 188;
    const TemporaryFolder folder;
    const struct {
        const char* codec;
        std::size_t least, most;  // H.265 does not tell which pictures suffer
    } cases[] = {
        {"libx264", Pictures / 2, Pictures * 3 / 4},
        {"libx265", Pictures / 2, Pictures        },
    };
    for (const auto& row : cases) {
        const std::string film =
            BytesOf(MakeClip(folder / "film.ts", "testsrc2=s=176x144:r=25:d=10",
                             {"-c:v", row.codec, "-threads", "1", "-g", "25", "-pix_fmt", "yuv420p"}));
        Random random(3);
        std::string received;
        for (std::size_t at = 0; at < film.size(); at += Packet)
            if (at < 20 * Packet || random() % 10 != 0) received += film.substr(at, Packet);
        camera.Serve("/film.ts", received);
        const std::size_t shown = Caught(camera.Address("/film.ts")).size();
        EXPECT_GE(shown, row.least) << row.codec;
        EXPECT_LE(shown, row.most) << row.codec;
    }
}

}  // namespace
}  // namespace tessaloom::testing
