#include "ui/dialogs/ScriptEditor.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QTextBlock>
#include <algorithm>

#include "ui/dialogs/ScriptHighlighter.h"

namespace tessaloom {

namespace {

int LeadingSpace(const QString& line) {
    int length = 0;
    while (length < line.size() && (line[length] == ' ' || line[length] == '\t')) ++length;
    return length;
}

QColor Mixed(const QColor& base, const QColor& other, double part) {
    const auto mix = [part](int a, int b) { return static_cast<int>(a + part * (b - a)); };
    return QColor(mix(base.red(), other.red()), mix(base.green(), other.green()),
                  mix(base.blue(), other.blue()));
}

const QColor FaultColour(0xE53935);

}  // namespace

class ScriptEditor::Margin : public QWidget {
public:
    explicit Margin(ScriptEditor* editor) : QWidget(editor), editor_(editor) {}

    QSize sizeHint() const override { return {editor_->MarginWidth(), 0}; }

protected:
    void paintEvent(QPaintEvent* event) override { editor_->PaintMargin(event); }

private:
    ScriptEditor* editor_;
};

ScriptEditor::ScriptEditor(QWidget* parent) : QPlainTextEdit(parent), margin_(new Margin(this)) {
    setObjectName("script");
    setAccessibleName("Text of the script");
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setLineWrapMode(NoWrap);
    setTabStopDistance(Indent * QFontMetricsF(font()).horizontalAdvance(' '));
    colours_ = new ScriptHighlighter(this);
    connect(this, &QPlainTextEdit::blockCountChanged, this, &ScriptEditor::PlaceMargin);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &ScriptEditor::ShowMarks);
    connect(this, &QPlainTextEdit::updateRequest, this, [this](const QRect& rect, int moved) {
        if (moved != 0)
            margin_->scroll(0, moved);
        else
            margin_->update(0, rect.y(), margin_->width(), rect.height());
    });
    PlaceMargin();
    ShowMarks();
}

void ScriptEditor::ShowText(const QString& text) {
    fault_ = {};
    colours_->SetWaiting(true);
    setPlainText(text);
    colours_->SetWaiting(false);
    document()->setModified(false);
    ShowMarks();
}

void ScriptEditor::ReplaceText(const QString& text) {
    QTextCursor all(document());
    all.select(QTextCursor::Document);
    all.insertText(text);
    moveCursor(QTextCursor::Start);
}

// The plain text of the toolkit has blanks in place of those that do not break.
QString ScriptEditor::Text() const {
    return document()->toRawText().replace(QChar::ParagraphSeparator, '\n');
}

void ScriptEditor::MarkFault(std::optional<ScriptWords::Place> fault) {
    fault_ = {};
    if (fault) {
        QTextBlock line = document()->findBlockByNumber(fault->line - 1);
        if (!line.isValid()) line = document()->lastBlock();
        const QString text = line.text();
        const int column = std::min(LeadingSpace(text) + fault->column - 1, static_cast<int>(text.size()));
        fault_ = QTextCursor(line);
        fault_.setPosition(line.position() + column);
    }
    ShowMarks();
}

void ScriptEditor::GoToFault() {
    if (fault_.isNull()) return;
    setTextCursor(fault_);
    centerCursor();
    setFocus();
}

void ScriptEditor::InsertMember(const QString& path) {
    if (isReadOnly()) return;
    QTextCursor cursor = textCursor();
    const QString before = cursor.block().text().left(cursor.selectionStart() - cursor.block().position());
    cursor.insertText(before.endsWith('.') ? path.section('.', -1) : path);
    setFocus();
}

void ScriptEditor::ShowMarks() {
    QList<QTextEdit::ExtraSelection> marks;
    const auto mark = [&](QTextCursor cursor, const QColor& colour) {
        cursor.clearSelection();
        marks += {cursor, {}};
        marks.back().format.setBackground(Mixed(palette().color(QPalette::Base), colour, 0.15));
        marks.back().format.setProperty(QTextFormat::FullWidthSelection, true);
    };
    mark(textCursor(), palette().color(QPalette::Highlight));
    if (!fault_.isNull()) mark(fault_, FaultColour);
    setExtraSelections(marks);
    margin_->update();
}

