#include "ui/property/editors/StepBox.h"

#include <QStyleOptionSpinBox>

namespace tessaloom::Editors {

StepBox::StepBox(std::function<void(int)> step, int characters)
    : step_(std::move(step)), characters_(characters) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize StepBox::sizeHint() const {
    ensurePolished();
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    const int text = fontMetrics().horizontalAdvance(QString(characters_ + 1, '0'));
    return style()->sizeFromContents(QStyle::CT_SpinBox, &option, {text, lineEdit()->sizeHint().height()},
                                     this);
}

}  // namespace tessaloom::Editors
