#pragma once

#include <QFileDialog>

class QLabel;

namespace tessaloom {

/// Chooses picture files, with a preview of the one in hand. To be opened with `open`; deletes itself.
class PictureFileDialog : public QFileDialog {
    Q_OBJECT

public:
    PictureFileDialog(QWidget* parent, const QString& folder);

private:
    void Preview(const QString& file);

    QLabel* picture_;
    QLabel* details_;
    QString shown_;  ///< The file whose preview was asked for last.
};

}  // namespace tessaloom
