#pragma once

#include <QFrame>
#include <functional>
#include <vector>

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace tessaloom {

/// A question or a note within a window, with the buttons that answer it. Nothing waits for the answer.
class NoticeBar : public QFrame {
    Q_OBJECT

public:
    struct Answer {
        const char* name;  ///< The button's object name.
        QString text;
        std::function<void()> act;
    };

    explicit NoticeBar(QWidget* parent = nullptr);

    /// "" hides the bar. The same text again leaves it as it is.
    void Tell(const QString& text, const std::vector<Answer>& answers = {});

    QString Text() const;

    /// Gives the first answer the focus.
    void FocusFirst();

private:
    QLabel* text_;
    QHBoxLayout* row_;
    std::vector<QPushButton*> buttons_;
};

}  // namespace tessaloom
