#include "ui/CanvasWindow.h"

#include <QAction>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QScrollBar>

#include "model/Canvas.h"
#include "platform/MainWindow.h"
#include "ui/CanvasKind.h"
#include "ui/ProgramIcon.h"
#include "ui/Twips.h"
#include "ui/canvas/CanvasEditor.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

/// What a new window may take of the frame.
constexpr double LargestShare = 0.9;
constexpr QSize SmallestArea{480, 360};

constexpr int Minimized = static_cast<int>(WindowState::Minimized);

QPoint PlaceOf(const Canvas& canvas) {
    return {qRound(double(canvas.Left()) / Twips::PerPixel(Qt::Horizontal)),
            qRound(double(canvas.Top()) / Twips::PerPixel(Qt::Vertical))};
}

/// The frame finds a place for a canvas whose file holds none, which reads as the very corner.
bool HasPlace(const Canvas& canvas) { return canvas.Left() != 0 || canvas.Top() != 0; }

}  // namespace

CanvasWindow::CanvasWindow(Workspace& workspace, int slot) : workspace_(workspace), slot_(slot) {
    setObjectName(QString("Canvas%1").arg(slot, 2, 10, QChar('0')));
    setAttribute(Qt::WA_DeleteOnClose, false);
    setWindowIcon(ProgramIcon());
    editor_ = new CanvasEditor(workspace, slot);
    scroll_ = new QScrollArea(this);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setAlignment(Qt::AlignCenter);
    scroll_->setBackgroundRole(QPalette::Mid);
    scroll_->setWidgetResizable(true);
    scroll_->setWidget(editor_);
    setWidget(scroll_);
    // The commands of the menus have the same keys.
    if (systemMenu())
        for (QAction* action : systemMenu()->actions()) action->setShortcut({});
    connect(&workspace_, &Workspace::Pulse, this, [this] {
        if (isVisible()) ShowCaption();
    });
}

CanvasWindow::~CanvasWindow() = default;

void CanvasWindow::ShowPicture(const DIB& picture) { editor_->ShowPicture(picture); }

void CanvasWindow::ShowCaption() {
    const Canvas* canvas = workspace_.CanvasAt(slot_);
    if (!canvas) return;
    const QString caption = QString::fromStdString(canvas->Name()) + (canvas->NeedSaving() ? " *" : "");
    if (caption != windowTitle()) setWindowTitle(caption);
}

void CanvasWindow::ReadCanvas() {
    const Canvas* canvas = workspace_.CanvasAt(slot_);
    if (!canvas || placing_) return;
    const QScopedValueRollback placing(placing_, true);
    ShowCaption();
    editor_->SetScaled(canvas->FormType() != CanvasKind::Unscaled);
    Place(*canvas);
}

void CanvasWindow::Place(const Canvas& canvas) {
    const bool minimized = canvas.WindowState() == Minimized;
    const QSize size(canvas.Width(), canvas.Height());
    if (!isMinimized() && !isMaximized()) {
        if (size != shownSize_) {
            Fit(canvas);
            shownSize_ = size;
        }
        const QPoint place = PlaceOf(canvas);
        if (HasPlace(canvas) && place != knownPlace_) move(place - Scrolled());
        knownPlace_ = place;
    }
    if (minimized == isMinimized() || (!minimized && isMaximized())) return;
    setWindowState(minimized ? Qt::WindowMinimized : Qt::WindowNoState);
}

void CanvasWindow::Fit(const Canvas& canvas) {
    resize(FittingSize(canvas));
    fitted_ = size();
}

/// The frame has its own size only after its windows were made; what the person sized stays as it is.
void CanvasWindow::FrameResized() {
    const Canvas* canvas = workspace_.CanvasAt(slot_);
    if (!canvas || isMinimized() || isMaximized()) return;
    if (size() == fitted_) Fit(*canvas);
    if (settled_ && !HasPlace(*canvas)) PutInSight();
}

