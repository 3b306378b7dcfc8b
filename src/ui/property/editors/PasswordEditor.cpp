#include <QAction>
#include <QHBoxLayout>
#include <QToolButton>

#include "ui/property/editors/Parts.h"
#include "ui/property/editors/TypedEditor.h"

namespace tessaloom::Editors {

namespace {

/// A password, which is never shown: what is typed replaces it as a whole and can be looked at only until it
/// is entered.
class PasswordEditor final : public TypedEditor {
public:
    explicit PasswordEditor(const Subject& subject) : TypedEditor(subject), show_(new QToolButton) {
        auto* line = new QLineEdit;
        line->setEchoMode(QLineEdit::Password);
        line->setInputMethodHints(Qt::ImhHiddenText | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText);
        SetLine(line);
        LayParts(this, line)->addWidget(show_);
        show_->setObjectName("show");
        show_->setText("Show");
        show_->setToolTip("Show what is typed");
        show_->setCheckable(true);
        show_->setFocusPolicy(Qt::NoFocus);  // leaving the line would enter the password
        show_->hide();
        connect(show_, &QToolButton::toggled, line,
                [line](bool on) { line->setEchoMode(on ? QLineEdit::Normal : QLineEdit::Password); });
        connect(line, &QLineEdit::textEdited, this, [this] { show_->show(); });
    }

protected:
    QString Display(const std::string&) const override { return {}; }

    QString Placeholder(const std::string& text) const override {
        return text.empty() ? "None" : QString(8, QChar(0x2022));
    }

    void ValueShown(const std::string&) override {
        show_->setChecked(false);
        show_->hide();
    }

private:
    QToolButton* show_;
};

}  // namespace

PropertyEditor* MakePassword(const Subject& subject) { return new PasswordEditor(subject); }

}  // namespace tessaloom::Editors
