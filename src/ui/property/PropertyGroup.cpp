#include "ui/property/PropertyGroup.h"

#include <QGridLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include "ui/property/PropertyEditor.h"
#include "ui/property/editors/Parts.h"
#include "ui/shared/CommandIcon.h"

namespace tessaloom {

using Editors::Words;

namespace {

enum Column { Labels, Values, Resets, Columns };

/// The lines of the grid that one row takes: label (and editor), wide editor, remark.
enum Line { LabelLine, WideLine, RemarkLine, Lines };

bool BearsItsLabel(PropertyKind kind) { return kind == PropertyKind::Switch; }
bool IsWide(PropertyKind kind) { return kind == PropertyKind::TaggedText; }

/// Palettes have no colour for what is wrong.
QColor WrongColour(const QPalette& palette) {
    const bool dark = palette.color(QPalette::Window).lightness() < 128;
    return dark ? QColor(255, 138, 128) : QColor(176, 0, 32);
}

void KeepRoom(QToolButton* reset, bool keep) {
    QSizePolicy policy = reset->sizePolicy();
    policy.setRetainSizeWhenHidden(keep);
    reset->setSizePolicy(policy);
}

QToolButton* MakeReset(const Property& property) {
    auto* reset = new QToolButton;
    const QString label = Words(property.label).remove('&');
    reset->setObjectName("reset" + Words(property.name));
    reset->setIcon(CommandIcon("reset", reset->palette()));
    reset->setAutoRaise(true);
    reset->setAccessibleName("Reset " + label);
    KeepRoom(reset, true);
    reset->hide();
    return reset;
}

}  // namespace

void PropertyRow::Show(const std::string& text, bool several) {
    value = text;
    mixed = several;
    if (several)
        editor->ShowMixed(text);
    else
        editor->Show(text);
}

void PropertyRow::Remark(const QString& text) {
    if (remark->text() == text) return;
    remark->setText(text);
    QPalette palette = remark->palette();
    palette.setColor(QPalette::WindowText, WrongColour(editor->palette()));
    remark->setPalette(palette);
    remark->setVisible(sought && !text.isEmpty());
    editor->Describe(editor->Field().accessibleName(), text);
}

void PropertyRow::DescribeReset(const Property& property) {
    QString fallback = property.kind == PropertyKind::Password ? QString() : Words(property.fallback);
    for (const PropertyChoice& choice : property.choices)
        if (choice.value == property.fallback) fallback = Words(choice.label);
    if (property.kind == PropertyKind::Switch) fallback = property.fallback == "True" ? "on" : "off";
    const bool isText = property.kind != PropertyKind::Rate;  // whose defaults may differ
    if (fallback.isEmpty()) fallback = isText ? QString() : "the default";
    reset->setToolTip(fallback.isEmpty() ? "Clear" : "Reset to " + fallback);
}

void PropertyRow::SetResettable(bool resettable) { reset->setVisible(sought && resettable); }

void PropertyRow::SetEnabled(bool enabled) {
    if (label) label->setEnabled(enabled);
    editor->setEnabled(enabled);
    reset->setEnabled(enabled);
}

void PropertyRow::SetVisible(bool visible) {
    sought = visible;
    if (label) label->setVisible(visible);
    editor->setVisible(visible);
    if (!visible) reset->hide();
    KeepRoom(reset, visible);
    remark->setVisible(visible && !remark->text().isEmpty());
}

int PropertyRow::LabelWidth() const { return label ? label->sizeHint().width() : 0; }

PropertyGroup::PropertyGroup(const QString& heading, std::size_t first, QWidget* parent)
    : QWidget(parent),
      headingText_(heading),
      first_(first),
      heading_(new QToolButton),
      body_(new QWidget),
      grid_(new QGridLayout(body_)) {
    QFont bold = font();
    bold.setBold(true);
    heading_->setFont(bold);
    heading_->setText(heading);
    heading_->setObjectName("group" + heading);
    heading_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    heading_->setArrowType(Qt::DownArrow);
    heading_->setAutoRaise(true);
    heading_->setFocusPolicy(Qt::StrongFocus);
    heading_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    heading_->setVisible(!heading.isEmpty());
    connect(heading_, &QToolButton::clicked, this, [this] {
        SetOpen(!open_);
        Q_EMIT Folded(!open_);
    });
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addWidget(heading_);
    layout->addWidget(body_);
    const int inset = fontMetrics().height() / 2;
    grid_->setContentsMargins(inset, inset / 2, 0, inset);
    grid_->setVerticalSpacing(inset / 2);
    grid_->setColumnStretch(Values, 1);
}

PropertyRow PropertyGroup::AddRow(const Property& property, PropertyEditor* editor) {
    PropertyRow row;
    row.editor = editor;
    row.reset = MakeReset(property);
    row.remark = new QLabel;
    row.remark->setObjectName("remark" + Words(property.name));
    row.remark->setWordWrap(true);
    row.remark->hide();
    const int line = static_cast<int>(count_++) * Lines;
    const bool wide = IsWide(property.kind);
    if (!BearsItsLabel(property.kind)) {
        row.label = new QLabel(Words(property.label));
        row.label->setBuddy(&editor->Field());
        row.label->setToolTip(Words(property.tip));
        grid_->addWidget(row.label, line + LabelLine, Labels, 1, wide ? 2 : 1);
    }
    if (wide)
        grid_->addWidget(editor, line + WideLine, Labels, 1, Columns);
    else if (row.label)
        grid_->addWidget(editor, line + LabelLine, Values);
    else
        grid_->addWidget(editor, line + LabelLine, Labels, 1, 2);
    grid_->addWidget(row.reset, line + LabelLine, Resets);
    grid_->addWidget(row.remark, line + RemarkLine, row.label && !wide ? Values : Labels, 1,
                     row.label && !wide ? 2 : 3);
    setTabOrder(editor, row.reset);
    return row;
}

void PropertyGroup::SetOpen(bool open) {
    open_ = open || headingText_.isEmpty();
    body_->setVisible(open_);
    heading_->setArrowType(open_ ? Qt::DownArrow : Qt::RightArrow);
    heading_->setAccessibleDescription(open_ ? "open" : "folded");
}

void PropertyGroup::SetLabelWidth(int pixels) { grid_->setColumnMinimumWidth(Labels, pixels); }

}  // namespace tessaloom
