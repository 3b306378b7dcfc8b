#include "ui/property/TaggedTextEdit.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QEvent>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/property/TagHighlighter.h"
#include "ui/property/TagWords.h"
#include "ui/property/TextTags.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

constexpr int LinesShown = 4;

QPointer<TaggedTextEdit>& Last() {
    static QPointer<TaggedTextEdit> last;
    return last;
}

QStandardItemModel* CompletionModel(QObject* parent) {
    auto* model = new QStandardItemModel(parent);
    for (const TagWords::Entry& entry : TagWords::All()) {
        auto* item = new QStandardItem(entry.tag);
        item->setToolTip(entry.meaning);
        model->appendRow(item);
    }
    return model;
}

/// The tag that is being typed before the cursor, with its "<"; "" when there is none.
QString Begun(const QTextCursor& cursor) {
    const QString before = cursor.block().text().left(cursor.positionInBlock());
    const qsizetype at = before.lastIndexOf('<');
    return at < 0 || before.indexOf('>', at) >= 0 ? QString() : before.mid(at);
}

}  // namespace

struct TaggedTextEdit::Parts {
    explicit Parts(Workspace& shared) : workspace(shared) {}

    Workspace& workspace;
    QPlainTextEdit* edit = nullptr;
    QLabel* preview = nullptr;
    QPushButton* insert = nullptr;
    QCompleter* completer = nullptr;
    bool crLf = false;  ///< The text shown last ended its lines so.
    QString shown;      ///< What the preview was made for, expanded.

    void Complete(bool asked);
    void PutCompletion(const QString& tag);
    void Preview();
};

TaggedTextEdit::TaggedTextEdit(Workspace& workspace, QWidget* parent)
    : QWidget(parent), parts_(std::make_unique<Parts>(workspace)) {
    Parts& parts = *parts_;
    parts.edit = new QPlainTextEdit;
    parts.preview = new QLabel;
    parts.insert = new QPushButton(tr("&Insert Tag..."));

    parts.edit->setObjectName(QStringLiteral("text"));
    parts.edit->setTabChangesFocus(true);
    SetPlaceholder({});
    const QMargins inside = parts.edit->contentsMargins();
    parts.edit->setMinimumHeight(QFontMetrics(parts.edit->font()).lineSpacing() * LinesShown + inside.top() +
                                 inside.bottom() +
                                 2 * static_cast<int>(parts.edit->document()->documentMargin()));
    parts.preview->setObjectName(QStringLiteral("preview"));
    parts.preview->setAccessibleName(tr("The text as it is drawn now"));
    parts.preview->setTextFormat(Qt::PlainText);
    parts.preview->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    parts.preview->setMinimumWidth(1);  // it is cut, not the window widened
    parts.preview->setForegroundRole(QPalette::PlaceholderText);
    parts.insert->setObjectName(QStringLiteral("insertTag"));
    parts.insert->setAutoDefault(false);
    new TagHighlighter(parts.edit);

    auto* beneath = new QHBoxLayout;
    beneath->addWidget(parts.preview, 1);
    beneath->addWidget(parts.insert, 0, Qt::AlignTop);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(parts.edit, 1);
    layout->addLayout(beneath);
    setFocusProxy(parts.edit);

    parts.completer = new QCompleter(CompletionModel(this), this);
    parts.completer->setWidget(parts.edit);
    parts.completer->setCaseSensitivity(Qt::CaseInsensitive);
    connect(parts.completer, qOverload<const QString&>(&QCompleter::activated), this,
            [this](const QString& tag) { parts_->PutCompletion(tag); });

    connect(parts.edit, &QPlainTextEdit::textChanged, this, [this] {
        SetPlaceholder({});
        parts_->Preview();
        Q_EMIT Edited(Text());
        parts_->Complete(false);
    });
    connect(parts.insert, &QPushButton::clicked, this, [this] {
        Last() = this;
        ShowTextTags(parts_->workspace, window());
    });
    connect(&workspace, &Workspace::Pulse, this, [this] {
        if (parts_->preview->isVisible()) parts_->Preview();
    });
    parts.edit->installEventFilter(this);
    parts.completer->popup()->installEventFilter(this);
}

TaggedTextEdit::~TaggedTextEdit() = default;

