#include "ui/property/TransparentColours.h"

#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QTreeWidget>
#include <algorithm>
#include <array>
#include <functional>
#include <optional>
#include <utility>

#include "imaging/Graphic.h"
#include "model/Canvas.h"
#include "model/edit/History.h"
#include "model/edit/Layers.h"
#include "ui/property/ColourGroups.h"
#include "ui/property/PicturePicker.h"
#include "ui/property/editors/Parts.h"
#include "ui/shared/FollowedLayers.h"
#include "ui/shared/SetupWindow.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

constexpr int LargestPreviewWidth = 640, LargestPreviewHeight = 480;

enum Column { RangeColumn, ToleranceColumn, OpacityColumn };

/// A percentage, by number and by slider.
class PercentRow : public QWidget {
public:
    PercentRow(const QString& name, const QString& label, std::function<void(int)> changed)
        : changed_(std::move(changed)) {
        box_->setObjectName(name);
        box_->setAccessibleName(label);
        box_->setRange(0, 100);
        box_->setSuffix(tr(" %"));
        slider_->setRange(0, 100);
        slider_->setMinimumWidth(fontMetrics().averageCharWidth() * 12);
        slider_->setFocusPolicy(Qt::NoFocus);  // the number does for the keyboard
        auto* row = new QHBoxLayout(this);
        row->setContentsMargins(0, 0, 0, 0);
        row->addWidget(slider_, 1);
        row->addWidget(box_);
        setFocusProxy(box_);
        connect(slider_, &QSlider::valueChanged, box_, &QSpinBox::setValue);
        connect(box_, &QSpinBox::valueChanged, this, [this](int value) {
            const QSignalBlocker quiet(slider_);
            slider_->setValue(value);
            changed_(value);
        });
    }

    void ShowValue(int percent) {
        if (box_->hasFocus() && box_->value() == percent) return;
        const QSignalBlocker quiet(box_), still(slider_);
        box_->setValue(percent);
        slider_->setValue(percent);
    }

private:
    std::function<void(int)> changed_;
    QSpinBox* box_ = new QSpinBox;
    QSlider* slider_ = new QSlider(Qt::Horizontal);
};

/// What comes out, over a checkerboard.
class ResultView : public QWidget {
public:
    ResultView() { setAccessibleName(tr("Result")); }

    void ShowResult(QImage image) {
        image_ = std::move(image);
        update();
    }

    QSize minimumSizeHint() const override { return QSize(40, 30) * fontMetrics().averageCharWidth(); }
    QSize sizeHint() const override { return minimumSizeHint() * 1.4; }

protected:
    void paintEvent(QPaintEvent*) override {
        if (image_.isNull()) return;
        QPainter painter(this);
        QRect place(QPoint(), image_.size().scaled(size(), Qt::KeepAspectRatio));
        place.moveCenter(rect().center());
        painter.drawImage(place, image_);
    }

private:
    QImage image_;
};

/// Half one colour, half the other.
QIcon Swatch(const QColor& first, const QColor& second, int size) {
    const qreal pixels = qApp->devicePixelRatio();
    QPixmap picture(QSize(size, size) * pixels);
    picture.setDevicePixelRatio(pixels);
    picture.fill(first);
    QPainter painter(&picture);
    painter.fillRect(QRect(size / 2, 0, size - size / 2, size), second);
    painter.setPen(Qt::gray);
    painter.drawRect(0, 0, size - 1, size - 1);
    painter.end();
    QIcon icon(picture);
    icon.addPixmap(picture, QIcon::Selected);  // not tinted: it shows a colour
    return icon;
}

QString NameOf(const QColor& colour) { return colour.name().toUpper(); }

QString RangeName(const ColourGroup& group) {
    return group.first == group.second
               ? NameOf(group.first)
               : NameOf(group.first) + QStringLiteral(" \u2013 ") + NameOf(group.second);
}

