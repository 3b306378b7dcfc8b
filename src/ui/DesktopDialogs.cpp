#include "ui/DesktopDialogs.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QGridLayout>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>
#include <QSpacerItem>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "core/RunFlags.h"
#include "ui/ErrorDebugReport.h"

namespace tessaloom {

namespace {

/// How often an open dialog looks whether it is to close.
constexpr int LookMilliseconds = 100;
constexpr int CountdownSeconds = 10;

QString TextOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

struct ButtonRow {
    QMessageBox::StandardButtons offered;
    QMessageBox::StandardButton first;  ///< What Enter presses.
};

ButtonRow RowOf(Buttons buttons) {
    switch (buttons) {
        case Buttons::OkCancel:
            return {QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok};
        case Buttons::AbortRetryIgnore:
            return {QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore, QMessageBox::Abort};
        case Buttons::YesNoCancel:
            return {QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes};
        case Buttons::YesNo:
            return {QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes};
        case Buttons::RetryCancel:
            return {QMessageBox::Retry | QMessageBox::Cancel, QMessageBox::Retry};
        case Buttons::Ok:
            break;
    }
    return {QMessageBox::Ok, QMessageBox::Ok};
}

constexpr std::pair<QMessageBox::StandardButton, Answer> Answers[] = {
    {QMessageBox::Ok,     Answer::Ok    },
    {QMessageBox::Cancel, Answer::Cancel},
    {QMessageBox::Abort,  Answer::Abort },
    {QMessageBox::Retry,  Answer::Retry },
    {QMessageBox::Ignore, Answer::Ignore},
    {QMessageBox::Yes,    Answer::Yes   },
    {QMessageBox::No,     Answer::No    },
};

/// "Portfolios (*.por)|*.por" in the toolkit's form. What stands behind the bar decides.
QString NameFilter(const std::string& filter) {
    QStringList filters;
    const QStringList parts = TextOf(filter).split('|');
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts[i + 1];
        patterns.replace(';', ' ');
        filters += parts[i].section(" (", 0, 0) + " (" + patterns + ")";
    }
    return filters.join(";;");
}

/// A box is made as wide as its text; its title needs room, too, beside the buttons of its frame.
int RoomForTitle(const QWidget& box) {
    constexpr int FrameButtons = 10, Most = 40;  // heights of a line
    const int line = box.fontMetrics().height();
    return std::min(box.fontMetrics().horizontalAdvance(box.windowTitle()) + FrameButtons * line,
                    Most * line);
}

/// A text that would make its box higher than the screen is shown in a field that scrolls.
void ScrollLongText(QDialog& box, QLabel& label) {
    constexpr double Most = 0.6;    // of the screen's height
    constexpr int Characters = 80;  // across
    const QScreen* const screen = box.screen();
    const int room = screen ? static_cast<int>(screen->availableGeometry().height() * Most) : 0;
    const QFontMetrics metrics = label.fontMetrics();
    const QRect wrapped(0, 0, metrics.averageCharWidth() * Characters, 0);
    if (metrics.boundingRect(wrapped, Qt::TextWordWrap, label.text()).height() <= room) return;
    auto* field = new QPlainTextEdit(label.text());
    field->setObjectName("longText");
    field->setAccessibleName("Message");
    field->setReadOnly(true);
    field->setTabChangesFocus(true);
    field->setMinimumSize(std::min(wrapped.width() + field->verticalScrollBar()->sizeHint().width(),
                                   screen->availableGeometry().width() * 3 / 4),
                          room);
    delete box.layout()->replaceWidget(&label, field);
    label.hide();
}

}  // namespace

DesktopDialogs::DesktopDialogs() = default;
DesktopDialogs::~DesktopDialogs() = default;

/// Null while the window cannot be seen: what belongs to a minimized window is not shown either.
QWidget* DesktopDialogs::Parent() const {
    return parent_ && parent_->isVisible() && !parent_->isMinimized() ? parent_.data() : nullptr;
}

/// Runs the dialog in an event loop of its own; the code it ended with.
int DesktopDialogs::Wait(QDialog& dialog, QLabel* countdown) {
    // Not even for a moment: a script that shows one box after the other would never come to its end.
    if (Flags().withoutQuestions) return QDialog::Rejected;
    NoteWait();
    const bool wasRunning = Flags().running;
    const int patience = Patience();
    QElapsedTimer open;
    open.start();
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &dialog, [&] {
        const bool ending = wasRunning && !Flags().running && !closing_;
        const qint64 left = patience - open.elapsed() / 1000;
        if (ending || Flags().withoutQuestions || (patience > 0 && left <= 0)) return dialog.reject();
        if (!countdown || patience <= 0 || left > CountdownSeconds) return;
        countdown->setText(QString("Closes by itself in %1 s").arg(left));
        countdown->show();
    });
    look.start(LookMilliseconds);
    return dialog.exec();
}

