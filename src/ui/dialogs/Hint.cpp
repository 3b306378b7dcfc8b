#include "ui/dialogs/Hint.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>

namespace tessaloom {

Hint::Hint(QWidget* parent) : QWidget(parent), icon_(new QLabel), text_(new QLabel) {
    setObjectName("hint");
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(icon_, 0, Qt::AlignTop);
    layout->addWidget(text_, 1);
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
    icon_->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(side));
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    hide();
}

void Hint::Tell(const QStringList& sentences) {
    const QString text = sentences.join('\n');
    if (text == text_->text()) return;
    text_->setText(text);
    text_->setAccessibleName("Note: " + text);
    setVisible(!text.isEmpty());
}

QString Hint::Text() const { return text_->text(); }

}  // namespace tessaloom
