#include "platform/jpeg/TurboJpegCodec.h"

#include <tuple>

#include "support/PictureData.h"

namespace tessaloom::testing {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct Decoded {
    JpegResult result;
    JpegHeader header;
    int stride = 0;
    Bytes rows;

    /// Counted from the top left corner; 0x00BBGGRR.
    int Colour(int x, int y) const {
        const auto at = static_cast<std::size_t>((header.height - 1 - y) * stride + x * 3);
        return rows[at + 2] | rows[at + 1] << 8 | rows[at] << 16;
    }
};

Decoded Decode(TurboJpegCodec& codec, std::span<const std::uint8_t> file) {
    Decoded decoded;
    decoded.result = codec.ReadHeader(file, decoded.header);
    if (decoded.result != JpegResult::Ok) return decoded;
    decoded.stride = (decoded.header.width * 3 + 3) / 4 * 4;
    decoded.rows.resize(static_cast<std::size_t>(decoded.stride) *
                        static_cast<std::size_t>(decoded.header.height));
    decoded.result = codec.Decode(file, decoded.header, decoded.rows.data(), decoded.stride);
    return decoded;
}

void ExpectNear(int colour, int expected, int tolerance) {
    for (int shift = 0; shift < 24; shift += 8)
        EXPECT_NEAR(colour >> shift & 0xFF, expected >> shift & 0xFF, tolerance) << std::hex << colour;
}

/// The position behind the frame header's marker, where its length stands.
std::size_t FrameHeader(const Bytes& file) {
    for (std::size_t i = 0; i + 1 < file.size(); ++i)
        if (file[i] == 0xFF && (file[i + 1] == 0xC0 || file[i + 1] == 0xC2)) return i + 2;
    return 0;
}

void SetSize(Bytes& file, int width, int height) {
    std::size_t at = FrameHeader(file) + 3;
    for (const int byte : {height >> 8, height, width >> 8, width})
        file[at++] = static_cast<std::uint8_t>(byte);
}

TEST(TurboJpegCodec, DecodesUprightWhateverTheKindOfJpeg) {
    TurboJpegCodec codec;
    const int greys[] = {0x363636, 0xB6B6B6, 0x121212, 0xFFFFFF};
    const struct {
        const char* name;
        JpegHeader::Colours colours;
        const int* quarters;
    } files[] = {
  // clang-format off
        {"quarters.jpg", JpegHeader::Colours::YCbCr, Quarters},
        {"progressive.jpg", JpegHeader::Colours::YCbCr, Quarters},
        {"grey.jpg", JpegHeader::Colours::Grey, greys},
  // clang-format on
    };
    for (const auto& file : files) {
        SCOPED_TRACE(file.name);
        const Decoded picture = Decode(codec, PictureData(file.name));
        ASSERT_EQ(picture.result, JpegResult::Ok);
        EXPECT_EQ(picture.header.width, 33);
        EXPECT_EQ(picture.header.height, 24);
        EXPECT_EQ(picture.header.colours, file.colours);
        for (int i = 0; i < 4; ++i)
            ExpectNear(picture.Colour(i % 2 ? 30 : 3, i / 2 ? 20 : 3), file.quarters[i], 24);
    }
    EXPECT_EQ(Decode(codec, PictureData("cmyk.jpg")).result, JpegResult::Unsupported) << "left to another";
}

TEST(TurboJpegCodec, TakesNoPartOfAPicture) {
    TurboJpegCodec codec;
    for (const char* name : {"quarters.jpg", "progressive.jpg", "grey.jpg"}) {
        const Bytes file = PictureData(name);
        for (std::size_t length = 0; length < file.size(); ++length)
            ASSERT_NE(Decode(codec, std::span(file).first(length)).result, JpegResult::Ok)
                << name << ", " << length;
        EXPECT_EQ(Decode(codec, std::span(file).first(file.size() - 2)).result, JpegResult::Damaged) << name;
        EXPECT_EQ(Decode(codec, file).result, JpegResult::Ok) << "the codec still works";
    }
}

TEST(TurboJpegCodec, RefusesBeforeAnythingIsAllocated) {
    TurboJpegCodec codec;
    JpegHeader header;
    const std::tuple<int, int, JpegResult> sizes[] = {
        {65500, 65500, JpegResult::TooLarge   },
        {65500, 1000,  JpegResult::Ok         },
        {65501, 1,     JpegResult::Unsupported},
        {10001, 10000, JpegResult::TooLarge   },
    };
    for (const auto& [width, height, expected] : sizes) {
        Bytes file = PictureData("quarters.jpg");
        SetSize(file, width, height);
        EXPECT_EQ(codec.ReadHeader(file, header), expected) << width << " x " << height;
    }
    codec.SetLimits({.side = 32});
    EXPECT_EQ(codec.ReadHeader(PictureData("quarters.jpg"), header), JpegResult::TooLarge);
}

TEST(TurboJpegCodec, RefusesAProgressiveFileOfTooManyScans) {
    TurboJpegCodec codec;
    JpegHeader header;
    Bytes file = PictureData("progressive.jpg");
    SetSize(file, 60000, 1600);
    ASSERT_EQ(codec.ReadHeader(file, header), JpegResult::Ok);
    const std::uint8_t scan[] = {0xFF, 0xDA};
    const auto last = std::find_end(file.begin(), file.end(), std::begin(scan), std::end(scan));
    const Bytes repeated(last, file.end() - 2);
    const Bytes once = file;
    for (int i = 0; i < 100; ++i) file.insert(file.end() - 2, repeated.begin(), repeated.end());
    EXPECT_EQ(codec.ReadHeader(file, header), JpegResult::TooLarge);

    file = once;
    Bytes segment = {0xFF, 0xE1, 0x01, 0x92};
    for (int i = 0; i < 200; ++i) segment.insert(segment.end(), std::begin(scan), std::end(scan));
    file.insert(file.begin() + 2, segment.begin(), segment.end());
    file.insert(file.end(), segment.begin() + 4, segment.end());
    EXPECT_EQ(codec.ReadHeader(file, header), JpegResult::Ok) << "in a comment and behind the end";
    EXPECT_EQ(PictureLimits::JpegScans(file), 10);
}

TEST(TurboJpegCodec, SurvivesDamagedFiles) {
    TurboJpegCodec codec;
    codec.SetLimits({.side = 65500, .pixels = 1'000'000});
    std::mt19937 random(4711);
    int decoded = 0;
    for (const char* name : {"quarters.jpg", "progressive.jpg", "grey.jpg", "cmyk.jpg", "odd.jpg"}) {
        const Bytes file = PictureData(name);
        for (int i = 0; i < 600; ++i)
            decoded += Decode(codec, Mutated(file, random)).result == JpegResult::Ok;
    }
    EXPECT_GT(decoded, 0);
    EXPECT_EQ(Decode(codec, PictureData("quarters.jpg")).result, JpegResult::Ok);
}

TEST(TurboJpegCodec, EncodesWhatItDecodes) {
    TurboJpegCodec codec;
    Bytes buffer;
    for (const auto& [width, height] :
         {std::pair(1, 1), std::pair(8, 8), std::pair(641, 480), std::pair(3, 200)}) {
        SCOPED_TRACE(::testing::Message() << width << " x " << height);
        const int stride = (width * 3 + 3) / 4 * 4;
        Bytes rows(static_cast<std::size_t>(stride * height), 20);
        std::fill_n(rows.begin(), stride * (height / 2), std::uint8_t{200});
        std::size_t last = 0;
        for (const int quality : {-5, 1, 50, 100, 200}) {
            const auto file = codec.Encode(rows.data(), width, height, stride, quality, buffer);
            ASSERT_FALSE(file.empty());
            EXPECT_TRUE(quality < 200 || file.size() == last) << "held to 100";
            last = file.size();
            const Decoded back = Decode(codec, Bytes(file.begin(), file.end()));
            ASSERT_EQ(back.result, JpegResult::Ok);
            ASSERT_EQ(back.header.width, width);
            if (quality < 50) continue;
            EXPECT_NEAR(back.rows[0], rows[0], 12);
            EXPECT_NEAR(back.Colour(0, 0) >> 16, 20, 12);
        }
    }
    EXPECT_TRUE(codec.Encode(nullptr, 5, 5, 16, 80, buffer).empty());
    EXPECT_TRUE(codec.Encode(buffer.data(), 70000, 1, 210000, 80, buffer).empty()) << "no JPEG is that wide";
}

}  // namespace
}  // namespace tessaloom::testing
