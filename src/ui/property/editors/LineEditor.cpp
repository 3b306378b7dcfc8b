#include <QHBoxLayout>
#include <QLineEdit>

#include "ui/property/editors/Editors.h"

namespace tessaloom::Editors {

namespace {

/// One line of text, taken when Enter is pressed or the focus leaves.
class LineEditor final : public PropertyEditor {
public:
    explicit LineEditor(const Subject& subject) : PropertyEditor(subject.parent), line_(new QLineEdit) {
        auto* layout = new QHBoxLayout(this);
        layout->setContentsMargins({});
        layout->addWidget(line_);
        setFocusProxy(line_);
        connect(line_, &QLineEdit::editingFinished, this, [this] { LineEditor::Finish(); });
    }

    void Show(const std::string& text) override { line_->setText(QString::fromStdString(text)); }
    bool Busy() const override { return line_->isModified(); }

    void Finish() override {
        if (!line_->isModified()) return;
        line_->setModified(false);
        Q_EMIT Entered(line_->text().toStdString());
    }

private:
    QLineEdit* line_;
};

}  // namespace

PropertyEditor* MakeLine(const Subject& subject) { return new LineEditor(subject); }

}  // namespace tessaloom::Editors
