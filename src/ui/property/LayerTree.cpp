#include "ui/property/LayerTree.h"

#include <QDragLeaveEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <algorithm>
#include <iterator>

#include "model/edit/PropertyChoices.h"
#include "ui/property/editors/Parts.h"
#include "ui/shared/CommandIcon.h"

namespace tessaloom {

namespace {

enum Column { Title, Due };
enum Role { KindRole = Qt::UserRole, SlotRole, PassRole };

constexpr int Passes = static_cast<int>(std::size(PropertyChoices::Levels));

std::optional<LayerId> LayerOf(const QTreeWidgetItem* item) {
    if (!item || !item->parent()) return std::nullopt;
    return LayerId{static_cast<LayerId::Kind>(item->data(Title, KindRole).toInt()),
                   item->data(Title, SlotRole).toInt()};
}

bool SameOrder(const std::vector<LayerLine>& a, const std::vector<LayerLine>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const LayerLine& x, const LayerLine& y) {
        return x.layer == y.layer && x.pass == y.pass;
    });
}

}  // namespace

LayerTree::LayerTree(QWidget* parent) : QTreeWidget(parent) {
    setColumnCount(2);
    setHeaderHidden(true);
    setSelectionMode(ExtendedSelection);
    setDragDropMode(InternalMove);
    setUniformRowHeights(true);
    setRootIsDecorated(false);
    setIndentation(fontMetrics().height() / 2);
    setAccessibleName("Layers");
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(Title, QHeaderView::Stretch);
    header()->setSectionResizeMode(Due, QHeaderView::Fixed);
    header()->resizeSection(Due, fontMetrics().horizontalAdvance("off schedule") + fontMetrics().height());
    header()->setMinimumSectionSize(fontMetrics().height());
    connect(this, &QTreeWidget::itemSelectionChanged, this, &LayerTree::SelectionMade);
    connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int column) {
        if (const auto layer = LayerOf(item); layer && column == Title)
            Q_EMIT Switched(*layer, item->checkState(Title) == Qt::Checked);
    });
}

void LayerTree::ShowLines(const std::vector<LayerLine>& lines) {
    if (state() == DraggingState || state() == EditingState) return;
    const QSignalBlocker quiet(this);
    if (topLevelItemCount() == 0 || !SameOrder(lines, lines_)) {
        Rebuild(lines);
        return;
    }
    for (std::size_t i = 0; i < lines.size(); ++i) ShowLine(ItemOf(lines[i].layer), lines[i], &lines_[i]);
    lines_ = lines;
}

void LayerTree::Rebuild(const std::vector<LayerLine>& lines) {
    const std::vector<LayerId> selected = Selection();
    const auto current = Current();
    clear();
    std::vector<QTreeWidgetItem*> headings(static_cast<std::size_t>(Passes));
    for (int pass = Passes - 1; pass >= 0; --pass) {
        auto* heading = new QTreeWidgetItem(this);
        heading->setText(Title, Editors::Words(PropertyChoices::Levels[pass].label));
        heading->setData(Title, PassRole, pass);
        heading->setFlags(Qt::ItemIsEnabled | Qt::ItemIsDropEnabled);
        heading->setForeground(Title, palette().color(QPalette::PlaceholderText));
        heading->setFirstColumnSpanned(true);
        headings[static_cast<std::size_t>(pass)] = heading;
    }
    for (const LayerLine& line : lines) {
        auto* item = new QTreeWidgetItem(headings.at(static_cast<std::size_t>(line.pass)));
        item->setData(Title, KindRole, static_cast<int>(line.layer.kind));
        item->setData(Title, SlotRole, line.layer.slot);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable |
                       Qt::ItemIsDragEnabled);
        item->setTextAlignment(Due, Qt::AlignRight | Qt::AlignVCenter);
        ShowLine(item, line, nullptr);
    }
    expandAll();
    lines_ = lines;
    ShowSelection(selected);
    if (QTreeWidgetItem* item = current ? ItemOf(*current) : nullptr)
        setCurrentItem(item, Title, QItemSelectionModel::NoUpdate);
}

