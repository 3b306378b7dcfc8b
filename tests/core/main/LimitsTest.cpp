#include "core/main/Limits.h"

#include "core/INI.h"
#include "support/TestPlatform.h"

namespace tessaloom::testing {
namespace {

TEST(Limits, AreThoseOfTheSettingsFileWhereItHasAny) {
    const TransferLimits byDefault;
    const struct {
        const char* section;
        std::int64_t pixels;
        std::size_t bytes;
        int milliseconds;
    } rows[] = {
        {"",                                                                    100'000'000, byDefault.bytes, 60'000},
        {"PictureMegapixels=5\r\nDownloadMegabytes=3\r\nDownloadSeconds=7",     5'000'000,   3U << 20,        7'000 },
        {"PictureMegapixels=0\r\nDownloadMegabytes=1e30\r\nDownloadSeconds=-1", 1'000'000,
         std::size_t{2000} << 20,                                                                             1'000 },
        {"PictureMegapixels=x\r\nDownloadSeconds=many",                         100'000'000, byDefault.bytes, 60'000},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.section);
        TestPlatform parts;
        const std::string file = std::string("[X-Limits]\r\n") + row.section + "\r\n";
        parts.files["s.ini"].bytes = file;
        INI settings(parts.profile, "s.ini");
        LoadLimits(parts.platform, settings);
        EXPECT_EQ(parts.pictureLoader.limits.pixels, row.pixels);
        EXPECT_EQ(parts.urlTransfers.limits.bytes, row.bytes);
        EXPECT_EQ(parts.urlTransfers.limits.bytesTogether, 4 * row.bytes);
        EXPECT_EQ(parts.urlTransfers.limits.totalMilliseconds, row.milliseconds);
        EXPECT_EQ(parts.files["s.ini"].bytes, file) << "nothing is completed";
    }
}

}  // namespace
}  // namespace tessaloom::testing
