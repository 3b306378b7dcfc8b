#include "platform/jpeg/JpegFrameDecoder.h"

#include "platform/jpeg/TurboJpegCodec.h"
#include "support/PictureData.h"

namespace tessaloom::testing {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct Decoded {
    JpegResult result;
    JpegHeader header;
    Bytes rows;
};

Decoded Decode(JpegDecoder& decoder, std::span<const std::uint8_t> file) {
    Decoded decoded;
    decoded.result = decoder.ReadHeader(file, decoded.header);
    if (decoded.result != JpegResult::Ok) return decoded;
    const int stride = (decoded.header.width * 3 + 3) / 4 * 4;
    decoded.rows.resize(static_cast<std::size_t>(stride) * static_cast<std::size_t>(decoded.header.height));
    decoded.result = decoder.Decode(file, decoded.header, decoded.rows.data(), stride);
    return decoded;
}

TEST(JpegFrameDecoder, DecodesToTheBitAsTheCodecOfFilesDoes) {
    JpegFrameDecoder decoder;
    TurboJpegCodec codec;
    for (const char* name : {"quarters.jpg", "progressive.jpg", "grey.jpg"}) {
        SCOPED_TRACE(name);
        const Bytes file = PictureData(name);
        const Decoded picture = Decode(decoder, file), expected = Decode(codec, file);
        ASSERT_EQ(picture.result, JpegResult::Ok);
        EXPECT_EQ(picture.header.colours, expected.header.colours);
        EXPECT_EQ(picture.rows, expected.rows);
    }
    EXPECT_EQ(Decode(decoder, PictureData("odd.jpg")).result, JpegResult::Ok) << "sampled in an unusual way";
    EXPECT_EQ(Decode(decoder, PictureData("cmyk.jpg")).result, JpegResult::Unsupported) << "left to another";
    EXPECT_EQ(Decode(decoder, PictureData("quarters.png")).result, JpegResult::Failed);
    EXPECT_EQ(Decode(decoder, {}).result, JpegResult::Failed);
}

TEST(JpegFrameDecoder, TakesNoPartOfAPictureThoughTheEndMarkerMayLack) {
    JpegFrameDecoder decoder;
    for (const char* name : {"quarters.jpg", "progressive.jpg", "grey.jpg"}) {
        const Bytes file = PictureData(name);
        const Bytes rows = Decode(decoder, file).rows;
        for (std::size_t length = 0; length < file.size(); ++length) {
            const Decoded part = Decode(decoder, std::span(file).first(length));
            EXPECT_TRUE(part.result != JpegResult::Ok || part.rows == rows) << name << ", " << length;
        }
    }
}

TEST(JpegFrameDecoder, RefusesWhatIsTooLarge) {
    JpegFrameDecoder decoder;
    JpegHeader header;
    decoder.SetLimits({.side = 32});
    EXPECT_EQ(decoder.ReadHeader(PictureData("quarters.jpg"), header), JpegResult::TooLarge);
    decoder.SetLimits({.work = 33 * 24});
    EXPECT_EQ(decoder.ReadHeader(PictureData("quarters.jpg"), header), JpegResult::Ok);
    EXPECT_EQ(decoder.ReadHeader(PictureData("progressive.jpg"), header), JpegResult::TooLarge);
}

TEST(JpegFrameDecoder, SurvivesDamagedFiles) {
    JpegFrameDecoder decoder;
    decoder.SetLimits({.pixels = 1'000'000});
    std::mt19937 random(4711);
    int decoded = 0;
    for (const char* name : {"quarters.jpg", "progressive.jpg", "grey.jpg", "cmyk.jpg", "odd.jpg"}) {
        const Bytes file = PictureData(name);
        for (int i = 0; i < 600; ++i)
            decoded += Decode(decoder, Mutated(file, random)).result == JpegResult::Ok;
    }
    EXPECT_GT(decoded, 0);
    EXPECT_EQ(Decode(decoder, PictureData("quarters.jpg")).result, JpegResult::Ok);
}

}  // namespace
}  // namespace tessaloom::testing
