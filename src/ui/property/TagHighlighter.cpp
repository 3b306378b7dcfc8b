#include "ui/property/TagHighlighter.h"

#include <QEvent>
#include <QPlainTextEdit>
#include <QRegularExpression>

#include "ui/property/TagWords.h"

namespace tessaloom {

TagHighlighter::TagHighlighter(QPlainTextEdit* editor)
    : QSyntaxHighlighter(editor->document()), editor_(editor) {
    unknown_.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    unknown_.setToolTip(QObject::tr("No such tag: it is drawn as it stands"));
    ChooseColours();
    editor->installEventFilter(this);
}

void TagHighlighter::ChooseColours() {
    const bool dark = editor_->palette().color(QPalette::Base).lightness() < 128;
    known_.setForeground(QColor(dark ? 0x7CC4FF : 0x0B5CAD));
    unknown_.setUnderlineColor(QColor(dark ? 0xFF8A80 : 0xC62828));
}

bool TagHighlighter::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        ChooseColours();
        rehighlight();
    }
    return QSyntaxHighlighter::eventFilter(object, event);
}

void TagHighlighter::highlightBlock(const QString& text) {
    static const QRegularExpression Bracketed(QStringLiteral("<[^<>]*>"));
    for (auto found = Bracketed.globalMatch(text); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        setFormat(static_cast<int>(match.capturedStart()), static_cast<int>(match.capturedLength()),
                  TagWords::Known(match.capturedView()) ? known_ : unknown_);
    }
}

}  // namespace tessaloom
