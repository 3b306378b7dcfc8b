#include "ui/property/editors/TypedEditor.h"

#include <QEvent>

#include "ui/property/editors/Parts.h"

namespace tessaloom::Editors {

TypedEditor::TypedEditor(const Subject& subject) : PropertyEditor(subject.parent), subject_(subject) {}

void TypedEditor::SetLine(QLineEdit* line) {
    line_ = line;
    line_->installEventFilter(this);
    connect(line_, &QLineEdit::textEdited, this, &TypedEditor::Typed);
    connect(line_, &QLineEdit::editingFinished, this, [this] { Finish(); });
}

void TypedEditor::Show(const std::string& text) { Put(text, false); }

void TypedEditor::ShowMixed(const std::string& lead) { Put(lead, true); }

void TypedEditor::Put(const std::string& text, bool mixed) {
    typing_ = false;
    stored_ = text;
    mixed_ = mixed;
    line_->setPlaceholderText(mixed ? SeveralValues() : Placeholder(text));
    const QString display = mixed ? QString() : Display(text);
    if (line_->text() != display) line_->setText(display);
    // Some boxes are as wide as what they say.
    for (QWidget* part = line_; part != this; part = part->parentWidget()) part->updateGeometry();
    if (!line_->hasFocus()) line_->setCursorPosition(0);
    ValueShown(text);
}

QString TypedEditor::Fallback() const { return Words(subject_.Description().fallback); }

void TypedEditor::Typed(const QString& text) {
    if (!typing_) before_ = stored_;
    typing_ = true;
    const Reading reading = Read(text);
    if (TakesAtOnce() && !mixed_ && reading.value && reading.objection.isEmpty() &&
        *reading.value != stored_) {
        stored_ = *reading.value;
        ValueShown(stored_);
        Q_EMIT Entered(stored_);
    }
    Q_EMIT Wrong(GivenUp() ? QString() : reading.objection);
}

void TypedEditor::Finish() {
    if (!typing_) return;
    if (GivenUp()) return Revert();
    const Reading reading = Read(line_->text());
    if (reading.value)
        Take(*reading.value);
    else
        Q_EMIT Wrong(reading.objection);
}

void TypedEditor::Take(const std::string& text) {
    Show(text);
    Q_EMIT Wrong({});
    Q_EMIT Entered(text);
}

void TypedEditor::Revert() {
    const bool entered = stored_ != before_;
    Put(before_, mixed_);
    Q_EMIT Wrong({});
    if (entered) Q_EMIT Entered(before_);
}

bool TypedEditor::eventFilter(QObject* object, QEvent* event) {
    if (typing_ && EndTyping(
                       *event, [this] { Finish(); }, [this] { Revert(); }))
        return true;
    return PropertyEditor::eventFilter(object, event);
}

}  // namespace tessaloom::Editors
