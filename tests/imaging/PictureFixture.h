#pragma once

#include "core/ErrorReport.h"
#include "imaging/DIB.h"
#include "imaging/ErrorsFile.h"
#include "imaging/PictureAccess.h"
#include "platform/UserLocale.h"
#include "support/FakePictures.h"
#include "support/FakeUrlTransfers.h"
#include "support/MemoryFileSystem.h"

namespace tessaloom::testing {

/// Picture files in memory, and the reports that reading them led to.
class PictureFixture : public ::testing::Test {
protected:
    void SetUp() override {
        before_ = SetErrorReporter([this](const ErrorReport& report) { reports.push_back(report); });
    }
    void TearDown() override { SetErrorReporter(before_); }

    void Put(std::string_view name, const PlainPicture& picture) {
        files[name].bytes = picture.Bytes(name.ends_with(".jpg"));
    }

    MemoryFileSystem files;
    FakeJpegCodec jpeg;
    FakePictureLoader loader;
    UserLocale locale;
    ErrorsFile errors{files, locale};
    FakeUrlTransfers transfers;
    PictureAccess access{files, jpeg, loader, errors, transfers};
    std::vector<ErrorReport> reports;

private:
    ErrorReporter before_;
};

/// Makes `bitmap` a plain area.
inline void Fill(DIB& bitmap, int width, int height, int color) {
    bitmap.SetWidthHeight(width, height);
    bitmap.Clear(color);
}

inline void SetPixel(DIB& bitmap, int x, int y, int color) {
    for (int c = 0; c < 3; ++c) bitmap.Row(y)[x * 3 + c] = static_cast<std::uint8_t>(color >> 8 * (2 - c));
}

inline int CountPixels(const DIB& bitmap, int color) {
    int count = 0;
    for (int y = 0; y < bitmap.Height(); ++y)
        for (int x = 0; x < bitmap.Width(); ++x) count += bitmap.Pixel(x, y) == color ? 1 : 0;
    return count;
}

}  // namespace tessaloom::testing
