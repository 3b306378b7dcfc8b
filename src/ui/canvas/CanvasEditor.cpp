#include "ui/canvas/CanvasEditor.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "imaging/DIB.h"
#include "model/Canvas.h"
#include "model/edit/History.h"
#include "model/edit/Layers.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/PictureLoader.h"
#include "platform/Platform.h"
#include "ui/canvas/CanvasPicture.h"
#include "ui/canvas/Gesture.h"
#include "ui/canvas/GripCursor.h"
#include "ui/canvas/LayerCommands.h"
#include "ui/canvas/LayerMenu.h"
#include "ui/canvas/NewLayers.h"
#include "ui/canvas/Notice.h"
#include "ui/canvas/Overlay.h"
#include "ui/canvas/PictureFileDialog.h"
#include "ui/shared/Workspace.h"
#include "video/VideoFeed.h"

namespace tessaloom {

namespace {

constexpr int NudgeStep = 1;
constexpr int LargeNudgeStep = 10;
constexpr int LeastSide = 5;  ///< Of a scaled picture, in heights of the font.

struct Arrow {
    int key, dx, dy;
};
constexpr Arrow Arrows[] = {
    {Qt::Key_Left,  -1, 0 },
    {Qt::Key_Right, 1,  0 },
    {Qt::Key_Up,    0,  -1},
    {Qt::Key_Down,  0,  1 },
};

struct EditKey {
    QKeySequence::StandardKey key;
    void (CanvasEditor::*command)();
};
constexpr EditKey EditKeys[] = {
    {QKeySequence::Cut,       &CanvasEditor::Cut      },
    {QKeySequence::Copy,      &CanvasEditor::Copy     },
    {QKeySequence::Paste,     &CanvasEditor::Paste    },
    {QKeySequence::Delete,    &CanvasEditor::Delete   },
    {QKeySequence::SelectAll, &CanvasEditor::SelectAll},
};

}  // namespace

CanvasEditor::CanvasEditor(Workspace& workspace, int canvas, QWidget* parent)
    : QWidget(parent),
      workspace_(workspace),
      slot_(canvas),
      picture_(std::make_unique<CanvasPicture>()),
      gesture_(std::make_unique<Gesture>(workspace, canvas)),
      commands_(std::make_unique<LayerCommands>(workspace, canvas)),
      overlay_(std::make_unique<Overlay>()),
      notice_(new Notice(this)),
      newLayers_(new NewLayers(workspace, canvas, this)) {
    canvasSize_ = CanvasSize();
    setObjectName("CanvasEditor");
    setAccessibleName(tr("Canvas"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAcceptDrops(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(newLayers_, &NewLayers::Refused, notice_, &Notice::Tell);
    connect(newLayers_, &NewLayers::Added, this, &CanvasEditor::EditRequested);
    connect(&workspace_, &Workspace::SelectionChanged, this, &CanvasEditor::SelectionMoved);
    connect(&workspace_, &Workspace::LayersChanged, this, qOverload<>(&QWidget::update));
    connect(&workspace_, &Workspace::Pulse, this, &CanvasEditor::RefreshOverlay);
    connect(&workspace_, &Workspace::ActiveCanvasChanged, this, [this] {
        if (gesture_->Now() != Gesture::State::Idle && workspace_.ActiveSlot() != slot_) EndGesture();
        RefreshOverlay();
    });
    connect(&workspace_, &Workspace::PortfolioChanged, this, [this] { gesture_->Abandon(); });
}

CanvasEditor::~CanvasEditor() = default;

Canvas* CanvasEditor::TheCanvas() const { return workspace_.CanvasAt(slot_); }

// --- The picture and where it lies ---

QSize CanvasEditor::CanvasSize() const {
    const Canvas* canvas = TheCanvas();
    return canvas ? QSize(canvas->Width(), canvas->Height()) : canvasSize_;
}

QRect CanvasEditor::PictureRect() const {
    const QSize room = (QSizeF(size()) * devicePixelRatioF()).toSize();
    QSize shown = canvasSize_;
    if (scaled_ && !shown.isEmpty()) shown = shown.scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1});
    return {QPoint(std::max(0, (room.width() - shown.width()) / 2),
                   std::max(0, (room.height() - shown.height()) / 2)),
            shown};
}

ViewMap CanvasEditor::Map() const {
    const QRect place = PictureRect();
    const double ratio = devicePixelRatioF();
    const double scale = canvasSize_.isEmpty() ? 1 : static_cast<double>(place.width()) / canvasSize_.width();
    return {scale / ratio, QPointF(place.topLeft()) / ratio};
}

QRect CanvasEditor::OnWidget(const QRect& pixels) const {
    const double ratio = devicePixelRatioF();
    return QRectF(QPointF(pixels.topLeft()) / ratio, QSizeF(pixels.size()) / ratio).toAlignedRect();
}

void CanvasEditor::ShowPicture(const DIB& picture) {
    const QSize size(picture.Width(), picture.Height());
    const Canvas* canvas = TheCanvas();
    const bool partly = canvas && &canvas->Picture() == &picture && size == canvasSize_;
    const PixelArea changed = partly ? canvas->ChangedArea() : picture.Whole();
    if (partly) {
        picture_->Spoil(changed);
    } else {
        picture_->SpoilAll();
        if (std::exchange(canvasSize_, size) != size) {
            updateGeometry();
            update();
        }
    }
    if (!isVisible()) return;
    const QRect place = PictureRect();
    update(OnWidget(CanvasPicture::Touched(changed, size, place.size()).translated(place.topLeft())));
    RefreshOverlay();
}

void CanvasEditor::SetScaled(bool scaled) {
    if (scaled_ == scaled) return;
    scaled_ = scaled;
    updateGeometry();
    update();
    RefreshOverlay();
}

QSize CanvasEditor::sizeHint() const { return (QSizeF(CanvasSize()) / devicePixelRatioF()).toSize(); }

QSize CanvasEditor::minimumSizeHint() const {
    if (!scaled_) return sizeHint();
    const int least = fontMetrics().height() * LeastSide;
    return sizeHint().boundedTo({least, least});
}

void CanvasEditor::resizeEvent(QResizeEvent*) { RefreshOverlay(); }

void CanvasEditor::showEvent(QShowEvent*) { RefreshOverlay(); }

void CanvasEditor::hideEvent(QHideEvent*) { EndGesture(); }

void CanvasEditor::paintEvent(QPaintEvent* event) {
    const Canvas* canvas = TheCanvas();
    const QRect place = PictureRect();
    if (canvas && canvas->Picture().DIBPtr() && canvas->Picture().Width() == canvasSize_.width() &&
        canvas->Picture().Height() == canvasSize_.height())
        picture_->Update(canvas->Picture(), place.size());

    QPainter painter(this);
    const double ratio = devicePixelRatioF();
    const QImage& shown = picture_->Shown();
    const QRectF covered(QPointF(place.topLeft()) / ratio, QSizeF(place.size()) / ratio);
    // Up to under the picture's edge, which may lie within a pixel of the widget.
    const QRect inside = shown.isNull() ? QRect() : covered.toRect().adjusted(1, 1, -1, -1);
    const QRegion around = event->region().subtracted(inside);
    for (const QRect& part : around) painter.fillRect(part, palette().color(QPalette::Mid));
    if (!shown.isNull()) {
        painter.save();
        painter.scale(1 / ratio, 1 / ratio);  // now a unit is a pixel of the screen
        painter.drawImage(place.topLeft(), shown);
        painter.restore();
    }
    if (canvas && Layers::InDrawingOrder(*canvas).empty()) PaintHint(painter, covered);
    overlay_->Paint(painter, palette());
}

void CanvasEditor::PaintHint(QPainter& painter, const QRectF& place) const {
    const QRectF room = place.isEmpty() ? QRectF(rect()) : place & QRectF(rect());
    const double padding = fontMetrics().height() / 2.0;
    const int flags = Qt::AlignCenter | Qt::TextWordWrap;
    const QString hint = tr("Drop a picture here, or add a layer from the Canvas menu.");
    const QRectF text =
        painter.boundingRect(room.adjusted(2 * padding, padding, -2 * padding, -padding), flags, hint);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::Window));
    painter.drawRoundedRect(text.adjusted(-padding, -padding / 2, padding, padding / 2), 4, 4);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(text, flags, hint);
    painter.restore();
}

