#include "ui/dialogs/FindBar.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextDocument>

namespace tessaloom {

FindBar::FindBar(QPlainTextEdit* editor, QWidget* parent)
    : QWidget(parent),
      editor_(editor),
      wanted_(new QLineEdit),
      matchCase_(new QCheckBox("Match &case")),
      outcome_(new QLabel) {
    wanted_->setObjectName("wanted");
    wanted_->setAccessibleName("Text to look for");
    wanted_->setPlaceholderText("Text to look for");
    wanted_->setClearButtonEnabled(true);
    matchCase_->setObjectName("matchCase");
    outcome_->setObjectName("outcome");
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->addWidget(wanted_, 1);
    const auto add = [&](const char* name, const QString& text, void (FindBar::*act)()) {
        auto* button = new QPushButton(text);
        button->setObjectName(name);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, act);
        row->addWidget(button);
    };
    add("cmdFindPrevious", "Pre&vious", &FindBar::FindPrevious);
    add("cmdFindNext", "Next", &FindBar::FindNext);
    row->addWidget(matchCase_);
    row->addWidget(outcome_);
    add("cmdCloseFind", "Hide", &FindBar::Close);
    connect(wanted_, &QLineEdit::textChanged, outcome_, &QLabel::clear);
    hide();
}

void FindBar::Open() {
    const QString selected = editor_->textCursor().selectedText();
    if (!selected.isEmpty() && !selected.contains(QChar::ParagraphSeparator)) wanted_->setText(selected);
    show();
    wanted_->setFocus();
    wanted_->selectAll();
}

void FindBar::Find(bool forwards) {
    const QString wanted = wanted_->text();
    if (wanted.isEmpty()) return Open();
    QTextDocument::FindFlags how;
    if (!forwards) how |= QTextDocument::FindBackward;
    if (matchCase_->isChecked()) how |= QTextDocument::FindCaseSensitively;
    outcome_->clear();
    if (editor_->find(wanted, how)) return;
    const QTextCursor before = editor_->textCursor();
    editor_->moveCursor(forwards ? QTextCursor::Start : QTextCursor::End);
    if (editor_->find(wanted, how)) return outcome_->setText("From the other end");
    editor_->setTextCursor(before);
    outcome_->setText("Not found");
}

void FindBar::Close() {
    hide();
    editor_->setFocus();
}

// Neither key may reach the window, whose default button it would press.
void FindBar::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Escape:
            return Close();
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return Find(!(event->modifiers() & Qt::ShiftModifier));
        default:
            QWidget::keyPressEvent(event);
    }
}

}  // namespace tessaloom
