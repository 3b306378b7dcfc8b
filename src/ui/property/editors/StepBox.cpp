#include "ui/property/editors/StepBox.h"

#include <QStyleOptionSpinBox>
#include <algorithm>

namespace tessaloom::Editors {

StepBox::StepBox(std::function<void(int)> step, int characters)
    : step_(std::move(step)), characters_(characters) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize StepBox::sizeHint() const {
    ensurePolished();
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    const QString said = lineEdit()->text().isEmpty() ? lineEdit()->placeholderText() + ' ' : QString();
    const int text = std::max(fontMetrics().horizontalAdvance(QString(characters_ + 1, '0')),
                              fontMetrics().horizontalAdvance(said));
    return style()->sizeFromContents(QStyle::CT_SpinBox, &option, {text, lineEdit()->sizeHint().height()},
                                     this);
}

}  // namespace tessaloom::Editors
