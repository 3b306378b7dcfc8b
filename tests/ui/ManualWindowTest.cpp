#include "ui/ManualWindow.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRegularExpression>
#include <QTextBrowser>
#include <QUrl>

#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

TEST(ManualWindow, LeadsOnlyToWhatIsThere) {
    const QString first = ManualWindow::FirstPage();
    ASSERT_TRUE(first.endsWith("/docs/desktop.md"));
    const QDir folder = QFileInfo(first).dir();
    const QRegularExpression link(R"(\]\(([^)#]+))");
    for (const QFileInfo& page : folder.entryInfoList({"*.md"})) {
        QFile file(page.filePath());
        ASSERT_TRUE(file.open(QFile::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        for (auto links = link.globalMatch(text); links.hasNext();) {
            const QString target = links.next().captured(1);
            EXPECT_TRUE(target.contains("://") || folder.exists(target))
                << page.fileName().toStdString() << ": " << target.toStdString();
        }
    }
}

TEST(ManualWindow, FitsPicturesAndStaysOnThePageForWhatIsNoPage) {
    QWidget frame;
    ManualWindow::ShowPage(ManualWindow::FirstPage(), &frame);
    ManualWindow::ShowPage(ManualWindow::FirstPage(), &frame);
    const auto windows = frame.findChildren<QTextBrowser*>("pages");
    ASSERT_EQ(windows.size(), 1);
    QTextBrowser& pages = *windows.front();
    const auto picture = pages.loadResource(QTextDocument::ImageResource, QUrl("screenshots/main.png"));
    EXPECT_GT(picture.value<QImage>().width(), 0);
    EXPECT_LT(picture.value<QImage>().width(), pages.width());
    const QUrl here = pages.source();
    for (const char* target : {"../examples", "missing.md"}) {
        pages.setSource(QUrl(target));
        EXPECT_EQ(pages.source(), here);
    }
    pages.setSource(QUrl("video.md"));
    EXPECT_TRUE(pages.toPlainText().contains("Motion"));
}

}  // namespace
}  // namespace tessaloom::testing
