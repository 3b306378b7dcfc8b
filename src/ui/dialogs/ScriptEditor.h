#pragma once

#include <QPlainTextEdit>
#include <QTextCursor>
#include <optional>

#include "ui/dialogs/ScriptWords.h"

namespace tessaloom {

class ScriptHighlighter;

/// Edits the text of a script: line numbers, colours, the current line, indented lines, and a mark where the
/// script failed, which stays with its line while others come and go.
///
/// Tab indents, Shift+Tab takes the indent back; Ctrl+Tab leaves the editor.
class ScriptEditor : public QPlainTextEdit {
    Q_OBJECT

public:
    static constexpr int Indent = 4;  ///< Blanks.

    explicit ScriptEditor(QWidget* parent = nullptr);

    /// Another text, unmodified. What could be undone is forgotten.
    void ShowText(const QString& text);

    /// Another text as a step that can be undone.
    void ReplaceText(const QString& text);

    /// As it is, with "\n" between its lines.
    QString Text() const;

    void MarkFault(std::optional<ScriptWords::Place> fault);
    bool HasFault() const { return !fault_.isNull(); }
    void GoToFault();

    /// Puts in `path`, or only its last name when a dot stands before the cursor.
    void InsertMember(const QString& path);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    class Margin;

    int MarginWidth() const;
    void PlaceMargin();
    void PaintMargin(QPaintEvent* event);
    void ShowMarks();
    void BreakLine();
    void ShiftLines(bool outwards);

    ScriptHighlighter* colours_;
    QWidget* margin_;
    QTextCursor fault_;
};

}  // namespace tessaloom
