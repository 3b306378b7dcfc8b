#pragma once

#include <QWidget>
#include <vector>

class QAction;
class QLabel;

namespace tessaloom {

/// What the frame shows while no canvas can be seen: what can be done next, as buttons.
class WelcomePage final : public QWidget {
    Q_OBJECT

public:
    /// Why no canvas can be seen.
    enum class Lack { Portfolio, Canvas, VisibleCanvas };

    struct Choice {
        QAction* action;
        QString text;
        std::vector<Lack> when;  ///< Shown while one of these is so.
    };

    WelcomePage(const std::vector<Choice>& choices, QWidget* parent);

    void ShowFor(Lack lack);

private:
    struct Row {
        QWidget* button;
        std::vector<Lack> when;
    };

    QLabel* advice_;
    std::vector<Row> rows_;
};

}  // namespace tessaloom
