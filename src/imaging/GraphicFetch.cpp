// How a `Graphic` takes in the picture of an address.

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "core/ErrorReport.h"
#include "core/Log.h"
#include "imaging/Graphic.h"
#include "locale/Error.h"
#include "platform/Ascii.h"
#include "platform/FileSystem.h"
#include "platform/UrlTransfer.h"

namespace tessaloom {

namespace {

constexpr Procedure Here = {"Graphic.cls", "myInet_StateChanged"};

/// A response is written to its file in pieces of this size.
constexpr std::size_t ChunkBytes = 100'000;

/// What an address ends with, and the extension of the file that its picture is put into. The
/// content of ".gif", ".bmp" and ".bin" files decides how they are decoded.
struct Extension {
    std::string_view ending, extension;
};
constexpr Extension Extensions[] = {
    {"JPG",  ".jpg"},
    {"JPEG", ".jpg"},
    {"GIF",  ".gif"},
    {"BMP",  ".bmp"},
};

std::string_view ExtensionFor(std::string_view address) {
    for (const auto& [ending, extension] : Extensions)
        if (ascii::EndsWithText(address, ending)) return extension;
    return ".bin";
}

std::string Digits(int number, std::size_t count) {
    const std::string text = std::to_string(number);
    return std::string(count - std::min(count, text.size()), '0') + text;
}

}  // namespace

std::string Graphic::TemporaryFileName() const {
    return "tmp" + Digits(canvasValue_, 2) + Digits(indexValue_, 3) + std::string(ExtensionFor(fetched_));
}

bool Graphic::SourcePending() const { return myInet_ && myInet_->StillExecuting(); }

void Graphic::CancelFetch() {
    if (myInet_) myInet_->Cancel();
}

void Graphic::TakeAddress() {
    CancelFetch();
    if (sourceURL_.empty()) return;
    if (!myInet_) {
        myInet_ = access_.transfers.MakeTransfer();
        myInet_->OnStateChanged([this](TransferState state) { myInet_StateChanged(state); });
    }
    fetched_ = sourceURL_;
    myInet_->Get(fetched_);
}

void Graphic::myInet_StateChanged(TransferState state) {
    Trap(Here, [&] {
        if (sourceType_ != Address) return;
        if (state == TransferState::Failed) return FetchFailed(myInet_->Failure());
        if (state != TransferState::ResponseCompleted) return;
        const std::string name = TemporaryFileName();
        if (!StoreResponse(name)) return;
        fetchFault_.clear();
        image_.SetPictureFileName(name, MaskSecrets(fetched_));
        image_.ReloadPicture();
        SetChanged(true);
    });
}

/// The name is relative, so that the file lies in the folder in which the program was started.
bool Graphic::StoreResponse(const std::string& name) {
    FileSystem& files = access_.files;
    std::string chunk = myInet_->GetChunk(ChunkBytes);
    if (chunk.empty()) {
        FetchFailed("the response is empty");
        return false;
    }
    bool written = files.WriteFile(name, chunk);
    while (written && !(chunk = myInet_->GetChunk(ChunkBytes)).empty())
        written = files.AppendText(name, chunk);
    if (written) return true;
    const std::string reason = files.LastFailure();
    files.DeleteFile(name);
    FetchFailed("cannot write " + name + ": " + reason);
    return false;
}

/// The layer keeps its picture; the address is asked again when the layer is next due.
void Graphic::FetchFailed(const std::string& reason) {
    std::string fault = "No picture came from " + MaskSecrets(fetched_) + ": " + reason;
    if (fetchFault_ == fault) return;
    fetchFault_ = std::move(fault);
    Report({.module = std::string(Here.module),
            .procedure = std::string(Here.name),
            .line = __LINE__,
            .number = static_cast<int>(ErrorNumber::DeviceIO),
            .description = fetchFault_});
}

}  // namespace tessaloom