void CanvasEditor::RefreshOverlay() {
    if (!isVisible()) return;
    Overlay next;
    if (const Canvas* canvas = TheCanvas(); canvas && workspace_.ActiveSlot() == slot_) {
        next = Overlay::Of(*canvas, workspace_.Selection(), Map());
        next.span = gesture_->Span();
        if (!next.span.isEmpty()) next.span = next.map.ToWidget(next.span);
        const QRectF all = next.map.ToWidget(QRectF(QPointF(), QSizeF(canvasSize_)));
        if (const auto column = gesture_->Column()) {
            const double x = next.map.ToWidget(QPointF(*column, 0)).x();
            next.guides << QLineF(x, all.top(), x, all.bottom());
        }
        if (const auto row = gesture_->Row()) {
            const double y = next.map.ToWidget(QPointF(0, *row)).y();
            next.guides << QLineF(all.left(), y, all.right(), y);
        }
        next.values = gesture_->Values();
        next.pointer = pointer_;
        next.room = rect();
    }
    if (next == *overlay_) return;
    update(overlay_->Area(font()));
    update(next.Area(font()));
    *overlay_ = std::move(next);
}

void CanvasEditor::SelectionMoved() {
    if (History* history = workspace_.ActiveSlot() == slot_ ? workspace_.HistoryOf(slot_) : nullptr)
        history->Seal();
    RefreshOverlay();
    Describe();
}

