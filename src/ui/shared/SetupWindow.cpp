#include "ui/shared/SetupWindow.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QPointer>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>
#include <vector>

#include "ui/shared/EntryForm.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

SetupWindow::SetupWindow(Workspace& workspace, const QString& name, const QString& title, QWidget* parent)
    : QDialog(parent), workspace_(workspace) {
    setObjectName(name);
    setWindowTitle(title);
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);
    contents_ = new QVBoxLayout;
    buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    layout->addLayout(contents_, 1);
    layout->addWidget(buttons_);
    connect(buttons_, &QDialogButtonBox::accepted, this, &SetupWindow::Keep);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(&workspace_, &Workspace::SetupMustClose, this, &QDialog::accept);
}

SetupWindow::~SetupWindow() = default;

void SetupWindow::done(int result) {
    if (!ended_) {
        ended_ = true;
        if (result == QDialog::Rejected) Restore();
        Closing();
        workspace_.Remember(objectName().toStdString(), saveGeometry().toBase64().toStdString());
    }
    QDialog::done(result);
}

void SetupWindow::Keep() {
    const QPointer<SetupWindow> alive(this);  // what is taken may show a box, while which the window may go
    for (QWidget* part : findChildren<QWidget*>())
        if (auto* form = dynamic_cast<EntryForm*>(part); form && (!form->TakeTyped() || !alive)) return;
    accept();
}

SetupWindow* SetupWindow::FindOpen(const QString& name) {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* setup = qobject_cast<SetupWindow*>(window);
            setup && setup->objectName() == name && !setup->ended_)
            return setup;
    return nullptr;
}

void SetupWindow::OrderFocus() {
    std::vector<QWidget*> contents, buttons;
    for (QWidget* next = nextInFocusChain(); next != this; next = next->nextInFocusChain())
        if (next->focusPolicy() & Qt::TabFocus && !next->focusProxy())
            (buttons_->isAncestorOf(next) ? buttons : contents).push_back(next);
    if (contents.empty()) return;
    QWidget* last = contents.back();
    for (QWidget* button : buttons) setTabOrder(std::exchange(last, button), button);
    if (focusWidget() && !buttons_->isAncestorOf(focusWidget())) return;
    const auto entry = std::ranges::find_if(contents, [this](const QWidget* part) {
        const bool heading = part->inherits("QToolButton") || part->inherits("QTabBar");
        return !heading && !part->inherits("QScrollArea") && part->isEnabledTo(this) &&
               part->isVisibleTo(this);
    });
    if (entry != contents.end()) (*entry)->setFocus();
}

/// The buttons at the end must be in reach; what has no room then scrolls.
void SetupWindow::KeepOnScreen() {
    const int title = 3 * fontMetrics().height();  // and the borders that the desktop draws
    if (const QScreen* on = screen())
        resize(size().boundedTo(on->availableGeometry().size() - QSize(title / 3, title)));
}

void SetupWindow::ShowInFront() {
    if (!isVisible()) {
        restoreGeometry(QByteArray::fromBase64(
            QByteArray::fromStdString(workspace_.Remembered(objectName().toStdString()))));
        KeepOnScreen();
        OrderFocus();
    }
    show();
    raise();
    activateWindow();
}

}  // namespace tessaloom
