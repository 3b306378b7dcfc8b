#include "ui/dialogs/ScriptHighlighter.h"

#include <QEvent>
#include <QPlainTextEdit>
#include <QTextBlock>

#include "ui/dialogs/ScriptWords.h"

namespace tessaloom {

namespace {

/// Of a line that has its colours.
class Coloured : public QTextBlockUserData {};

bool IsNameUnit(QChar unit) { return unit.isLetterOrNumber() || unit == '_'; }

/// The place behind the next `end`, or behind the line.
int Behind(const QString& text, QChar end, int from) {
    const auto found = text.indexOf(end, from);
    return static_cast<int>(found < 0 ? text.size() : found + 1);
}

/// Whether a statement may begin at `from`, so that "Rem" there is a remark.
bool BeginsStatement(const QString& text, int from) {
    const QString before = text.left(from).trimmed();
    return before.isEmpty() || before.endsWith(':') || before.endsWith("Then", Qt::CaseInsensitive) ||
           before.endsWith("Else", Qt::CaseInsensitive);
}

}  // namespace

ScriptHighlighter::ScriptHighlighter(QPlainTextEdit* editor)
    : QSyntaxHighlighter(editor->document()), editor_(editor) {
    keyword_.setFontWeight(QFont::Bold);
    comment_.setFontItalic(true);
    ChooseColours();
    editor->installEventFilter(this);
}

void ScriptHighlighter::ChooseColours() {
    const bool dark = editor_->palette().color(QPalette::Base).lightness() < 128;
    keyword_.setForeground(QColor(dark ? 0x7CC4FF : 0x0B5CAD));
    builtIn_.setForeground(QColor(dark ? 0xD7A8FF : 0x7A2EA0));
    text_.setForeground(QColor(dark ? 0xFFB38A : 0xA33B00));
    number_.setForeground(QColor(dark ? 0x8FE3C0 : 0x00695C));
    comment_.setForeground(QColor(dark ? 0x8FBF7F : 0x3F7530));
}

bool ScriptHighlighter::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        ChooseColours();
        rehighlight();
    }
    return QSyntaxHighlighter::eventFilter(object, event);
}

void ScriptHighlighter::Colour(const QTextBlock& line) {
    if (!line.userData()) rehighlightBlock(line);
}

void ScriptHighlighter::highlightBlock(const QString& text) {
    if (waiting_) return;
    setCurrentBlockUserData(new Coloured);
    for (int place = 0; place < text.size();) place = ColourPiece(text, place);
}

int ScriptHighlighter::ColourPiece(const QString& text, int from) {
    const QChar unit = text[from];
    const auto to = [&](int end, const QTextCharFormat& format) {
        setFormat(from, end - from, format);
        return end;
    };
    const int length = static_cast<int>(text.size());
    if (unit == '\'') return to(length, comment_);
    if (unit == '"') return to(Behind(text, '"', from + 1), text_);
    if (unit == '#') return to(Behind(text, '#', from + 1), number_);
    if (unit == '[') return Behind(text, ']', from + 1);
    if (unit.isLetter()) return ColourWord(text, from);
    if (!unit.isDigit()) return from + 1;
    int end = from;
    while (end < length && (IsNameUnit(text[end]) || text[end] == '.')) ++end;
    return to(end, number_);
}

int ScriptHighlighter::ColourWord(const QString& text, int from) {
    int end = from;
    while (end < text.size() && IsNameUnit(text[end])) ++end;
    if (from > 0 && text[from - 1] == '.') return end;
    const QStringView word = QStringView(text).mid(from, end - from);
    if (word.compare(u"Rem", Qt::CaseInsensitive) == 0 && BeginsStatement(text, from)) {
        setFormat(from, static_cast<int>(text.size()) - from, comment_);
        return static_cast<int>(text.size());
    }
    const ScriptWords::Kind kind = ScriptWords::Of(word);
    if (kind != ScriptWords::Kind::Name)
        setFormat(from, end - from, kind == ScriptWords::Kind::Keyword ? keyword_ : builtIn_);
    return end;
}

}  // namespace tessaloom