Answer DesktopDialogs::MessageBox(std::string_view text, std::string_view title, Buttons buttons) {
    const ButtonRow row = RowOf(buttons);
    // A plain statement has no icon of a question, and the other way round.
    QMessageBox box(buttons == Buttons::Ok ? QMessageBox::Information : QMessageBox::Question, TextOf(title),
                    TextOf(text), row.offered, Parent());
    box.setObjectName("MessageBox");
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.setDefaultButton(row.first);
    if (auto* label = box.findChild<QLabel*>("qt_msgbox_label")) ScrollLongText(box, *label);
    QLabel countdown(&box);
    countdown.setObjectName("lblCountdown");
    countdown.hide();
    if (auto* grid = qobject_cast<QGridLayout*>(box.layout())) {
        grid->addWidget(&countdown, grid->rowCount(), 0, 1, -1);
        grid->addItem(new QSpacerItem(RoomForTitle(box), 0), grid->rowCount(), 0, 1, -1);
    }
    Wait(box, &countdown);
    const QAbstractButton* pressed = box.clickedButton();
    const QMessageBox::StandardButton which =
        pressed ? box.standardButton(const_cast<QAbstractButton*>(pressed)) : QMessageBox::NoButton;
    const auto found = std::find_if(std::begin(Answers), std::end(Answers),
                                    [&](const auto& entry) { return entry.first == which; });
    return found == std::end(Answers) ? SafeAnswer(buttons) : found->second;
}

std::optional<std::string> DesktopDialogs::InputBox(std::string_view prompt, std::string_view title,
                                                    std::string_view defaultText) {
    QInputDialog box(Parent());
    box.setObjectName("InputBox");
    box.setWindowTitle(TextOf(title));
    box.setLabelText(TextOf(prompt));
    box.setTextValue(TextOf(defaultText));
    QLabel countdown(&box);
    countdown.setObjectName("lblCountdown");
    countdown.hide();
    box.setModal(true);
    box.show();  // The dialog lays itself out only now.
    if (auto* label = box.findChild<QLabel*>()) ScrollLongText(box, *label);
    if (box.layout()) box.layout()->addWidget(&countdown);
    box.resize(box.fontMetrics().averageCharWidth() * 50, box.height());  // room for the title, too
    if (Wait(box, &countdown) != QDialog::Accepted) return std::nullopt;
    return box.textValue().toStdString();
}

std::optional<std::string> DesktopDialogs::ChooseFile(const FileDialog& dialog, bool save) {
    QFileDialog box(Parent(), TextOf(dialog.title), QDir::currentPath(), NameFilter(dialog.filter));
    box.setObjectName("FileDialog");
    box.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    box.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    box.setOption(QFileDialog::DontConfirmOverwrite, !dialog.confirmOverwrite);
    QString extension = TextOf(dialog.defaultExtension);
    if (extension.startsWith('.')) extension.remove(0, 1);
    box.setDefaultSuffix(extension);
    if (save) box.selectFile(TextOf(dialog.defaultName));
    if (Wait(box, nullptr) != QDialog::Accepted || box.selectedFiles().isEmpty()) return std::nullopt;
    return QDir::toNativeSeparators(box.selectedFiles().front()).toStdString();
}

std::optional<std::string> DesktopDialogs::OpenFile(const FileDialog& dialog) {
    return ChooseFile(dialog, false);
}

std::optional<std::string> DesktopDialogs::SaveFile(const FileDialog& dialog) {
    return ChooseFile(dialog, true);
}

void DesktopDialogs::ShowStatus(std::string_view text) {
    if (!status_) {
        status_ = std::make_unique<QLabel>(nullptr, Qt::Tool | Qt::FramelessWindowHint);
        status_->setObjectName("Status");
        status_->setAttribute(Qt::WA_ShowWithoutActivating);
        status_->setFrameStyle(int(QFrame::StyledPanel) | int(QFrame::Raised));
        status_->setAlignment(Qt::AlignCenter);
        status_->setMargin(status_->fontMetrics().height());
    }
    status_->setText(TextOf(text));
    status_->adjustSize();
    const QWidget* window = Parent();
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QPoint centre = window   ? window->frameGeometry().center()
                          : screen ? screen->availableGeometry().center()
                                   : QPoint();
    status_->move(centre - status_->rect().center());
    status_->show();
    UpdateStatus();
}

/// Painted at once, and no more than that: the person's keys and clicks wait until the work is done.
void DesktopDialogs::UpdateStatus() {
    if (!status_ || !status_->isVisible()) return;
    status_->repaint();
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers, 1);
}

void DesktopDialogs::HideStatus() {
    if (status_) status_->hide();
}

void DesktopDialogs::UnloadStatus() { status_.reset(); }

void DesktopDialogs::AddReport(const ErrorReport& report) {
    if (!reports_) reports_ = std::make_unique<ErrorDebugReport>();
    // An error that goes on happening does not bring back the window that the person closed.
    if (!reports_->Add(report) || reports_->isVisible() || !Flags().running) return;
    reports_->setAttribute(Qt::WA_ShowWithoutActivating);
    reports_->show();
}

void DesktopDialogs::ShowReports() {
    if (!reports_) reports_ = std::make_unique<ErrorDebugReport>();
    reports_->setAttribute(Qt::WA_ShowWithoutActivating, false);
    reports_->show();
    reports_->raise();
    reports_->activateWindow();
}

void DesktopDialogs::UnloadReports() { reports_.reset(); }

}  // namespace tessaloom
