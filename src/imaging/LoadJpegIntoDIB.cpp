#include "imaging/LoadJpegIntoDIB.h"

#include <cstring>

#include "core/ErrorReport.h"
#include "platform/Ascii.h"
#include "platform/Bytes.h"
#include "platform/FileSystem.h"
#include "platform/JpegCodec.h"
#include "platform/PictureLoader.h"

namespace tessaloom {

namespace {

/// Gives `bitmap` that size, and pixels.
bool MakeRoom(DIB& bitmap, int width, int height) {
    bitmap.SetWidthHeight(width, height);
    if (!bitmap.DIBPtr()) bitmap.CreateDIB();
    return bitmap.DIBPtr() != nullptr;
}

}  // namespace

int LoadJpegIntoDIB(FileSystem& files, JpegCodec& codec, PictureLoader& loader, std::string_view name,
                    DIB& target, LoadingBuffers* buffers) {
    const std::string_view trimmed = ascii::Trimmed(name);
    if (!ascii::EndsWithText(trimmed, ".JPG") && !ascii::EndsWithText(trimmed, ".JPEG")) return NotJpegName;
    // Blanks around a name mean nothing, unless there is such a file.
    if (!files.FileExists(name)) name = trimmed;
    if (!files.FileExists(name)) return Missing;

    const bool loaded = Trap({"Image.cls", "LoadJpegIntoDIB"}, [&] {
        DIB own;
        const auto bytes = ReadPictureFile(files, name);
        DIB& spare = buffers ? buffers->spare : own;
        if (bytes && DecodeJpeg(codec, loader, AsBytes(*bytes), target, spare)) return true;
        spare.SetWidthHeight(0, 0);  // a broken file may have asked for hundreds of megabytes
        return false;
    });
    return loaded ? Loaded : Unreadable;
}

bool DecodeJpeg(JpegCodec& codec, PictureLoader& loader, std::span<const std::uint8_t> file, DIB& target,
                DIB& spare) {
    if (!LooksLikeJpeg(file)) return false;
    JpegHeader header;
    JpegResult result = codec.ReadHeader(file, header);
    if (result == JpegResult::Ok) {
        if (!MakeRoom(spare, header.width, header.height)) return false;
        result = codec.Decode(file, header, spare.DIBPtr(), spare.Stride());
    }
    switch (result) {
        case JpegResult::Ok:
            target.Swap(spare);
            return true;
        case JpegResult::Unsupported:
            return TakePicture(loader.Load(file), target, spare);
        case JpegResult::Damaged:
        case JpegResult::TooLarge:
        case JpegResult::Failed:
            break;
    }
    return false;
}

bool TakePicture(const LoadedPicture& picture, DIB& target, DIB& spare) {
    if (!picture || !MakeRoom(spare, picture.width, picture.height)) return false;
    if (picture.pixels.size() != spare.SizeInBytes()) return false;
    std::memcpy(spare.DIBPtr(), picture.pixels.data(), picture.pixels.size());
    target.Swap(spare);
    return true;
}

bool LooksLikeJpeg(std::span<const std::uint8_t> file) {
    return file.size() > 3 && file[0] == 0xFF && file[1] == 0xD8 && file[2] == 0xFF;
}

std::optional<std::string> ReadPictureFile(FileSystem& files, std::string_view name) {
    const auto before = files.Stamp(name);
    if (!before || before->size > MaximumPictureFileBytes) return std::nullopt;
    auto bytes = files.ReadFile(name, MaximumPictureFileBytes);
    if (!bytes || bytes->size() != before->size || files.Stamp(name) != before) return std::nullopt;
    return bytes;
}

}  // namespace tessaloom
