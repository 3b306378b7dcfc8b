#include "ui/WelcomePage.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/ProgramIcon.h"

namespace tessaloom {

WelcomePage::WelcomePage(const std::vector<Choice>& choices, QWidget* parent) : QWidget(parent) {
    setObjectName("Welcome");
    setAutoFillBackground(true);
    const int unit = fontMetrics().height();
    auto* picture = new QLabel(this);
    picture->setPixmap(ProgramIcon().pixmap(4 * unit));
    picture->setAlignment(Qt::AlignCenter);
    advice_ = new QLabel(this);
    advice_->setObjectName("lblAdvice");
    advice_->setAlignment(Qt::AlignCenter);
    auto* column = new QVBoxLayout(this);
    column->addStretch(2);
    column->addWidget(picture);
    column->addSpacing(unit);
    column->addWidget(advice_);
    column->addSpacing(unit);
    for (const Choice& choice : choices) {
        auto* button = new QPushButton(choice.action->icon(), choice.text, this);
        button->setObjectName(choice.action->objectName() + "Button");
        button->setMinimumWidth(16 * unit);
        connect(button, &QPushButton::clicked, choice.action, &QAction::trigger);
        column->addWidget(button, 0, Qt::AlignHCenter);
        rows_.push_back({button, choice.when});
    }
    column->addStretch(3);
    ShowFor(Lack::Portfolio);
}

void WelcomePage::ShowFor(Lack lack) {
    constexpr const char* Advice[] = {"A portfolio holds your canvases and cameras.",
                                      "A canvas is a picture that is composed of cameras, pictures and text.",
                                      "The canvases are hidden; they go on being made and published."};
    advice_->setText(Advice[static_cast<int>(lack)]);
    for (const Row& row : rows_)
        row.button->setVisible(std::find(row.when.begin(), row.when.end(), lack) != row.when.end());
}

}  // namespace tessaloom
