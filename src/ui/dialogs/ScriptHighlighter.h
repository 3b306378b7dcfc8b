#pragma once

#include <QSyntaxHighlighter>
#include <QTextCharFormat>

class QPlainTextEdit;

namespace tessaloom {

/// Colours the words, texts, numbers and comments of a script. Follows the editor's palette.
///
/// A script that is put in whole is coloured line by line as it comes into sight: no line depends on another.
class ScriptHighlighter : public QSyntaxHighlighter {
public:
    explicit ScriptHighlighter(QPlainTextEdit* editor);

    /// While set, lines that come are left plain until `Colour`.
    void SetWaiting(bool waiting) { waiting_ = waiting; }

    /// Colours a line that was left plain.
    void Colour(const QTextBlock& line);

    bool eventFilter(QObject* object, QEvent* event) override;

protected:
    void highlightBlock(const QString& text) override;

private:
    void ChooseColours();

    /// Colours what begins at `from`; where it ends.
    int ColourPiece(const QString& text, int from);
    int ColourWord(const QString& text, int from);

    QPlainTextEdit* editor_;
    QTextCharFormat keyword_, builtIn_, text_, number_, comment_;
    bool waiting_ = false;
};

}  // namespace tessaloom