/// The range of the colours of all pixels.
ColourGroup RangeOf(const DIB& picture, const QRect& pixels, ColourGroup group) {
    std::array<int, 3> low{255, 255, 255}, high{0, 0, 0};  // blue, green, red
    for (int y = pixels.top(); y <= pixels.bottom(); ++y)
        for (int x = pixels.left(); x <= pixels.right(); ++x)
            for (std::size_t i = 0; i < 3; ++i) {
                const int part = picture.Row(y)[static_cast<std::size_t>(x) * 3 + i];
                low[i] = std::min(low[i], part);
                high[i] = std::max(high[i], part);
            }
    group.first = QColor(low[2], low[1], low[0]);
    group.second = QColor(high[2], high[1], high[0]);
    return group;
}

class TransparentColours : public SetupWindow {
public:
    TransparentColours(Workspace& workspace, QWidget* parent, int canvas, std::vector<LayerId> layers)
        : SetupWindow(workspace, QStringLiteral("TransparentColours"), tr("Transparent Colours"), parent),
          canvas_(canvas),
          layers_(workspace, canvas, std::move(layers)) {
        for (const Graphic* graphic : Graphics())
            found_.push_back(graphic ? ColourGroups::Of(*graphic) : ColourGroups());
        differ_->setText(Editors::DifferHint());
        differ_->setObjectName(QStringLiteral("differ"));
        Contents()->addWidget(differ_);
        MakePictures();
        MakeTable();
        connect(&workspace, &Workspace::Pulse, this, [this] {
            if (isVisible()) Refresh();
        });
        Refresh();
        list_->setCurrentItem(list_->topLevelItem(0));
    }

    bool IsFor(int canvas, const std::vector<LayerId>& layers) const {
        return canvas == canvas_ && layers == layers_.Now();
    }

protected:
    void Restore() override {
        const std::vector<Graphic*> graphics = Graphics();
        const HistoryStep step(TheWorkspace().HistoryOf(canvas_), StepName);
        for (std::size_t i = 0; i < graphics.size(); ++i)
            if (graphics[i]) found_[i].PutInto(*graphics[i]);
    }

    void Closing() override {
        if (History* history = TheWorkspace().HistoryOf(canvas_)) history->Seal();
    }

private:
    static constexpr const char* StepName = "Change transparent colours";

    /// Null for those that have gone.
    std::vector<Graphic*> Graphics() const {
        const Canvas* canvas = TheWorkspace().CanvasAt(canvas_);
        std::vector<Graphic*> graphics;
        for (const LayerId layer : layers_.Now())
            graphics.push_back(canvas ? canvas->Graphic(layer.slot) : nullptr);
        return graphics;
    }

    /// The one that is shown: the last that is there.
    Graphic* TheGraphic() const {
        Graphic* last = nullptr;
        for (Graphic* graphic : Graphics())
            if (graphic) last = graphic;
        return last;
    }

    bool Differ(const ColourGroups& table) const {
        const std::vector<Graphic*> graphics = Graphics();
        return std::any_of(graphics.begin(), graphics.end(), [&](const Graphic* graphic) {
            return graphic && ColourGroups::Of(*graphic) != table;
        });
    }

    void MakePictures() {
        auto* grid = new QGridLayout;
        auto* pictureLabel = new QLabel(tr("Click picks a colour, dragging a range:"));
        auto* resultLabel = new QLabel(tr("Result:"));
        picker_->setObjectName(QStringLiteral("picture"));
        result_->setObjectName(QStringLiteral("result"));
        hold_ = new QCheckBox(tr("&Hold the picture still"));
        hold_->setObjectName(QStringLiteral("hold"));
        grid->addWidget(pictureLabel, 0, 0);
        grid->addWidget(resultLabel, 0, 1);
        grid->addWidget(picker_, 1, 0);
        grid->addWidget(result_, 1, 1);
        grid->addWidget(hold_, 2, 0);
        grid->setRowStretch(1, 1);
        grid->setColumnStretch(0, 1);
        grid->setColumnStretch(1, 1);
        Contents()->addLayout(grid, 1);
        connect(picker_, &PicturePicker::Picked, this, &TransparentColours::Pick);
    }

