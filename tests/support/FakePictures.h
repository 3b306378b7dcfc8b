#pragma once

#include "imaging/DIB.h"
#include "platform/Bytes.h"
#include "platform/JpegCodec.h"
#include "platform/PictureLoader.h"
#include "support/Testing.h"

namespace tessaloom::testing {

/// Picture files that need no codec: one colour, and sides below 256. Both fakes read it.
struct PlainPicture {
    int width = 1, height = 1;
    int color = 0;      ///< 0x00BBGGRR
    int alpha = 255;    ///< Of the left half; the right half is solid. Only in what the loader loads.
    bool whole = true;  ///< Else the file is cut short.

    /// A JPEG file for the codec, or one that only the loader knows; they differ in how they begin.
    std::string Bytes(bool jpeg) const {
        std::string bytes = jpeg ? "\xFF\xD8\xFF" : "any";
        for (const int value : {width, height, color & 0xFF, color >> 8 & 0xFF, color >> 16, alpha})
            bytes += static_cast<char>(value);
        return whole ? bytes + "." : bytes;
    }

    static PlainPicture From(std::span<const std::uint8_t> file) {
        if (file.size() < 9) return {0, 0};
        return {file[3], file[4], file[5] | file[6] << 8 | file[7] << 16, file[8], file.size() == 10};
    }
};

class FakeJpegCodec : public JpegCodec {
public:
    void SetLimits(const PictureLimits&) override {}

    JpegResult ReadHeader(std::span<const std::uint8_t> file, JpegHeader& header) override {
        const auto picture = PlainPicture::From(file);
        header.width = picture.width;
        header.height = picture.height;
        return picture.width > 0 ? JpegResult::Ok : JpegResult::Failed;
    }

    JpegResult Decode(std::span<const std::uint8_t> file, const JpegHeader& header, std::uint8_t* rows,
                      int stride) override {
        ++decoded;
        const auto picture = PlainPicture::From(file);
        for (int y = 0; y < header.height; ++y)
            for (int i = 0; i < header.width * 3; ++i)
                rows[y * stride + i] = static_cast<std::uint8_t>(picture.color >> 8 * (2 - i % 3));
        return picture.whole ? JpegResult::Ok : JpegResult::Damaged;
    }

    std::span<const std::uint8_t> Encode(const std::uint8_t*, int, int, int, int,
                                         std::vector<std::uint8_t>&) override {
        return {};
    }

    int decoded = 0;  ///< How often a picture was decoded.
};

class FakePictureLoader : public PictureLoader {
public:
    PictureLimits limits;

    void SetLimits(const PictureLimits& allowed) override { limits = allowed; }

    std::optional<PictureHeader> Header(std::span<const std::uint8_t> beginning) override {
        if (!AsText(beginning).starts_with("any")) return std::nullopt;
        const auto picture = PlainPicture::From(beginning);
        return PictureHeader{picture.width, picture.height};
    }

    std::shared_ptr<PictureLoader> Another() const override {
        return std::make_shared<FakePictureLoader>(*this);
    }

    LoadedPicture Load(std::span<const std::uint8_t> file) override {
        const auto picture = PlainPicture::From(file);
        LoadedPicture loaded;
        if (!picture.whole || picture.width == 0) return loaded;
        const auto stride = static_cast<std::size_t>(DIB::StrideOf(picture.width));
        const auto width = static_cast<std::size_t>(picture.width);
        const auto height = static_cast<std::size_t>(picture.height);
        loaded.width = picture.width;
        loaded.height = picture.height;
        loaded.pixels.resize(stride * height);
        for (std::size_t y = 0; y < height; ++y)
            for (std::size_t i = 0; i < width * 3; ++i)
                loaded.pixels[y * stride + i] = static_cast<std::uint8_t>(picture.color >> 8 * (2 - i % 3));
        if (picture.alpha == 255) return loaded;
        loaded.alpha.assign(width * height, 255);
        for (std::size_t y = 0; y < height; ++y)
            std::fill_n(loaded.alpha.begin() + static_cast<std::ptrdiff_t>(y * width), width / 2,
                        static_cast<std::uint8_t>(picture.alpha));
        return loaded;
    }
};

}  // namespace tessaloom::testing
