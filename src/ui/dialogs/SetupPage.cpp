#include "ui/dialogs/SetupPage.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <utility>

#include "ui/dialogs/FactList.h"
#include "ui/dialogs/Hint.h"
#include "ui/property/PropertyForm.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

SetupPage::SetupPage(Workspace& workspace, std::unique_ptr<PropertySet> set, QWidget* parent)
    : QWidget(parent),
      workspace_(workspace),
      form_(new PropertyForm(workspace)),
      hints_(new Hint),
      facts_(new FactList),
      extras_(new QVBoxLayout),
      actions_(new QHBoxLayout) {
    auto* line = new QFrame;
    line->setFrameStyle(QFrame::HLine | QFrame::Plain);
    line->setForegroundRole(QPalette::Mid);
    setAutoFillBackground(true);  // as the form: some styles draw pages of tabs in another shade
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(form_, 1);
    layout->addWidget(line);
    layout->addWidget(hints_);
    layout->addWidget(facts_);
    layout->addLayout(extras_);
    layout->addLayout(actions_);
    actions_->addStretch();
    form_->Show(std::move(set));
    connect(form_, &PropertyForm::Changed, this, &SetupPage::Refresh);
    connect(&workspace_, &Workspace::Pulse, this, &SetupPage::Refresh);
}

QPushButton* SetupPage::AddAction(const QString& name, const QString& text, std::function<void()> act) {
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    button->setAutoDefault(false);
    actions_->insertWidget(actions_->count() - 1, button);
    connect(button, &QPushButton::clicked, this, [this, button, act = std::move(act)] {
        // A mnemonic leaves the focus in the field that is being typed in.
        button->setFocus();
        if (workspace_.Portfolio()) act();
        Refresh();
    });
    return button;
}

void SetupPage::Refresh() {
    if (!isVisible()) return;
    if (tessaloom::Portfolio* portfolio = workspace_.Portfolio()) ShowFacts(*portfolio);
}

void SetupPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    Refresh();
}

}  // namespace tessaloom
