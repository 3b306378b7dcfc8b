#include "ui/dialogs/CanvasSetupPage.h"

#include <QDesktopServices>
#include <QPushButton>
#include <QUrl>
#include <utility>

#include "core/Log.h"
#include "model/Canvas.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"
#include "ui/dialogs/Wording.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

CanvasSetupPage::CanvasSetupPage(Workspace& workspace, int canvas, std::unique_ptr<PropertySet> set)
    : SetupPage(workspace, std::move(set)), canvas_(canvas) {}

Canvas* CanvasSetupPage::TheCanvas() const { return TheWorkspace().CanvasAt(canvas_); }

void CanvasSetupPage::ShowFacts(Portfolio& portfolio) {
    if (Canvas* canvas = TheCanvas()) ShowCanvas(portfolio, *canvas);
}

QString CanvasSetupPage::Clash(const Portfolio& portfolio, int slot, const QString& sentence) {
    return slot == 0 ? QString() : sentence.arg(Wording::CanvasTitle(slot, portfolio.Canvas(slot).Name()));
}

void CanvasSetupPage::AddFolderActions(std::function<std::string(Canvas&)> folder) {
    folder_ = std::move(folder);
    makeFolder_ = AddAction("cmdMakeFolder", "M&ake Folder", [this] {
        Canvas* canvas = TheCanvas();
        FileSystem& files = TheWorkspace().Services().fileSystem;
        if (canvas && !files.MakeFolder(folder_(*canvas)))
            Log(LogLevel::Warning,
                "The folder " + folder_(*canvas) + " cannot be made: " + files.LastFailure());
    });
    openFolder_ = AddAction("cmdOpenFolder", "&Open Folder", [this] {
        Canvas* canvas = TheCanvas();
        const FileSystem& files = TheWorkspace().Services().fileSystem;
        if (canvas)
            QDesktopServices::openUrl(QUrl::fromLocalFile(Wording::FullPath(files, folder_(*canvas) + "/.")));
    });
}

QString CanvasSetupPage::FolderHint(Canvas& canvas) {
    const FileSystem& files = TheWorkspace().Services().fileSystem;
    const std::string folder = folder_(canvas);
    const bool there = folder.empty() || files.FolderExists(folder);
    makeFolder_->setVisible(!there);
    openFolder_->setVisible(there);
    if (there) return {};
    return QString("The folder %1 does not exist, so nothing can be written.")
        .arg(Wording::Breakable(Wording::FullPath(files, folder)));
}

}  // namespace tessaloom
