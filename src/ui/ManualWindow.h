#pragma once

#include <QMainWindow>

namespace tessaloom {

class ManualPages;

/// Shows the manual's pages, which are Markdown files, with their pictures and the links between them.
class ManualWindow final : public QMainWindow {
    Q_OBJECT

public:
    /// The file of the first page: where the program is installed, else where it was built. Empty when there
    /// is neither.
    static QString FirstPage();

    /// Opens the window at that page, or brings it to the front as it is.
    static void ShowPage(const QString& file, QWidget* parent);

private:
    ManualWindow(const QString& file, QWidget* parent);

    ManualPages* pages_;
};

}  // namespace tessaloom