void CanvasEditor::Describe() {
    const Canvas* canvas = TheCanvas();
    if (!canvas) return;
    setAccessibleName(tr("Canvas %1").arg(QString::fromStdString(canvas->Name())));
    QStringList titles;
    if (workspace_.ActiveSlot() == slot_)
        for (const LayerId layer : workspace_.Selection())
            titles << QString::fromStdString(Layers::Title(*canvas, layer));
    setAccessibleDescription(titles.isEmpty() ? tr("No layer selected")
                                              : tr("Selected: %1").arg(titles.join(", ")));
}

// --- The pointer ---

Gesture::Pointer CanvasEditor::PointerOf(const QMouseEvent& event) const {
    const ViewMap map = Map();
    return {map.ToCanvas(event.position()), map.ToCanvas(1.0), event.modifiers()};
}

void CanvasEditor::mousePressEvent(QMouseEvent* event) {
    workspace_.Activate(slot_);
    RefreshOverlay();
    pointer_ = event->position();
    if (event->button() == Qt::LeftButton) {
        gesture_->Press(PointerOf(*event), overlay_->GripAt(pointer_));
    } else if (gesture_->Dragging()) {
        gesture_->Cancel();
    }
    RefreshOverlay();
}

void CanvasEditor::mouseMoveEvent(QMouseEvent* event) {
    pointer_ = event->position();
    if (event->buttons() & Qt::LeftButton) {
        gesture_->Move(PointerOf(*event));
        RefreshOverlay();
    }
    ChooseCursor();
}

void CanvasEditor::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    gesture_->Release();
    RefreshOverlay();
    ChooseCursor();
}

void CanvasEditor::mouseDoubleClickEvent(QMouseEvent* event) {
    const Canvas* canvas = TheCanvas();
    if (!canvas || event->button() != Qt::LeftButton) return;
    const QPointF at = Map().ToCanvas(event->position());
    const std::vector<LayerId> hits = Layers::At(*canvas, at.x(), at.y());
    if (hits.empty()) return;
    const std::vector<LayerId> selection = workspace_.Selection();
    const auto chosen =
        std::ranges::find_if(hits, [&](LayerId layer) { return std::ranges::count(selection, layer) > 0; });
    Q_EMIT EditRequested(chosen == hits.end() ? hits.front() : *chosen);
}

