#include "model/edit/Conflicts.h"

#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "platform/Ascii.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"
#include "platform/TextEncoding.h"
#include "publish/CanvasSaves.h"
#include "publish/VideoStreaming.h"

namespace tessaloom::Conflicts {

namespace {

template <typename Clashes>
int FirstOther(const Portfolio& portfolio, int canvas, Clashes clashes) {
    for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot) {
        const Canvas& other = portfolio.Canvas(slot);
        if (slot != canvas && other.Enabled() && clashes(other)) return slot;
    }
    return 0;
}

const FileSystem& Files(const Portfolio& portfolio) { return portfolio.PlatformServices().fileSystem; }

}  // namespace

int FixedFile(const Portfolio& portfolio, int canvas) {
    const std::string& path = portfolio.Canvas(canvas).Saves().FixedFileName();
    return FirstOther(portfolio, canvas, [&](const Canvas& other) {
        return other.Saves().FixedEnabled() && Files(portfolio).SameFile(path, other.Saves().FixedFileName());
    });
}

int SequentialFiles(const Portfolio& portfolio, int canvas) {
    const CanvasSaves& saves = portfolio.Canvas(canvas).Saves();
    const auto inFolder = [](const CanvasSaves& of) { return JoinPath(of.SequentialPath(), "x.jpg"); };
    return FirstOther(portfolio, canvas, [&](const Canvas& other) {
        return other.Saves().SequentialEnabled() &&
               other.Saves().SequentialType() == saves.SequentialType() &&
               Files(portfolio).SameFile(inFolder(saves), inFolder(other.Saves()));
    });
}

int Wallpaper(const Portfolio& portfolio, int canvas) {
    return FirstOther(portfolio, canvas,
                      [](const Canvas& other) { return other.Saves().BackgroundEnabled(); });
}

int Upload(const Portfolio& portfolio, int canvas) {
    const FTPPush& upload = portfolio.Canvas(canvas).VideoStreaming().FTPPush();
    return FirstOther(portfolio, canvas, [&](const Canvas& other) {
        const FTPPush& theirs = other.VideoStreaming().FTPPush();
        return theirs.Enabled() && theirs.Path() == upload.Path() && theirs.UserName() == upload.UserName() &&
               ascii::SameText(theirs.ServerName(), upload.ServerName());
    });
}

int WebName(const Portfolio& portfolio, int canvas) {
    const CanvasWebServer& web = portfolio.Canvas(canvas).VideoStreaming().CanvasWebServer();
    return FirstOther(portfolio, canvas, [&](const Canvas& other) {
        const CanvasWebServer& theirs = other.VideoStreaming().CanvasWebServer();
        return theirs.Enabled() && FoldCase(theirs.FileName()) == FoldCase(web.FileName());
    });
}

}  // namespace tessaloom::Conflicts