void TaggedTextEdit::ShowText(const std::string& text) {
    parts_->crLf = text.find("\r\n") != std::string::npos;
    QString plain = QString::fromStdString(text);
    plain.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace('\r', '\n');
    if (plain == parts_->edit->toPlainText()) return;
    const QSignalBlocker quiet(parts_->edit);
    const int at = parts_->edit->textCursor().position();
    parts_->edit->setPlainText(plain);
    QTextCursor cursor = parts_->edit->textCursor();
    cursor.setPosition(std::min(at, static_cast<int>(plain.size())));
    parts_->edit->setTextCursor(cursor);
    parts_->Preview();
}

void TaggedTextEdit::SetPlaceholder(const QString& text) {
    parts_->edit->setPlaceholderText(text.isEmpty() ? tr("Type a text; \"<\" offers live tags") : text);
}

std::string TaggedTextEdit::Text() const {
    QString text = parts_->edit->toPlainText();
    if (parts_->crLf) text.replace('\n', QStringLiteral("\r\n"));
    return text.toStdString();
}

bool TaggedTextEdit::Busy() const {
    return parts_->edit->hasFocus() || parts_->completer->popup()->isVisible();
}

void TaggedTextEdit::InsertTag(const QString& tag) { parts_->edit->textCursor().insertText(tag); }

TaggedTextEdit* TaggedTextEdit::LastUsed() {
    TaggedTextEdit* last = Last();
    return last && last->isVisible() && last->isEnabled() ? last : nullptr;
}

bool TaggedTextEdit::eventFilter(QObject* object, QEvent* event) {
    if (object == parts_->edit) {
        if (event->type() == QEvent::FocusIn) Last() = this;
        if (event->type() == QEvent::FocusOut && !Busy()) Q_EMIT Left();
        if (event->type() == QEvent::Resize || event->type() == QEvent::Show) {
            parts_->shown = QString();
            parts_->Preview();
        }
    }
    if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(object, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    if (object == parts_->edit && key->key() == Qt::Key_Space && key->modifiers() == Qt::ControlModifier) {
        parts_->Complete(true);
        return true;
    }
    // The completer would hand these keys to the editor first, which takes them for text.
    const bool chooses =
        key->key() == Qt::Key_Tab || key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (object == parts_->completer->popup() && chooses) {
        const QModelIndex index = parts_->completer->popup()->currentIndex();
        parts_->completer->popup()->hide();
        parts_->PutCompletion(index.isValid() ? index.data().toString()
                                              : parts_->completer->currentCompletion());
        return true;
    }
    return QWidget::eventFilter(object, event);
}

/// asked: by a key; otherwise tags are offered from the second character on.
void TaggedTextEdit::Parts::Complete(bool asked) {
    const QString begun = Begun(edit->textCursor());
    QAbstractItemView* popup = completer->popup();
    if (!edit->hasFocus() || (begun.isEmpty() && !asked)) {
        popup->hide();
        return;
    }
    completer->setCompletionPrefix(begun);
    if (completer->completionCount() == 0 || completer->currentCompletion() == begun) {
        popup->hide();
        return;
    }
    popup->setCurrentIndex(completer->completionModel()->index(0, 0));
    QRect place = edit->cursorRect();
    place.setWidth(popup->sizeHintForColumn(0) + popup->verticalScrollBar()->sizeHint().width() +
                   2 * popup->style()->pixelMetric(QStyle::PM_DefaultFrameWidth));
    completer->complete(place);
}

void TaggedTextEdit::Parts::PutCompletion(const QString& tag) {
    QTextCursor cursor = edit->textCursor();
    cursor.movePosition(QTextCursor::Left, QTextCursor::KeepAnchor, static_cast<int>(Begun(cursor).size()));
    cursor.insertText(tag);
    edit->setTextCursor(cursor);
}

void TaggedTextEdit::Parts::Preview() {
    const QString now = TagWords::Expanded(workspace, edit->toPlainText());
    if (!shown.isNull() && now == shown) return;
    shown = now.isNull() ? QStringLiteral("") : now;
    preview->setToolTip(now);
    QStringList lines = now.split('\n').mid(0, LinesShown);
    for (QString& line : lines)
        line = preview->fontMetrics().elidedText(line, Qt::ElideRight, preview->width());
    preview->setText(lines.join('\n'));
}

}  // namespace tessaloom
