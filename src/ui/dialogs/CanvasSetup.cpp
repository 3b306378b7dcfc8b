#include "ui/dialogs/CanvasSetup.h"

#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "model/Canvas.h"
#include "model/edit/History.h"
#include "ui/dialogs/CanvasSetupPage.h"
#include "ui/dialogs/Wording.h"
#include "ui/property/PropertyForm.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

/// In the order of `CanvasPage`.
constexpr struct {
    const char* title;
    SetupPage* (*make)(Workspace&, int canvas);
} Pages[] = {
    {"General",         CanvasPages::General       },
    {"Fixed Save",      CanvasPages::FixedSave     },
    {"Sequential Save", CanvasPages::SequentialSave},
    {"Wallpaper",       CanvasPages::Wallpaper     },
    {"FTP Upload",      CanvasPages::FTPUpload     },
    {"Web Picture",     CanvasPages::WebPicture    },
};

}  // namespace

CanvasSetup::CanvasSetup(Workspace& workspace, int canvas, QWidget* parent)
    : SetupWindow(workspace, NameOf(canvas), "Canvas Properties", parent),
      canvas_(canvas),
      tabs_(new QTabWidget) {
    tabs_->setObjectName("pages");
    for (const auto& page : Pages) {
        pages_.push_back(page.make(workspace, canvas));
        tabs_->addTab(pages_.back(), page.title);
    }
    Contents()->addWidget(tabs_);
    connect(&workspace, &Workspace::Pulse, this, &CanvasSetup::Refresh);
    Refresh();
    const QFontMetrics font = fontMetrics();
    const int allTabs = tabs_->tabBar()->sizeHint().width() + font.averageCharWidth() * 8;
    resize(std::max(font.averageCharWidth() * 90, allTabs), font.height() * 38);
}

void CanvasSetup::SelectPage(CanvasPage page) {
    PropertyForm* form = pages_[static_cast<std::size_t>(page)]->Form();
    form->FocusOn(form->Set()->Properties().front().name);
}

void CanvasSetup::Refresh() {
    const Canvas* canvas = TheWorkspace().CanvasAt(canvas_);
    if (!canvas) return accept();
    const QString title = "Canvas Properties: " + Wording::Words(canvas->Name());
    if (title != windowTitle()) setWindowTitle(title);
}

void CanvasSetup::Restore() {
    const HistoryStep step(TheWorkspace().HistoryOf(canvas_), "Cancel canvas properties");
    for (SetupPage* page : pages_) page->Form()->Restore();
}

void ShowCanvasSetup(Workspace& workspace, QWidget* parent, int canvas, CanvasPage page) {
    if (!workspace.CanvasAt(canvas)) return;
    SetupWindow* window = SetupWindow::ShowOnly(CanvasSetup::NameOf(canvas),
                                                [&] { return new CanvasSetup(workspace, canvas, parent); });
    if (auto* setup = qobject_cast<CanvasSetup*>(window)) setup->SelectPage(page);
}

}  // namespace tessaloom
