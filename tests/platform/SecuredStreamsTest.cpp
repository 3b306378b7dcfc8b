#include "platform/ffmpeg/StreamSources.h"
#include "support/CaughtFrames.h"
#include "support/FilmClips.h"
#include "support/FrameDecoder.h"
#include "support/RtspCamera.h"
#include "support/TemporaryFolder.h"
#include "support/TlsFront.h"

namespace tessaloom::testing {
namespace {

constexpr const char* InClear = "it leads to a place that is not secured";

/// A playlist of the kind that a file's ending tells, with one part.
std::string Playlist(const std::string& kind, const std::string& part) {
    if (kind == "m3u8") return "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:1,\n" + part + "\n#EXT-X-ENDLIST\n";
    if (kind == "ffconcat") return "ffconcat version 1.0\nfile '" + part + "'\n";
    return R"(<MPD xmlns="urn:mpeg:dash:schema:mpd:2011" profiles="urn:mpeg:dash:profile:isoff-on-demand:2011" )"
           R"(type="static" mediaPresentationDuration="PT1S"><Period><AdaptationSet mimeType="video/mp4">)"
           R"(<Representation id="1" bandwidth="100000"><BaseURL>)" +
           part + "</BaseURL></Representation></AdaptationSet></Period></MPD>";
}

/// Of 16 bytes.
constexpr const char* Key = "0123456789abcdef";

LocalHttpServer::Answer SendOnTo(const std::string& place) {
    return [place](LocalHttpServer::Connection& line) {
        line.Send(LocalHttpServer::Whole("302 Found", "", "Location: " + place + "\r\n"));
    };
}

/// A camera that speaks in clear. Behind encryption it is reached through a `TlsFront`.
class SecuredStreams : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        clips = new TemporaryFolder;
        const char* graph = "testsrc2=s=64x48:r=25:d=1";
        MakeClip(*clips / "film.ts", graph, {"-c:v", "mpeg2video"});
        MakeClip(*clips / "film.mp4", graph,
                 {"-pix_fmt", "yuv420p", "-movflags", "frag_keyframe+empty_moov+default_base_moof+dash"});
        ServerProgram::InFolder(
            clips->Path(),
            "openssl enc -aes-128-cbc -in film.ts -out film.aes -iv 0 -K 30313233343536373839616263646566")
            ->Wait();
    }
    static void TearDownTestSuite() { delete clips; }

    SecuredStreams() {
        for (const char* kind : {"ts", "mp4"})
            camera.Serve(std::string("/film.") + kind, BytesOf(*clips / (std::string("film.") + kind)));
    }

    /// A film that parts of playlists of such a kind may be.
    static std::string Film(const std::string& kind) { return kind == "mpd" ? "film.mp4" : "film.ts"; }

    /// Makes the camera answer with playlists, "/list." and the kind, of one film at a place of the web.
    void ServePlaylists(const std::string& place) {
        for (const char* kind : {"m3u8", "mpd"})
            camera.Serve(std::string("/list.") + kind, Playlist(kind, place + "/" + Film(kind)));
    }

    static std::string Place(const TlsFront& front, const std::string& host = "127.0.0.1") {
        return host + ":" + std::to_string(front.Port());
    }

    /// Why an address brought no pictures; "" when it brought some.
    static std::string Failure(const std::string& address, const std::string& authorities = "") {
        StreamSources sources(MakeFrameDecoder, authorities);
        const auto source = sources.Make(address);
        CaughtFrames frames;
        frames.Start(*source);
        return frames.Wait(1) ? "" : frames.Reason();
    }

    static inline TemporaryFolder* clips = nullptr;
    LocalHttpServer camera;
};

TEST_F(SecuredStreams, NothingIsSentToAServerThatDoesNotProveToBeTheOne) {
    const struct {
        const char* subject;
        int hours;
        bool trusted;
        const char* host;
        const char* fault;
    } cases[] = {
        {"127.0.0.1", 24, false, "127.0.0.1", "unknown issuer"       },
        {"127.0.0.2", 24, true,  "127.0.0.1", "made for another host"},
        {"localhost", 24, true,  "127.0.0.1", "made for another host"},
        {"127.0.0.1", 24, true,  "localhost", "made for another host"},
        {"elsewhere", 24, true,  "localhost", "made for another host"},
        {"127.0.0.1", -1, true,  "127.0.0.1", "expired"              },
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(::testing::Message() << row.host << " with a certificate of " << row.subject);
        TlsFront front(camera.Port(), row.subject, row.hours);
        const std::string place = Place(front, row.host), secured = "https://" + place;
        ServePlaylists(secured);
        camera.On("/away", SendOnTo(secured + "/film.ts"));
        const std::string refused = std::string("certificate refused: ") + row.fault + " (" + row.host + ")";
        int connections = 0;
        for (const std::string& address :
             {"https://joe:secret@" + place + "/film.ts", "rtsps://joe:secret@" + place + "/live",
              secured + "/list.m3u8", camera.Address("/list.m3u8"), camera.Address("/list.mpd"),
              camera.Address("/away")}) {
            EXPECT_EQ(Failure(address, row.trusted ? front.CertificateFile() : ""), refused) << address;
            EXPECT_EQ(front.BytesOver(++connections), 0) << address;
        }
    }
}