    void MakeTable() {
        enabled_ = new QCheckBox(tr("&Make these colours transparent"));
        enabled_->setObjectName(QStringLiteral("enabled"));
        connect(enabled_, &QCheckBox::clicked, this,
                [this](bool on) { Change({}, [on](ColourGroups& table) { table.enabled = on; }); });
        Contents()->addWidget(enabled_);
        auto* row = new QHBoxLayout;
        row->addLayout(MakeList(), 3);
        row->addWidget(MakeEditors(), 2);
        Contents()->addLayout(row);
    }

    QLayout* MakeList() {
        list_ = new QTreeWidget;
        list_->setObjectName(QStringLiteral("groups"));
        list_->setAccessibleName(tr("Colour ranges"));
        list_->setHeaderLabels({tr("Colours"), tr("Tolerance"), tr("Kept")});
        list_->setRootIsDecorated(false);
        list_->setUniformRowHeights(true);
        list_->header()->setStretchLastSection(false);
        list_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        list_->header()->setSectionResizeMode(RangeColumn, QHeaderView::Stretch);
        list_->setMinimumHeight(fontMetrics().lineSpacing() * 7);
        connect(list_, &QTreeWidget::currentItemChanged, this, [this] { ShowCurrent(); });
        add_ = new QPushButton(tr("&Add"));
        remove_ = new QPushButton(tr("&Remove"));
        add_->setObjectName(QStringLiteral("add"));
        remove_->setObjectName(QStringLiteral("remove"));
        for (QPushButton* button : {add_, remove_}) button->setAutoDefault(false);
        connect(add_, &QPushButton::clicked, this, &TransparentColours::Add);
        connect(remove_, &QPushButton::clicked, this, &TransparentColours::Remove);
        auto* buttons = new QHBoxLayout;
        buttons->addWidget(add_);
        buttons->addWidget(remove_);
        buttons->addStretch();
        auto* column = new QVBoxLayout;
        column->addWidget(list_, 1);
        column->addLayout(buttons);
        return column;
    }

    QWidget* MakeEditors() {
        editors_ = new QGroupBox(tr("Selected range"));
        auto* form = new QFormLayout(editors_);
        first_ = MakeColourButton(QStringLiteral("first"), &ColourGroup::first);
        second_ = MakeColourButton(QStringLiteral("second"), &ColourGroup::second);
        tolerance_ = MakePercent(QStringLiteral("tolerance"), tr("Tolerance"), &ColourGroup::tolerance);
        opacity_ = MakePercent(QStringLiteral("opacity"), tr("Kept"), &ColourGroup::opacity);
        first_->setAccessibleName(tr("First colour"));
        second_->setAccessibleName(tr("Second colour"));
        tolerance_->setToolTip(tr("How far beside the range a colour still belongs to it."));
        opacity_->setToolTip(tr("How much of these colours is kept; 0 % makes them vanish."));
        form->addRow(tr("&First colour:"), first_);
        form->addRow(tr("&Second colour:"), second_);
        form->addRow(tr("&Tolerance:"), tolerance_);
        form->addRow(tr("&Kept:"), opacity_);
        return editors_;
    }

    PercentRow* MakePercent(const QString& name, const QString& label, int ColourGroup::*field) {
        return new PercentRow(name, label, [this, name, field](int percent) {
            ChangeCurrent(name, [field, percent](ColourGroup& group) { group.*field = percent; });
        });
    }