/// Near the place that the frame found, and within the frame as far as that is large enough.
void CanvasWindow::PutInSight() {
    const QMdiArea* frame = mdiArea();
    if (!frame) return;
    const QScopedValueRollback placing(placing_, true);
    const QSize room = (frame->contentsRect().size() - size()).expandedTo({0, 0});
    const QPoint place(qBound(0, foundPlace_.x(), room.width()), qBound(0, foundPlace_.y(), room.height()));
    move(place - Scrolled());
    settledPlace_ = FramePlace();
}

/// The whole picture, as large as it is or as large as the frame allows.
QSize CanvasWindow::FittingSize(const Canvas& canvas) const {
    const QMdiArea* frame = mdiArea();
    const QSize area = (frame ? frame->contentsRect().size() : QSize()).expandedTo(SmallestArea);
    const QMargins border = contentsMargins();
    const QSize around(border.left() + border.right(), border.top() + border.bottom());
    const QSize most = area * LargestShare - around;
    QSize picture(canvas.Width(), canvas.Height());
    if (picture.width() > most.width() || picture.height() > most.height())
        picture.scale(most, Qt::KeepAspectRatio);
    return (picture + around).expandedTo(minimumSizeHint());
}

void CanvasWindow::BringBack() {
    show();
    if (isMinimized()) showNormal();
    raise();
    if (QMdiArea* frame = mdiArea()) frame->setActiveSubWindow(this);
}

void CanvasWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    hide();
    if (QMdiArea* frame = mdiArea()) frame->activateNextSubWindow();
}

/// The person, or a command of theirs, moves the window: not the frame while it lays things out.
bool CanvasWindow::Settled() const { return settled_ && !placing_ && isVisible(); }

void CanvasWindow::showEvent(QShowEvent* event) {
    QMdiSubWindow::showEvent(event);
    if (settled_) return;
    if (QMdiArea* frame = mdiArea()) frame->installEventFilter(this);
    // The frame finds a place for a new window while it shows it.
    QMetaObject::invokeMethod(
        this,
        [this] {
            settledPlace_ = foundPlace_ = FramePlace();
            settled_ = true;
            FrameResized();
        },
        Qt::QueuedConnection);
}

bool CanvasWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == mdiArea() && event->type() == QEvent::Resize) FrameResized();
    return QMdiSubWindow::eventFilter(watched, event);
}

/// How far the frame's contents are scrolled: that moves its windows, but not their places.
QPoint CanvasWindow::Scrolled() const {
    const QMdiArea* frame = mdiArea();
    return frame ? QPoint(frame->horizontalScrollBar()->value(), frame->verticalScrollBar()->value())
                 : QPoint();
}

QPoint CanvasWindow::FramePlace() const { return pos() + Scrolled(); }

void CanvasWindow::moveEvent(QMoveEvent* event) {
    QMdiSubWindow::moveEvent(event);
    const QPoint place = FramePlace();
    if (!Settled() || isMinimized() || isMaximized() || place == settledPlace_) return;
    Canvas* canvas = workspace_.CanvasAt(slot_);
    if (!canvas) return;
    const QScopedValueRollback placing(placing_, true);
    settledPlace_ = knownPlace_ = place;
    // The very corner would read as no place: less than a pixel beside it does not.
    canvas->SetLeft(place.isNull() ? 1 : place.x() * Twips::PerPixel(Qt::Horizontal));
    canvas->SetTop(place.y() * Twips::PerPixel(Qt::Vertical));
}

void CanvasWindow::changeEvent(QEvent* event) {
    QMdiSubWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange || !Settled()) return;
    const QScopedValueRollback placing(placing_, true);
    if (Canvas* canvas = workspace_.CanvasAt(slot_)) canvas->SetWindowState(isMinimized() ? Minimized : 0);
}

}  // namespace tessaloom
