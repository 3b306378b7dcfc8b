#include "ui/ManualWindow.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QScrollBar>
#include <QStyle>
#include <QTextBrowser>
#include <QToolBar>
#include <algorithm>

namespace tessaloom {

/// A browser whose pictures are no wider than itself.
class ManualPages final : public QTextBrowser {
public:
    using QTextBrowser::QTextBrowser;

private:
    QVariant loadResource(int type, const QUrl& name) override {
        const QUrl address = source().resolved(name);
        // Folders, and what only the source tree has, open nothing.
        if (address.isLocalFile() && !QFileInfo(address.toLocalFile()).isFile()) return {};
        if (type != QTextDocument::ImageResource) return QTextBrowser::loadResource(type, name);
        QImage picture(address.toLocalFile());
        const int room = width() - 2 * fontMetrics().height() - verticalScrollBar()->sizeHint().width();
        if (picture.width() <= room) return picture;
        // Fine screens show all of its pixels in the same room.
        const int pixels = std::min(picture.width(), qRound(room * devicePixelRatioF()));
        if (pixels < picture.width()) picture = picture.scaledToWidth(pixels, Qt::SmoothTransformation);
        picture.setDevicePixelRatio(double(pixels) / room);
        return picture;
    }

    void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override {
        const QUrl address = source().resolved(name);
        if (!address.isLocalFile() || QFileInfo(address.toLocalFile()).isFile())
            QTextBrowser::doSetSource(name, type);
    }
};

QString ManualWindow::FirstPage() {
    for (const char* folder : {"/../share/doc/tessaloom/docs", "/../../../docs"}) {
        const QFileInfo page(QApplication::applicationDirPath() + folder + "/desktop.md");
        if (page.isFile()) return page.canonicalFilePath();
    }
    return {};
}

void ManualWindow::ShowPage(const QString& file, QWidget* parent) {
    auto* window = parent->findChild<ManualWindow*>(QString(), Qt::FindDirectChildrenOnly);
    if (!window) window = new ManualWindow(file, parent);
    window->show();
    window->raise();
    window->activateWindow();
}

ManualWindow::ManualWindow(const QString& file, QWidget* parent)
    : QMainWindow(parent), pages_(new ManualPages) {
    setObjectName("Manual");
    setWindowTitle("Manual");
    setAttribute(Qt::WA_DeleteOnClose);
    pages_->setObjectName("pages");
    pages_->setAccessibleName("Manual");
    pages_->setFrameShape(QFrame::NoFrame);
    pages_->setOpenExternalLinks(true);
    pages_->document()->setDocumentMargin(fontMetrics().height());
    setCentralWidget(pages_);
    auto* bar = addToolBar("Pages");
    bar->setMovable(false);
    const auto button = [&](const char* text, QKeySequence::StandardKey keys, QStyle::StandardPixmap icon,
                            void (QTextBrowser::*go)()) {
        QAction* action = bar->addAction(style()->standardIcon(icon), text, pages_, go);
        action->setShortcut(keys);
        return action;
    };
    QAction* back = button("Back", QKeySequence::Back, QStyle::SP_ArrowBack, &QTextBrowser::backward);
    QAction* forward =
        button("Forward", QKeySequence::Forward, QStyle::SP_ArrowForward, &QTextBrowser::forward);
    button("First page", QKeySequence::UnknownKey, QStyle::SP_DirHomeIcon, &QTextBrowser::home);
    for (QAction* action : {back, forward}) action->setEnabled(false);
    connect(pages_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(pages_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    auto* close = new QAction(this);
    close->setShortcut(Qt::Key_Escape);
    connect(close, &QAction::triggered, this, &QWidget::close);
    addAction(close);
    const QFontMetrics font = fontMetrics();
    resize(font.averageCharWidth() * 140, font.height() * 48);
    pages_->resize(size());  // pictures are fitted as they are read
    pages_->setFocus();
    pages_->setSource(QUrl::fromLocalFile(file));
}

}  // namespace tessaloom
