#include "model/PublishedCanvases.h"

#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "platform/Paths.h"
#include "publish/VideoStreaming.h"
#include "script/host/Script.h"

namespace tessaloom {

static_assert(WebHost::Slots == Portfolio::MaxCanvas);

CanvasWebServer* PublishedCanvases::PublishedCanvas(int slot) {
    Canvas& canvas = portfolio_.Canvas(slot);
    CanvasWebServer& page = canvas.VideoStreaming().CanvasWebServer();
    return canvas.Enabled() && page.Enabled() ? &page : nullptr;
}

std::string PublishedCanvases::CanvasName(int slot) const { return portfolio_.Canvas(slot).Name(); }

void PublishedCanvases::WebRequest(std::string_view ipAddress, std::string_view path) {
    portfolio_.Script().CallWebRequest(ipAddress, path);
}

std::string PublishedCanvases::Folder() const { return ParentFolderName(portfolio_.FileName()); }

}  // namespace tessaloom
