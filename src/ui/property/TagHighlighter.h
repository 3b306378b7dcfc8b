#pragma once

#include <QSyntaxHighlighter>
#include <QTextCharFormat>

class QPlainTextEdit;

namespace tessaloom {

/// Colours the tags of a text in an editor and marks words in angle brackets that are none. Follows the
/// editor's palette.
class TagHighlighter : public QSyntaxHighlighter {
public:
    explicit TagHighlighter(QPlainTextEdit* editor);

    bool eventFilter(QObject* object, QEvent* event) override;

protected:
    void highlightBlock(const QString& text) override;

private:
    void ChooseColours();

    QPlainTextEdit* editor_;
    QTextCharFormat known_, unknown_;
};

}  // namespace tessaloom
