#include "ui/property/editors/Parts.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QToolButton>

namespace tessaloom::Editors {

namespace {

class WheelGuard final : public QObject {
public:
    explicit WheelGuard(QWidget* widget) : QObject(widget) { widget->installEventFilter(this); }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        const auto* widget = qobject_cast<QWidget*>(object);
        if (event->type() != QEvent::Wheel || !widget || widget->hasFocus()) return false;
        event->ignore();  // so that it goes on to the parent
        return true;
    }
};

}  // namespace

QString Words(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString SeveralValues() { return QStringLiteral("Several values"); }

QString DifferHint() {
    return QStringLiteral("They differ now; with your first change here they all become as shown.");
}

void GuardWheel(QWidget* widget) {
    widget->setFocusPolicy(Qt::StrongFocus);
    new WheelGuard(widget);
}

bool EndTyping(QEvent& event, const std::function<void()>& take, const std::function<void()>& leave) {
    if (event.type() != QEvent::KeyPress && event.type() != QEvent::ShortcutOverride) return false;
    const int key = static_cast<const QKeyEvent&>(event).key();
    if (key != Qt::Key_Escape && key != Qt::Key_Return && key != Qt::Key_Enter) return false;
    event.accept();
    if (event.type() == QEvent::KeyPress) (key == Qt::Key_Escape ? leave : take)();
    return true;
}

QHBoxLayout* LayParts(QWidget* editor, QWidget* focus) {
    auto* layout = new QHBoxLayout(editor);
    layout->setContentsMargins({});
    layout->addWidget(focus);
    editor->setFocusProxy(focus);
    return layout;
}

QToolButton* OpenButton(const QString& text, const QString& name, const QString& tip) {
    auto* button = new QToolButton;
    button->setText(text);
    button->setObjectName(name);
    button->setToolTip(tip);
    button->setAccessibleName(tip);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

}  // namespace tessaloom::Editors
