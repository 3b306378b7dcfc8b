#include "ui/dialogs/FactList.h"

#include <QFormLayout>
#include <QLabel>

#include "ui/dialogs/Wording.h"

namespace tessaloom {

FactList::FactList(QWidget* parent) : QWidget(parent), rows_(new QFormLayout(this)) {
    rows_->setContentsMargins(0, 0, 0, 0);
    rows_->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    rows_->setVerticalSpacing(rows_->verticalSpacing() / 2);
}

void FactList::Add(const QString& name, const QString& label) {
    auto* text = new QLabel;
    text->setObjectName(name);
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    text->setMinimumWidth(fontMetrics().averageCharWidth() * 20);
    texts_[name] = text;
    AddWidget(label, text);
    rows_->setRowVisible(text, false);
}

void FactList::AddWidget(const QString& label, QWidget* widget) {
    rows_->addRow(label + ":", widget);
    widget->setAccessibleName(label);
}

void FactList::Tell(const QString& name, const QString& text) {
    QLabel* label = texts_.value(name);
    if (!label || label->text() == text) return;
    label->setText(text);
    rows_->setRowVisible(label, !text.isEmpty());
}

void FactList::TellPath(const QString& name, const QString& path) {
    Tell(name, Wording::Breakable(path));
    if (QLabel* label = texts_.value(name)) label->setToolTip(path);
}

}  // namespace tessaloom