void CanvasEditor::ChooseCursor() {
    if (gesture_->Dragging()) return;
    const Canvas* canvas = TheCanvas();
    const Grip grip = overlay_->GripAt(pointer_);
    if (grip.kind != Grip::Kind::None) return setCursor(GripCursor(grip, overlay_->gripped->angle));
    const QPointF at = Map().ToCanvas(pointer_);
    const bool onLayer = canvas && !Layers::At(*canvas, at.x(), at.y()).empty();
    setCursor(onLayer ? Qt::SizeAllCursor : Qt::ArrowCursor);
}

void CanvasEditor::EndGesture() {
    gesture_->Finish();
    RefreshOverlay();
}

void CanvasEditor::contextMenuEvent(QContextMenuEvent* event) {
    const Canvas* canvas = TheCanvas();
    if (!canvas) return;
    workspace_.Activate(slot_);
    const QPointF at = Map().ToCanvas(QPointF(event->pos()));
    const std::vector<LayerId> here = Layers::At(*canvas, at.x(), at.y());
    const std::vector<LayerId> selection = workspace_.Selection();
    const bool chosen =
        std::ranges::any_of(here, [&](LayerId layer) { return std::ranges::count(selection, layer) > 0; });
    if (event->reason() == QContextMenuEvent::Mouse && !here.empty() && !chosen)
        workspace_.Select({here.front()});
    MakeLayerMenu(*this, workspace_, slot_, here)->popup(event->globalPos());
}

// --- The keyboard ---

bool CanvasEditor::focusNextPrevChild(bool next) {
    return commands_->SelectNext(next) || QWidget::focusNextPrevChild(next);
}

void CanvasEditor::focusOutEvent(QFocusEvent* event) {
    if (event->reason() != Qt::PopupFocusReason && gesture_->Dragging()) EndGesture();
    QWidget::focusOutEvent(event);
}

void CanvasEditor::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        if (gesture_->Now() != Gesture::State::Idle)
            gesture_->Cancel();
        else if (!workspace_.Selection().empty())
            workspace_.Select({});
        else
            return event->ignore();
        return RefreshOverlay();
    }
    for (const Arrow& arrow : Arrows)
        if (event->key() == arrow.key && !gesture_->Dragging()) {
            const int step = event->modifiers() & Qt::ShiftModifier ? LargeNudgeStep : NudgeStep;
            commands_->Nudge(arrow.dx * step, arrow.dy * step);
            return RefreshOverlay();
        }
    for (const EditKey& key : EditKeys)
        if (event->matches(key.key)) return (this->*key.command)();
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (const auto selection = workspace_.Selection(); !selection.empty())
            return Q_EMIT EditRequested(selection.front());
    }
    QWidget::keyPressEvent(event);
}

// --- Commands ---

void CanvasEditor::Run(void (LayerCommands::*command)()) {
    if (gesture_->Dragging()) EndGesture();
    ((*commands_).*command)();
    RefreshOverlay();
}

void CanvasEditor::Cut() { Run(&LayerCommands::Cut); }
void CanvasEditor::Copy() { Run(&LayerCommands::Copy); }
void CanvasEditor::Duplicate() { Run(&LayerCommands::Duplicate); }
void CanvasEditor::Delete() { Run(&LayerCommands::Delete); }
void CanvasEditor::SelectAll() { Run(&LayerCommands::SelectAll); }
void CanvasEditor::Raise() { Run(&LayerCommands::Raise); }
void CanvasEditor::Lower() { Run(&LayerCommands::Lower); }
void CanvasEditor::ToFront() { Run(&LayerCommands::ToFront); }
void CanvasEditor::ToBack() { Run(&LayerCommands::ToBack); }