TEST_F(SecuredStreams, ACertificateOfATrustedAuthorityIsEnough) {
    const std::string film = BytesOf(*clips / "film.ts");
    for (const std::string host : {"127.0.0.1", "localhost"}) {
        TlsFront front(camera.Port(), host);
        const std::string place = Place(front, host), secured = "https://" + place;
        camera.On("rtsps://" + place + "/live", [&](auto& line) { PlayAsRtsp(line, film); });
        camera.On("/away", SendOnTo(secured + "/film.ts"));
        ServePlaylists(secured);
        camera.Serve("/key", Key);
        camera.Serve("/encrypted.ts", BytesOf(*clips / "film.aes"));
        camera.Serve("/encrypted.m3u8", "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXT-X-KEY:METHOD=AES-128,URI=\"" +
                                            secured + "/key\",IV=0x0\n#EXTINF:1,\n" + secured +
                                            "/encrypted.ts\n#EXT-X-ENDLIST\n");
        for (const std::string& address :
             {"https://joe:secret@" + place + "/film.ts", "HTTPS://" + place + "/film.ts",
              "rtsps://joe:secret@" + place + "/live", secured + "/list.m3u8", secured + "/list.mpd",
              secured + "/encrypted.m3u8", secured + "/away", camera.Address("/list.m3u8"),
              camera.Address("/list.mpd"), camera.Address("/away")})
            EXPECT_EQ(Failure(address, front.CertificateFile()), "") << address;
    }
}

TEST_F(SecuredStreams, EachServerThatAPlaylistNamesIsVerified) {
    TlsFront known(camera.Port()), stranger(camera.Port(), "localhost");
    const std::string secured = "https://" + Place(known);
    ServePlaylists("https://" + Place(stranger, "localhost"));
    for (const char* list : {"/list.m3u8", "/list.mpd"}) {
        EXPECT_EQ(Failure(secured + list, known.CertificateFile()),
                  "certificate refused: unknown issuer (localhost)");
        EXPECT_EQ(stranger.BytesOver(1), 0);
    }
}

TEST_F(SecuredStreams, WhatIsSecuredLeadsNowhereInClear) {
    TlsFront front(camera.Port());
    LocalHttpServer clear;
    std::atomic<bool> credentials = false;
    for (const char* film : {"/film.ts", "/film.mp4"})
        clear.On(film, [&, bytes = BytesOf(*clips / (film + 1))](LocalHttpServer::Connection& line) {
            if (line.Request().find("Authorization") != std::string::npos) credentials = true;
            line.Send(LocalHttpServer::Whole("200 OK", bytes));
        });
    const std::string place = Place(front),
                      cameraInClear = "rtsp://127.0.0.1:" + std::to_string(clear.Port());
    ServePlaylists(clear.Address(""));
    camera.On("/away", SendOnTo(clear.Address("/film.ts")));
    camera.On("/away.ts", SendOnTo(clear.Address("/film.ts")));
    camera.Serve("/away.m3u8", Playlist("m3u8", "away.ts"));
    camera.On("rtsps://" + place + "/live", [&](LocalHttpServer::Connection& line) {
        line.Send("RTSP/1.0 302 Found\r\nCSeq: 1\r\nLocation: " + cameraInClear + "/live\r\n\r\n");
    });
    const struct {
        const char *scheme, *path, *failure;
        int requestsInClear;
    } cases[] = {
        {"https", "/away",      InClear,                                    1},
        {"https", "/away.m3u8", InClear,                                    1},
        {"https", "/list.m3u8", InClear,                                    0},
        {"https", "/list.mpd",  "Invalid data found when processing input", 0},
        {"rtsps", "/live",      InClear,                                    0},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.path);
        const int before = clear.Requests();
        EXPECT_EQ(
            Failure(std::string(row.scheme) + "://joe:secret@" + place + row.path, front.CertificateFile()),
            row.failure);
        EXPECT_EQ(clear.Requests() - before, row.requestsInClear);
    }
    EXPECT_FALSE(credentials);
}

TEST_F(SecuredStreams, NoAddressOfANetworkReachesLocalFiles) {
    for (const std::string kind : {"m3u8", "mpd", "ffconcat"}) {
        const std::string path = *clips / Film(kind);
        camera.Serve("/list." + kind, Playlist(kind, Film(kind)));
        EXPECT_EQ(Failure(camera.Address("/list." + kind)), "") << "its neighbour is its to name";
        for (const std::string& local :
             {path, "file:" + path, "file://" + path, "subfile,,start,0,end,0,,:" + path, "concat:" + path,
              "async:file:" + path, "cache:file:" + path}) {
            camera.Serve("/list." + kind, Playlist(kind, local));
            EXPECT_NE(Failure(camera.Address("/list." + kind)), "") << kind << ' ' << local;
        }
    }
    camera.On("/away", SendOnTo("file://" + *clips / "film.ts"));
    EXPECT_NE(Failure(camera.Address("/away")), "");
}

}  // namespace
}  // namespace tessaloom::testing
