#include <gtest/gtest.h>
#include <turbojpeg.h>

#include <algorithm>
#include <memory>
#include <random>
#include <utility>

#include "platform/jpeg/TurboJpegCodec.h"

namespace tessaloom::testing {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(TurboJpegCodec, EncodesToTheBitAsTheLibraryDoes) {
    TurboJpegCodec codec;
    std::mt19937 random(3);
    Bytes buffer;
    const std::unique_ptr<void, decltype(&tjDestroy)> library(tjInitCompress(), tjDestroy);
    for (const auto& [width, height] :
         {std::pair(16, 1), std::pair(64, 16), std::pair(656, 483), std::pair(48, 9), std::pair(640, 480),
          std::pair(50, 31), std::pair(17, 16)}) {
        SCOPED_TRACE(::testing::Message() << width << " x " << height);
        const int stride = (width * 3 + 3) / 4 * 4;
        Bytes rows(static_cast<std::size_t>(stride * height)), expected(tjBufSize(width, height, TJSAMP_420));
        std::ranges::generate(rows, [&] { return static_cast<std::uint8_t>(random() % 8 ? random() : 255); });
        unsigned char* bytes = expected.data();
        unsigned long size = expected.size();
        ASSERT_EQ(tjCompress2(library.get(), rows.data(), width, stride, height, TJPF_BGR, &bytes, &size,
                              TJSAMP_420, 90, TJFLAG_BOTTOMUP | TJFLAG_NOREALLOC),
                  0);
        expected.resize(size);
        EXPECT_TRUE(
            std::ranges::equal(codec.Encode(rows.data(), width, height, stride, 90, buffer), expected));
    }
}

}  // namespace
}  // namespace tessaloom::testing