    QPushButton* MakeColourButton(const QString& name, QColor ColourGroup::*field) {
        auto* button = new QPushButton;
        button->setObjectName(name);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, name, field] { ChooseColour(name, field); });
        return button;
    }

    /// The colour follows the dialog; "Cancel" there puts the old one back.
    void ChooseColour(const QString& name, QColor ColourGroup::*field) {
        const Graphic* graphic = TheGraphic();
        const int row = CurrentRow();
        if (!graphic || row < 0) return;
        const QColor before = ColourGroups::Of(*graphic).groups[static_cast<std::size_t>(row)].*field;
        auto* dialog = new QColorDialog(before, this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setWindowTitle(tr("Choose a Colour"));
        const auto set = [this, name, field, row](const QColor& colour) {
            ChangeRow(row, name, [&](ColourGroup& group) { group.*field = colour; });
        };
        connect(dialog, &QColorDialog::currentColorChanged, this, set);
        connect(dialog, &QColorDialog::rejected, this, [set, before] { set(before); });
        dialog->open();
    }

    int CurrentRow() const { return list_->indexOfTopLevelItem(list_->currentItem()); }

    /// mergeKey: changes that follow each other under the same one are undone together; "" for each alone.
    void Change(const QString& mergeKey, const std::function<void(ColourGroups&)>& change) {
        Graphic* graphic = TheGraphic();
        if (!graphic) return;
        ColourGroups table = ColourGroups::Of(*graphic);
        change(table);
        {
            const std::string key = mergeKey.isEmpty() ? std::string()
                                                       : QStringLiteral("transparent %1 %2")
                                                             .arg(layers_.Now().back().slot)
                                                             .arg(mergeKey)
                                                             .toStdString();
            const HistoryStep step(TheWorkspace().HistoryOf(canvas_), StepName, key);
            for (Graphic* each : Graphics())
                if (each) table.PutInto(*each);
        }
        differ_->hide();
        ShowTable(table);
    }

    void ChangeRow(int row, const QString& what, const std::function<void(ColourGroup&)>& change) {
        Change(QStringLiteral("%1 %2").arg(row).arg(what), [&](ColourGroups& table) {
            if (row >= 0 && row < static_cast<int>(table.groups.size()))
                change(table.groups[static_cast<std::size_t>(row)]);
        });
    }
    void ChangeCurrent(const QString& what, const std::function<void(ColourGroup&)>& change) {
        ChangeRow(CurrentRow(), what, change);
    }

    void Pick(const QRect& pixels) {
        Change({}, [&](ColourGroups& table) {
            if (table.groups.empty()) table.groups.emplace_back();
            const int row = std::clamp(CurrentRow(), 0, static_cast<int>(table.groups.size()) - 1);
            ColourGroup& group = table.groups[static_cast<std::size_t>(row)];
            group = RangeOf(picker_->Picture(), pixels, group);
            table.enabled = true;
        });
    }

    void Add() {
        Change({}, [this](ColourGroups& table) {
            const int row = CurrentRow();
            table.groups.push_back(row < 0 ? ColourGroup() : table.groups[static_cast<std::size_t>(row)]);
        });
        list_->setCurrentItem(list_->topLevelItem(list_->topLevelItemCount() - 1));
    }

    void Remove() {
        const int row = CurrentRow();
        if (row < 0) return;
        Change({}, [row](ColourGroups& table) { table.groups.erase(table.groups.begin() + row); });
        list_->setCurrentItem(list_->topLevelItem(std::min(row, list_->topLevelItemCount() - 1)));
    }

    void Refresh() {
        Graphic* graphic = TheGraphic();
        for (QWidget* part : std::initializer_list<QWidget*>{picker_, result_, hold_, enabled_, list_, add_})
            part->setEnabled(graphic);
        setWindowTitle(!graphic ? tr("Transparent Colours (the layer is gone)")
                       : layers_.Now().size() == 1
                           ? tr("Transparent Colours")
                           : tr("Transparent Colours of %1").arg(Layers::Counted(layers_.Now()).c_str()));
        differ_->setVisible(graphic && Differ(ColourGroups::Of(*graphic)));
        if (!graphic) {
            editors_->setEnabled(false);
            remove_->setEnabled(false);
            shown_.reset();
            return;
        }
        TakePicture(*graphic);
        ShowTable(ColourGroups::Of(*graphic));
    }

    /// What is matched against the table: the picture as it is when only turning it is left to do.
    void TakePicture(Graphic& graphic) {
        if (hold_->isChecked() || (havePicture_ && graphic.Image().Revision() == revision_)) return;
        const DIB& picture = graphic.Image().GetStretchedDIB();
        revision_ = graphic.Image().Revision();
        havePicture_ = picture.DIBPtr() != nullptr;
        picker_->ShowPicture(picture);
        TakeSample(picture, LargestPreviewWidth, LargestPreviewHeight, sample_);
        shown_.reset();
    }

    void ShowTable(const ColourGroups& table) {
        if (shown_ == table) return;
        shown_ = table;
        enabled_->setChecked(table.enabled);
        const int count = static_cast<int>(table.groups.size());
        while (list_->topLevelItemCount() > count) delete list_->topLevelItem(list_->topLevelItemCount() - 1);
        while (list_->topLevelItemCount() < count) list_->addTopLevelItem(new QTreeWidgetItem);
        for (int row = 0; row < count; ++row) {
            const ColourGroup& group = table.groups[static_cast<std::size_t>(row)];
            QTreeWidgetItem& item = *list_->topLevelItem(row);
            item.setIcon(RangeColumn, Swatch(group.first, group.second, fontMetrics().height()));
            item.setText(RangeColumn, RangeName(group));
            item.setText(ToleranceColumn, tr("%1 %").arg(group.tolerance));
            item.setText(OpacityColumn, tr("%1 %").arg(group.opacity));
        }
        result_->ShowResult(table.Result(sample_));
        ShowCurrent();
    }

    void ShowCurrent() {
        const int row = CurrentRow();
        const bool chosen = shown_ && row >= 0 && row < static_cast<int>(shown_->groups.size());
        editors_->setEnabled(chosen);
        remove_->setEnabled(chosen);
        if (!chosen) return;
        const ColourGroup& group = shown_->groups[static_cast<std::size_t>(row)];
        for (const auto& [button, colour] :
             {std::pair(first_, group.first), std::pair(second_, group.second)}) {
            button->setIcon(Swatch(colour, colour, fontMetrics().height()));
            button->setText(NameOf(colour));
            button->setAccessibleDescription(NameOf(colour));
        }
        tolerance_->ShowValue(group.tolerance);
        opacity_->ShowValue(group.opacity);
    }

    const int canvas_;
    const FollowedLayers layers_;
    std::vector<ColourGroups> found_;  ///< As they were when the window was opened, in their order.
    QLabel* differ_ = new QLabel;
    std::optional<ColourGroups> shown_;  ///< Nothing: to be shown anew.
    DIB sample_;
    bool havePicture_ = false;
    unsigned revision_ = 0;  ///< Of the layer's image when its picture was last taken.

    PicturePicker* picker_ = new PicturePicker;
    ResultView* result_ = new ResultView;
    QCheckBox* hold_ = nullptr;
    QCheckBox* enabled_ = nullptr;
    QTreeWidget* list_ = nullptr;
    QPushButton* add_ = nullptr;
    QPushButton* remove_ = nullptr;
    QGroupBox* editors_ = nullptr;
    QPushButton* first_ = nullptr;
    QPushButton* second_ = nullptr;
    PercentRow* tolerance_ = nullptr;
    PercentRow* opacity_ = nullptr;
};

/// A window that shows another layer makes room, keeping what was set there.
void CloseOthers(int canvas, const std::vector<LayerId>& layers) {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* open = dynamic_cast<TransparentColours*>(window);
            open && open->isVisible() && !open->IsFor(canvas, layers))
            open->accept();
}

}  // namespace

void ShowTransparentColours(Workspace& workspace, QWidget* parent, int canvas, std::vector<LayerId> layers) {
    CloseOthers(canvas, layers);
    SetupWindow::ShowOnly(QStringLiteral("TransparentColours"), [&] {
        return new TransparentColours(workspace, parent, canvas, std::move(layers));
    });
}

}  // namespace tessaloom
