#pragma once

#include <QWidget>
#include <vector>

class QAction;
class QLabel;

namespace tessaloom {

/// What the frame shows while no canvas is open: what can be done next, as buttons.
class WelcomePage final : public QWidget {
    Q_OBJECT

public:
    struct Choice {
        QAction* action;  ///< Its button is shown while it is enabled.
        QString text;
        bool beforePortfolio;  ///< Shown while no portfolio is open, else while one is.
    };

    WelcomePage(const std::vector<Choice>& choices, QWidget* parent);

    void ShowFor(bool portfolioOpen);

private:
    struct Row {
        QWidget* button;
        bool beforePortfolio;
    };

    QLabel* advice_;
    std::vector<Row> rows_;
};

}  // namespace tessaloom
