#pragma once

#include <QFileDialog>
#include <memory>

class QLabel;

namespace tessaloom {

class PictureLoader;

/// Chooses picture files, with a preview of the one in hand. To be opened with `open`; deletes itself.
class PictureFileDialog : public QFileDialog {
    Q_OBJECT

public:
    PictureFileDialog(QWidget* parent, const QString& folder, const PictureLoader& pictures);

private:
    void Preview(const QString& file);

    std::shared_ptr<PictureLoader> pictures_;  ///< For the background, which may outlive the windows.
    QLabel* picture_;
    QLabel* details_;
    QString shown_;  ///< The file whose preview was asked for last.
};

}  // namespace tessaloom