void LayerTree::ShowLine(QTreeWidgetItem* item, const LayerLine& line, const LayerLine* before) {
    if (!before || before->title != line.title) {
        item->setText(Title, QString::fromStdString(line.title));
        item->setToolTip(Title, QString::fromStdString(line.title));
    }
    if (!before || before->icon != line.icon) item->setIcon(Title, CommandIcon(line.icon, palette()));
    const Qt::CheckState state = line.enabled ? Qt::Checked : Qt::Unchecked;
    if (item->checkState(Title) != state || !before) item->setCheckState(Title, state);
    if (!before || before->due != line.due) item->setText(Due, QString::fromStdString(line.due));
    if (before && before->enabled == line.enabled) return;
    const QPalette::ColorRole role = line.enabled ? QPalette::Text : QPalette::PlaceholderText;
    item->setForeground(Title, palette().color(role));
    item->setForeground(Due, palette().color(QPalette::PlaceholderText));
}

QTreeWidgetItem* LayerTree::ItemOf(LayerId layer) const {
    for (int pass = 0; pass < topLevelItemCount(); ++pass)
        for (int i = 0; i < topLevelItem(pass)->childCount(); ++i)
            if (LayerOf(topLevelItem(pass)->child(i)) == layer) return topLevelItem(pass)->child(i);
    return nullptr;
}

void LayerTree::ShowSelection(const std::vector<LayerId>& layers) {
    if (layers == Selection()) return;
    const QSignalBlocker quiet(this);
    clearSelection();
    for (const LayerId layer : layers) {
        QTreeWidgetItem* item = ItemOf(layer);
        if (!item) continue;
        item->setSelected(true);
        if (layer == layers.back()) {
            setCurrentItem(item, Title, QItemSelectionModel::NoUpdate);
            scrollToItem(item);
        }
    }
}

std::vector<LayerId> LayerTree::Selection() const {
    std::vector<LayerId> layers;
    for (const QTreeWidgetItem* item : selectedItems())
        if (const auto layer = LayerOf(item)) layers.push_back(*layer);
    return layers;
}

std::optional<LayerId> LayerTree::Current() const { return LayerOf(currentItem()); }

LayerTree::Place LayerTree::PlaceAt(const QPoint& position, LayerId dragged) const {
    QTreeWidgetItem* item = itemAt(position);
    Place place{
        0, {dragged.kind, 0}
    };
    if (!item) return place;  // beneath everything
    const QTreeWidgetItem* heading = item->parent() ? item->parent() : item;
    place.pass = heading->data(Title, PassRole).toInt();
    int first = 0;
    if (item->parent()) {
        const bool beneath = position.y() > visualItemRect(item).center().y();
        first = heading->indexOfChild(item) + (beneath ? 1 : 0);
    }
    for (int i = first; i < heading->childCount(); ++i)
        if (const auto layer = LayerOf(heading->child(i)); layer->kind == dragged.kind && *layer != dragged) {
            place.below = *layer;
            break;
        }
    return place;
}

/// The window has a command of the same key, which acts on its canvas.
bool LayerTree::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Delete)) {
        event->accept();
        return true;
    }
    return QTreeWidget::event(event);
}

void LayerTree::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Delete))
        Q_EMIT DeletePressed();
    else
        QTreeWidget::keyPressEvent(event);
}

void LayerTree::dropEvent(QDropEvent* event) {
    const auto dragged = Current();
    // The lines move when the layers have: the list itself moves nothing.
    event->setDropAction(Qt::IgnoreAction);
    event->accept();
    QDragLeaveEvent end;
    dragLeaveEvent(&end);  // which takes the mark of the place away and ends scrolling
    if (!dragged || event->source() != this) return;
    const Place place = PlaceAt(event->position().toPoint(), *dragged);
    QMetaObject::invokeMethod(
        this, [this, dragged = *dragged, place] { Q_EMIT Dropped(dragged, place.pass, place.below); },
        Qt::QueuedConnection);
}

void LayerTree::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange && !lines_.empty()) {
        const QSignalBlocker quiet(this);
        Rebuild(std::vector<LayerLine>(lines_));
    }
    QTreeWidget::changeEvent(event);
}

}  // namespace tessaloom
