#include "platform/ffmpeg/CertificateCheck.h"
#include "platform/ffmpeg/StreamSources.h"
#include "support/CaughtFrames.h"
#include "support/FilmClips.h"
#include "support/FrameDecoder.h"
#include "support/LocalHttpServer.h"
#include "support/TemporaryFolder.h"
#include "support/TlsFront.h"

namespace tessaloom::testing {
namespace {

TEST(UnverifiedStreams, AreNotOpenedThoughTheCertificateBeGood) {
    ASSERT_FALSE(CertificateCheck::InForce());
    const TemporaryFolder folder;
    LocalHttpServer camera;
    camera.Serve("/film.ts",
                 BytesOf(MakeClip(folder / "film.ts", "testsrc2=s=64x48:r=25:d=1", {"-c:v", "mpeg2video"})));
    TlsFront front(camera.Port());
    const std::string place = "127.0.0.1:" + std::to_string(front.Port());
    const auto list = [](const std::string& part) {
        return "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:1,\n" + part + "\n#EXT-X-ENDLIST\n";
    };
    camera.Serve("/secured.m3u8", list("https://" + place + "/film.ts"));
    camera.Serve("/clear.m3u8", list(camera.Address("/film.ts")));
    const std::string cannot = "certificates cannot be verified here";
    const std::pair<std::string, std::string> cases[] = {
        {"https://" + place + "/film.ts", cannot                                    },
        {"rtsps://" + place + "/live",    cannot                                    },
        {camera.Address("/secured.m3u8"), "Invalid data found when processing input"},
        {camera.Address("/clear.m3u8"),   ""                                        },
        {camera.Address("/film.ts"),      ""                                        },
    };
    StreamSources sources(MakeFrameDecoder, front.CertificateFile());
    for (const auto& [address, failure] : cases) {
        const auto source = sources.Make(address);
        CaughtFrames frames;
        frames.Start(*source);
        EXPECT_EQ(frames.Wait(1) ? "" : frames.Reason(), failure) << address;
    }
}

}  // namespace
}  // namespace tessaloom::testing
