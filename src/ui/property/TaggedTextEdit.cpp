#include "ui/property/TaggedTextEdit.h"

#include <QPlainTextEdit>
#include <QPointer>
#include <QVBoxLayout>

namespace tessaloom {

struct TaggedTextEdit::Parts {
    QPlainTextEdit* edit;
};

TaggedTextEdit::TaggedTextEdit(Workspace&, QWidget* parent)
    : QWidget(parent), parts_(std::make_unique<Parts>(Parts{new QPlainTextEdit})) {
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(parts_->edit);
    connect(parts_->edit, &QPlainTextEdit::textChanged, this, [this] { Q_EMIT Edited(Text()); });
}

TaggedTextEdit::~TaggedTextEdit() = default;

void TaggedTextEdit::ShowText(const std::string& text) {
    parts_->edit->setPlainText(QString::fromStdString(text));
}
std::string TaggedTextEdit::Text() const { return parts_->edit->toPlainText().toStdString(); }
bool TaggedTextEdit::Busy() const { return parts_->edit->hasFocus(); }
void TaggedTextEdit::InsertTag(const QString& tag) { parts_->edit->insertPlainText(tag); }
TaggedTextEdit* TaggedTextEdit::LastUsed() { return nullptr; }

}  // namespace tessaloom
