#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace tessaloom {

/// Looks for a text in an editor, forwards and backwards, and goes on at the other end. Escape hides it.
class FindBar : public QWidget {
    Q_OBJECT

public:
    /// editor: outlives the bar.
    explicit FindBar(QPlainTextEdit* editor, QWidget* parent = nullptr);

    /// Shows the bar, looking for what is selected.
    void Open();

    /// Without a text to look for: opens the bar.
    void FindNext() { Find(true); }
    void FindPrevious() { Find(false); }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Find(bool forwards);
    void Close();

    QPlainTextEdit* editor_;
    QLineEdit* wanted_;
    QCheckBox* matchCase_;
    QLabel* outcome_;
};

}  // namespace tessaloom