void ScriptEditor::keyPressEvent(QKeyEvent* event) {
    const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    const bool back = event->key() == Qt::Key_Backtab, tab = event->key() == Qt::Key_Tab;
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if ((back || tab) && event->modifiers() & Qt::ControlModifier) {
        QWidget::focusNextPrevChild(tab);
        return;
    }
    if (plain && !isReadOnly()) {
        if (back || tab) return ShiftLines(back);
        if (enter) return BreakLine();
    }
    QPlainTextEdit::keyPressEvent(event);
}

void ScriptEditor::BreakLine() {
    QTextCursor cursor = textCursor();
    const QTextBlock first = document()->findBlock(cursor.selectionStart());
    const QString before = first.text().left(cursor.selectionStart() - first.position());
    cursor.insertText('\n' + before.left(LeadingSpace(before)));
    setTextCursor(cursor);
    ensureCursorVisible();
}

void ScriptEditor::ShiftLines(bool outwards) {
    QTextCursor cursor = textCursor();
    if (!cursor.hasSelection() && !outwards) {
        cursor.insertText(QString(Indent - cursor.positionInBlock() % Indent, ' '));
        return setTextCursor(cursor);
    }
    const QTextBlock first = document()->findBlock(cursor.selectionStart());
    // A selection that ends before a line leaves that line alone.
    const int end = std::max(cursor.selectionStart(), cursor.selectionEnd() - 1);
    const int last = document()->findBlock(end).blockNumber();
    cursor.beginEditBlock();
    for (QTextBlock line = first; line.isValid() && line.blockNumber() <= last; line = line.next()) {
        QTextCursor edit(line);
        const QString text = line.text();
        if (!outwards) {
            if (!text.isEmpty()) edit.insertText(QString(Indent, ' '));
            continue;
        }
        const int space = text.startsWith('\t') ? 1 : std::min(LeadingSpace(text), Indent);
        edit.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor, space);
        edit.removeSelectedText();
    }
    cursor.endEditBlock();
}

void ScriptEditor::paintEvent(QPaintEvent* event) {
    const int bottom = viewport()->height();
    QTextBlock line = firstVisibleBlock();
    for (double top = contentOffset().y(); line.isValid() && top < bottom; line = line.next()) {
        colours_->Colour(line);
        top += blockBoundingRect(line).height();
    }
    QPlainTextEdit::paintEvent(event);
}

int ScriptEditor::MarginWidth() const {
    const auto digits = std::max<qsizetype>(3, QString::number(blockCount()).size());
    return fontMetrics().horizontalAdvance('9') * static_cast<int>(digits + 2);
}

void ScriptEditor::PlaceMargin() {
    setViewportMargins(MarginWidth(), 0, 0, 0);
    const QRect contents = contentsRect();
    margin_->setGeometry(contents.left(), contents.top(), MarginWidth(), contents.height());
}

void ScriptEditor::PaintMargin(QPaintEvent* event) {
    QPainter painter(margin_);
    const QColor base = palette().color(QPalette::Base), text = palette().color(QPalette::Text);
    painter.fillRect(event->rect(), Mixed(base, text, 0.06));
    const int right = margin_->width() - fontMetrics().horizontalAdvance('9');
    const int current = textCursor().blockNumber(), faulty = HasFault() ? fault_.blockNumber() : -1;
    QTextBlock line = firstVisibleBlock();
    double top = blockBoundingGeometry(line).translated(contentOffset()).top();
    for (; line.isValid() && top <= event->rect().bottom(); line = line.next()) {
        const double height = blockBoundingRect(line).height();
        const QRectF row(0, top, right, height);
        const int number = line.blockNumber();
        if (number == faulty) painter.fillRect(QRectF(0, top, margin_->width(), height), FaultColour);
        painter.setPen(number == faulty    ? QColor(Qt::white)
                       : number == current ? text
                                           : Mixed(base, text, 0.55));
        painter.drawText(row, Qt::AlignRight | Qt::AlignVCenter, QString::number(number + 1));
        top += height;
    }
}

void ScriptEditor::resizeEvent(QResizeEvent* event) {
    QPlainTextEdit::resizeEvent(event);
    PlaceMargin();
}

void ScriptEditor::changeEvent(QEvent* event) {
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) ShowMarks();
}

}  // namespace tessaloom
