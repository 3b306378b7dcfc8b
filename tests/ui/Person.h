#pragma once

#include <QtTest>
#include <QtWidgets>

#include <deque>

#include "support/Testing.h"

namespace tessaloom::testing {

/// Somebody at the desktop: mouse and keys, on nothing but what can be seen and is enabled.
///
/// Boxes and dialogs that a command asks something with are answered in the order in which the answers were
/// laid ready, by their titles. One that nobody expects is a failure, and is dismissed.
class Person {
public:
    using Act = std::function<void(QDialog&)>;

    Person() {
        QObject::connect(&look_, &QTimer::timeout, [this] { Look(); });
        look_.start(2);
    }
    ~Person() {
        for (const Answer& answer : answers_) ADD_FAILURE() << answer.title << " never came";
    }
    Person(const Person&) = delete;
    Person& operator=(const Person&) = delete;

    void WillAnswer(const char* title, Act act) { answers_.push_back({title, std::move(act)}); }
    void WillPress(const char* title, QDialogButtonBox::StandardButton button) {
        WillAnswer(title, [button](QDialog& dialog) { Press(dialog, button); });
    }
    /// In the field of an input box or of a file dialog.
    void WillEnter(const char* title, const QString& text) {
        WillAnswer(title, [text](QDialog& dialog) {
            auto* name = dialog.findChild<QLineEdit*>("fileNameEdit");
            Type(name ? *name : Visible<QLineEdit>(dialog), text);
            auto& row = Visible<QDialogButtonBox>(dialog);
            for (const auto button : {QDialogButtonBox::Ok, QDialogButtonBox::Open, QDialogButtonBox::Save})
                if (auto* accept = row.button(button)) {
                    Wait([accept] { return accept->isEnabled(); });  // the dialog looks for the file
                    return Click(*accept);
                }
        });
    }

    /// Everything that answers were laid ready for has been asked.
    bool Answered() {
        return Wait([this] { return answers_.empty() && !busy_; });
    }

    static bool Wait(const std::function<bool()>& until) { return QTest::qWaitFor(until, 10000); }

    /// The control of that name within `window`; the first of its kind without a name.
    template <typename Control = QWidget>
    static Control& Visible(QWidget& window, const QString& name = {}) {
        for (auto* control : window.findChildren<Control*>(name))
            if (control->isVisible()) return *control;
        throw std::runtime_error("cannot see " + name.toStdString());
    }

    /// The window of that name, as soon as it can be seen.
    static QDialog& Window(const QString& name) {
        QDialog* found = nullptr;
        Wait([&] { return (found = Seen(name)) != nullptr; });
        if (!found) throw std::runtime_error("no window " + name.toStdString());
        return *found;
    }
    static QDialog* Seen(const QString& name) {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible() && window->objectName().startsWith(name))
                if (auto* dialog = qobject_cast<QDialog*>(window)) return dialog;
        return nullptr;
    }

    /// Other windows may come up meanwhile.
    static void Activate(QWidget& window) {
        const auto active = [&] {
            if (!window.isActiveWindow()) window.activateWindow();
            return window.isActiveWindow();
        };
        EXPECT_TRUE(Wait(active)) << window.windowTitle().toStdString();
    }

    static void Click(QWidget& control) {
        Reach(control);
        QTest::mouseClick(&control, Qt::LeftButton, {}, {8, control.height() / 2});
    }
    static void Press(QWidget& window, const QString& button) {
        Click(Visible<QAbstractButton>(window, button));
    }
    static void Press(QWidget& window, QDialogButtonBox::StandardButton button) {
        for (auto* row : window.findChildren<QDialogButtonBox*>())
            if (row->button(button)) return Click(*row->button(button));
    }

    /// menu: in the bar; commands: down through its submenus. Returns when the command has been carried out.
    static void Choose(QMainWindow& window, const QString& menu, const std::vector<QString>& commands) {
        Reach(window);
        Activate(window);
        auto* shown = window.findChild<QMenu*>(menu);
        QMenuBar* bar = window.menuBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(shown->menuAction()).center());
        for (const QString& command : commands) shown = ChooseFrom(*shown, command);
        QCoreApplication::processEvents();
    }

    /// name: of an action or the beginning of its text. The submenu that it opens, if any.
    static QMenu* ChooseFrom(QMenu& menu, const QString& name) {
        if (!Wait([&] { return menu.isVisible(); }))
            throw std::runtime_error("no menu for " + name.toStdString());
        for (QAction* action : menu.actions()) {
            if (action->objectName() != name && !action->text().startsWith(name)) continue;
            if (!action->isEnabled()) throw std::runtime_error("disabled: " + name.toStdString());
            QMenu* submenu = action->menu();
            QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(action).center());
            return submenu;
        }
        menu.close();
        throw std::runtime_error("no command " + name.toStdString());
    }

    /// Puts the keys' focus there, as Tab does.
    static QWidget& Focus(QWidget& field) {
        Reach(field);
        Activate(*field.window());
        field.setFocus(Qt::TabFocusReason);
        return *QApplication::focusWidget();
    }

    /// In place of what is there.
    static void Type(QWidget& field, const QString& text) {
        QWidget& focus = Focus(field);
        QTest::keyClick(&focus, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(&focus, text);
    }
    static void Enter(QWidget& field, const QString& text) {
        Type(field, text);
        // A list of completions that has opened gets the keys first.
        QWidget* popup = QApplication::activePopupWidget();
        QTest::keyClick(popup ? popup : QApplication::focusWidget(), Qt::Key_Tab);
    }

    /// keys: held while moving, as those at the press choose what is dragged.
    static void Drag(QWidget& on, QPointF from, QPointF to, Qt::KeyboardModifiers keys) {
        QTest::mousePress(&on, Qt::LeftButton, {}, from.toPoint());
        QMouseEvent move(QEvent::MouseMove, to, on.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, keys);
        QApplication::sendEvent(&on, &move);
        QTest::mouseRelease(&on, Qt::LeftButton, {}, to.toPoint());
    }

private:
    /// Refuses what cannot be seen, is disabled, or lies behind a modal dialog.
    static void Reach(QWidget& control) {
        const auto within = [](const QWidget* window, const QWidget* of) {
            while (window && window != of) window = window->parentWidget();
            return window != nullptr;
        };
        QWidget* window = control.window();
        bool barred = !control.isVisible() || !control.isEnabled();
        for (const QWidget* modal : QApplication::topLevelWidgets())
            if (modal->isVisible() && modal->isModal() && !within(window, modal))
                barred = barred || modal->windowModality() == Qt::ApplicationModal || within(modal, window);
        if (barred) throw std::runtime_error("cannot reach " + control.objectName().toStdString());
    }

    struct Answer {
        std::string title;
        Act act;
    };

    void Look() {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible() || busy_) return;
        const QScopedValueRollback busy(busy_, true);
        const std::string title = dialog->windowTitle().toStdString();
        if (answers_.empty() || answers_.front().title != title) {
            ADD_FAILURE() << "nobody expects " << title;
            return dialog->reject();
        }
        const Act act = std::move(answers_.front().act);
        answers_.pop_front();
        const QPointer<QDialog> open(dialog);
        try {
            act(*dialog);
        } catch (const std::exception& wrong) {
            ADD_FAILURE() << title << ": " << wrong.what();
        }
        if (open && open->isVisible()) {
            ADD_FAILURE() << title << " stayed open";
            open->reject();
        }
    }

    QTimer look_;
    bool busy_ = false;
    std::deque<Answer> answers_;
};

}  // namespace tessaloom::testing
