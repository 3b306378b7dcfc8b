#include "ui/dialogs/NoticeBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

namespace tessaloom {

NoticeBar::NoticeBar(QWidget* parent) : QFrame(parent), text_(new QLabel), row_(new QHBoxLayout(this)) {
    setObjectName("notice");
    setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    auto* icon = new QLabel;
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(side));
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    text_->setForegroundRole(QPalette::ToolTipText);
    row_->addWidget(icon);
    row_->addWidget(text_, 1);
    hide();
}

void NoticeBar::Tell(const QString& text, const std::vector<Answer>& answers) {
    if (text == text_->text()) return;
    for (QPushButton* button : buttons_) {
        button->hide();
        button->setObjectName("");
        button->deleteLater();  // it may be the one that was pressed
    }
    buttons_.clear();
    text_->setText(text);
    text_->setAccessibleName("Note: " + text);
    for (const Answer& answer : answers) {
        auto* button = buttons_.emplace_back(new QPushButton(answer.text));
        button->setObjectName(answer.name);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [act = answer.act] { act(); });
        row_->addWidget(button);
        button->show();  // at once, so that it can take the focus
    }
    setVisible(!text.isEmpty());
}

QString NoticeBar::Text() const { return text_->text(); }

void NoticeBar::FocusFirst() {
    if (!buttons_.empty()) buttons_.front()->setFocus();
}

}  // namespace tessaloom
