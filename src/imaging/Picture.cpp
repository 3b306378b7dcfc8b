#include "imaging/Picture.h"

#include <algorithm>
#include <source_location>

#include "core/ErrorReport.h"
#include "imaging/ErrorsFile.h"
#include "imaging/LoadJpegIntoDIB.h"
#include "imaging/modPictureBox.h"
#include "locale/Conversion.h"
#include "platform/Bytes.h"
#include "platform/FileSystem.h"

namespace tessaloom {

namespace {

constexpr std::string_view Module = "Picture.cls";

/// A picture with its transparency, on its way to a surface.
struct Decoded {
    DIB pixels;
    std::vector<std::uint8_t> alpha;
};

/// The alpha of a picture that is put on a surface of another size, top left corner on top left corner; where
/// the surface is larger, its border is solid.
std::vector<std::uint8_t> FitAlpha(const Decoded& picture, int width, int height) {
    std::vector<std::uint8_t> fitted;
    if (picture.alpha.empty()) return fitted;
    fitted.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 255);
    const std::ptrdiff_t from = picture.pixels.Width();
    for (int row = 0; row < std::min(height, picture.pixels.Height()); ++row) {
        std::copy_n(picture.alpha.begin() + (picture.pixels.Height() - 1 - row) * from,
                    std::min(width, picture.pixels.Width()),
                    fitted.begin() + (height - 1 - row) * static_cast<std::ptrdiff_t>(width));
    }
    return fitted;
}

void PutOn(PictureBox& box, Decoded& picture) {
    if (box.autoSize || !box.surface.DIBPtr()) {
        box.surface.Swap(picture.pixels);
        box.alpha.swap(picture.alpha);
        return;
    }
    box.surface.Clear(0);
    box.surface.hDC()->BitBlt(0, 0, picture.pixels.Width(), picture.pixels.Height(), *picture.pixels.hDC(), 0,
                              0);
    box.alpha = FitAlpha(picture, box.surface.Width(), box.surface.Height());
}

}  // namespace

void Picture::InitPictureBox() {
    Trap({Module, "InitPictureBox"}, [&] {
        if (!Box()) index_ = modPictureBox::CreatePictureBox();
    });
}

const DIB* Picture::Value() const {
    const PictureBox* box = Box();
    return box ? &box->surface : nullptr;
}

DeviceContext* Picture::hDC() {
    PictureBox* box = Box();
    if (box && box->surface.hDC()) return box->surface.hDC();
    Trap({Module, "Get hDC"}, [&] {
        errors_.Append("Picture.cls (Get hDC)",
                       {
                           {"Filename",              box ? box->fileName : ""                              },
                           {"Line",                  std::to_string(std::source_location::current().line())},
                           {"myPicture was Nothing", TextFromBoolean(!box)                                 },
                           {"PictureIndex",          std::to_string(index_)                                }
        });
    });
    return nullptr;
}

int Picture::Width() const { return Box() ? Box()->surface.Width() : 0; }

void Picture::SetWidth(int width) { SetWidthHeight(width, Height()); }

int Picture::Height() const { return Box() ? Box()->surface.Height() : 0; }

void Picture::SetHeight(int height) { SetWidthHeight(Width(), height); }

void Picture::SetWidthHeight(int width, int height) {
    PictureBox* box = Box();
    if (!box || (width == Width() && height == Height())) return;
    box->alpha.clear();
    // Not by its joint setter, which would forget a side that is set before the other one.
    box->surface.SetWidth(width);
    box->surface.SetHeight(height);
}

void Picture::SetAutoSize(bool autoSize) {
    if (PictureBox* box = Box()) box->autoSize = autoSize;
}

void Picture::Clear() {
    PictureBox* box = Box();
    if (!box) return;
    box->surface.Clear(0);
    box->alpha.clear();
    box->fileName.clear();
}

void Picture::SetPicture(const DIB& picture) {
    Trap({Module, "SetPicture"}, [&] {
        PictureBox* box = Box();
        Decoded copy;
        if (!box || !picture.DIBPtr() || !copy.pixels.CopyFrom(picture)) return;
        PutOn(*box, copy);
        box->fileName.clear();
    });
}

bool Picture::SetPictureFile(std::string_view name) {
    return Trap({Module, "PictureFile"}, [&] {
        PictureBox* box = Box();
        refusal_ = PictureRefusal::None;
        const auto text = box ? ReadPictureFile(files_, name) : std::nullopt;
        if (!text) return false;
        const auto bytes = AsBytes(*text);
        Decoded picture;
        DIB spare;
        if (LooksLikeJpeg(bytes)) {
            if (!DecodeJpeg(codec_, loader_, bytes, picture.pixels, spare)) return false;
        } else {
            LoadedPicture loaded = loader_.Load(bytes);
            refusal_ = loaded.refusal;
            if (!TakePicture(loaded, picture.pixels, spare)) return false;
            picture.alpha = std::move(loaded.alpha);
        }
        PutOn(*box, picture);
        box->fileName = name;
        return true;
    });
}

std::span<const std::uint8_t> Picture::Alpha() const {
    const PictureBox* box = Box();
    return box ? std::span<const std::uint8_t>(box->alpha) : std::span<const std::uint8_t>();
}

void Picture::FreeMemory() {
    PictureBox* box = Box();
    if (!box) return;
    box->surface.SetWidthHeight(0, 0);
    box->alpha = {};
    box->fileName.clear();
}

void Picture::UnloadClass() {
    modPictureBox::DestroyPictureBox(index_);
    index_ = 0;
}

PictureBox* Picture::Box() const { return modPictureBox::GetPictureBox(index_); }

}  // namespace tessaloom
