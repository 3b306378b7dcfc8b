#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "imaging/DIB.h"
#include "platform/PictureLoader.h"

namespace tessaloom {

class ErrorsFile;
class FileSystem;
class JpegCodec;
struct PictureBox;

/// One surface of the pool, through which picture files of all formats are loaded. Sizes are pixels.
///
/// The file's content decides how it is decoded. A file that cannot be loaded whole leaves the picture as it
/// was.
class Picture {
public:
    Picture(FileSystem& files, JpegCodec& codec, PictureLoader& loader, ErrorsFile& errors)
        : files_(files), codec_(codec), loader_(loader), errors_(errors) {}
    ~Picture() { UnloadClass(); }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    /// Takes a surface from the pool, unless it has one.
    void InitPictureBox();

    /// The bitmap on the surface; null without a surface.
    const DIB* Value() const;

    /// The drawing surface; null, and a line in "errors.txt", without one.
    DeviceContext* hDC();

    int Width() const;
    void SetWidth(int width);
    int Height() const;
    void SetHeight(int height);
    void SetWidthHeight(int width, int height);

    /// Whether the surface takes the size of a picture put on it; else the picture is cut or bordered to fit.
    void SetAutoSize(bool autoSize);

    /// Makes the surface black.
    void Clear();

    /// Puts a copy of `picture` on the surface.
    void SetPicture(const DIB& picture);

    /// Loads the file. False when that failed; the surface then keeps its picture.
    bool SetPictureFile(std::string_view name);

    /// Why the last file was not loaded, as far as the loader told.
    PictureRefusal Refusal() const { return refusal_; }

    /// 0 clear .. 255 solid, `Width` bytes a row, bottom row first; empty when the picture has no
    /// transparency.
    std::span<const std::uint8_t> Alpha() const;

    /// Drops the pixels and keeps the surface.
    void FreeMemory();

    /// Returns the surface to the pool.
    void UnloadClass();

private:
    PictureBox* Box() const;

    FileSystem& files_;
    JpegCodec& codec_;
    PictureLoader& loader_;
    ErrorsFile& errors_;
    PictureRefusal refusal_ = PictureRefusal::None;
    int index_ = 0;  ///< The slot in the pool; 0: none.
};

}  // namespace tessaloom
