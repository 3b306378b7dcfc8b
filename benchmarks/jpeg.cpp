// Encoding a canvas of 1920 x 1080 at quality 80: `JpegEncoder` against the library's own call with a buffer
// that is kept, turn by turn in one run, so that both see the same machine.

#include <turbojpeg.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <span>
#include <vector>

#include "benchmarks/Effort.h"
#include "imaging/DIB.h"
#include "imaging/JpegEncoder.h"
#include "platform/jpeg/TurboJpegCodec.h"

using namespace tessaloom;

namespace {

constexpr int Width = 1920, Height = 1080, Quality = 80;

/// Slopes with some noise: neither as easy as a plain area nor as hard as noise alone.
void Fill(DIB& picture) {
    picture.SetWidthHeight(Width, Height);
    unsigned random = 1;
    for (int y = 0; y < Height; ++y) {
        for (int i = 0; i < Width * 3; ++i) {
            random = random * 1664525 + 1013904223;
            const int slope = i % 3 == 0 ? y / 5 : i % 3 == 1 ? i / 30 : (y + i / 3) / 16;
            picture.Row(y)[i] =
                static_cast<std::uint8_t>(std::min(slope + static_cast<int>(random >> 28), 255));
        }
    }
}

template <typename Work>
double Milliseconds(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

}  // namespace

int main() {
    DIB picture;
    Fill(picture);

    TurboJpegCodec codec;
    JpegEncoder encoder(codec);
    std::span<const std::uint8_t> ourFile;
    const auto ours = [&] {
        encoder.BeginPass(picture);
        ourFile = encoder.Bytes(Quality);
    };

    const tjhandle handle = tjInitCompress();
    std::vector<unsigned char> buffer(tjBufSize(Width, Height, TJSAMP_420));
    unsigned long theirBytes = 0;
    const auto theirs = [&] {
        unsigned char* bytes = buffer.data();
        theirBytes = buffer.size();
        tjCompress2(handle, picture.DIBPtr(), Width, picture.Stride(), Height, TJPF_BGR, &bytes, &theirBytes,
                    TJSAMP_420, Quality, TJFLAG_BOTTOMUP | TJFLAG_NOREALLOC);
    };

    ours();
    theirs();
    if (!std::ranges::equal(ourFile, std::span(buffer).first(theirBytes))) {
        std::fprintf(stderr, "the files differ\n");
        return 1;
    }

    std::vector<double> ourTimes, theirTimes;
    const int turns = tessaloom::Effort(301, 2);
    for (int turn = 0; turn < turns; ++turn) {
        const bool first = turn % 2 == 0;
        if (first) ourTimes.push_back(Milliseconds(ours));
        theirTimes.push_back(Milliseconds(theirs));
        if (!first) ourTimes.push_back(Milliseconds(ours));
    }
    tjDestroy(handle);

    const double ourMedian = Median(ourTimes), theirMedian = Median(theirTimes);
    std::printf("JpegEncoder  %.3f ms, %zu bytes\n", ourMedian, ourFile.size());
    std::printf("tjCompress2  %.3f ms, %lu bytes\n", theirMedian, theirBytes);
    std::printf("ratio        %.4f\n", ourMedian / theirMedian);
}