void CanvasEditor::Paste() {
    const QMimeData* held = QGuiApplication::clipboard()->mimeData();
    if (!held) return;
    if (gesture_->Dragging()) EndGesture();
    if (!commands_->Paste(*held)) newLayers_->Take(*held);
    RefreshOverlay();
}

void CanvasEditor::AddText() { newLayers_->AddText(tr("New text")); }
void CanvasEditor::AddBlock() { newLayers_->AddBlock(); }

void CanvasEditor::AddPictureFile() {
    const Canvas* canvas = TheCanvas();
    if (!canvas) return;
    std::string folder = ParentFolderName(canvas->FileName());
    if (folder.empty()) folder = workspace_.Services().fileSystem.CurrentFolder();
    std::ranges::replace(folder, '\\', '/');
    auto* dialog =
        new PictureFileDialog(this, QString::fromStdString(folder), workspace_.Services().pictureLoader);
    connect(dialog, &QFileDialog::filesSelected, newLayers_,
            [this](const QStringList& files) { newLayers_->AddPictureFiles(files); });
    connect(&workspace_, &Workspace::SetupMustClose, dialog, &QDialog::reject);
    dialog->open();
}

void CanvasEditor::AddAddress() {
    if (!TheCanvas()) return;
    auto* dialog = new QInputDialog(this);
    dialog->setObjectName("AddAddress");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Add Web Address"));
    dialog->setLabelText(tr("&Address of a picture, such as http://camera/picture.jpg"));
    dialog->resize(fontMetrics().averageCharWidth() * 60, dialog->sizeHint().height());
    connect(dialog, &QInputDialog::textValueSelected, newLayers_,
            [this](const QString& address) { newLayers_->AddAddress(address); });
    connect(&workspace_, &Workspace::SetupMustClose, dialog, &QDialog::reject);
    dialog->open();
}

void CanvasEditor::Choose(const QString& name, const std::vector<Choice>& choices, const QString& none) {
    if (choices.empty()) return notice_->Tell(none);
    if (choices.size() == 1) return choices.front().chosen();
    auto* menu = new QMenu(this);
    menu->setObjectName(name);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const Choice& choice : choices)
        menu->addAction(QString(choice.title).replace('&', "&&"), newLayers_, choice.chosen);
    menu->popup(mapToGlobal(visibleRegion().boundingRect().center()));
}

void CanvasEditor::AddFeed() {
    const Portfolio* portfolio = workspace_.Portfolio();
    if (!portfolio || !TheCanvas()) return;
    std::vector<Choice> choices;
    for (int feed = 0; feed < Portfolio::MaxFeed; ++feed)
        if (const std::string& name = portfolio->VideoFeed(feed).FeedName(); !name.empty())
            choices.push_back({QString::fromStdString(name), [this, name] { newLayers_->AddFeed(name); }});
    Choose("FeedMenu", choices, tr("There is no video feed yet. Add one, then add the camera here."));
    if (choices.empty()) Q_EMIT FeedsWanted();
}

void CanvasEditor::AddCanvas() {
    if (!TheCanvas()) return;
    std::vector<Choice> choices;
    for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot)
        if (const Canvas* canvas = workspace_.CanvasAt(slot); canvas && slot != slot_)
            choices.push_back({QString("%1: %2").arg(slot).arg(QString::fromStdString(canvas->Name())),
                               [this, slot] { newLayers_->AddCanvas(slot); }});
    Choose("CanvasMenu", choices, tr("No other canvas is open."));
}

// --- Drops ---

void CanvasEditor::dragEnterEvent(QDragEnterEvent* event) {
    if (TheCanvas() && NewLayers::Takes(*event->mimeData())) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    }
}

void CanvasEditor::dropEvent(QDropEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
    workspace_.Activate(slot_);
    newLayers_->Take(*event->mimeData(), Map().ToCanvas(event->position()));
    RefreshOverlay();
}

}  // namespace tessaloom
