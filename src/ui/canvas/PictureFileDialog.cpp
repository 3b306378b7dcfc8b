#include "ui/canvas/PictureFileDialog.h"

#include <QFileInfo>
#include <QFontMetrics>
#include <QGridLayout>
#include <QImage>
#include <QImageReader>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/canvas/Background.h"

namespace tessaloom {

namespace {

struct Thumbnail {
    QImage image;
    QSize size;  ///< Of the whole picture; empty when the file is none.
};

Thumbnail Load(const QString& file, QSize room) {
    QImageReader reader(file);
    reader.setDecideFormatFromContent(true);
    Thumbnail thumbnail{{}, reader.size()};
    if (QSize size = thumbnail.size; size.isValid()) {
        if (size.width() > room.width() || size.height() > room.height())
            size.scale(room, Qt::KeepAspectRatio);
        reader.setScaledSize(size.expandedTo({1, 1}));
    }
    thumbnail.image = reader.read();
    if (thumbnail.image.isNull()) thumbnail.size = {};
    return thumbnail;
}

QString Filters() {
    QStringList patterns;
    for (const QByteArray& format : QImageReader::supportedImageFormats())
        patterns << "*." + QString::fromLatin1(format);
    return PictureFileDialog::tr("Pictures (%1)").arg(patterns.join(' ')) + ";;" +
           PictureFileDialog::tr("All files (*)");
}

}  // namespace

PictureFileDialog::PictureFileDialog(QWidget* parent, const QString& folder)
    : QFileDialog(parent, tr("Add Picture File"), folder, Filters()),
      picture_(new QLabel),
      details_(new QLabel) {
    setObjectName("PictureFileDialog");
    setAttribute(Qt::WA_DeleteOnClose);
    setFileMode(QFileDialog::ExistingFiles);
    setOption(QFileDialog::HideNameFilterDetails);
    setOption(QFileDialog::DontUseNativeDialog);  // the platform's own have no room for a preview

    const int side = fontMetrics().height() * 12;
    picture_->setMinimumSize(side, side);
    picture_->setAlignment(Qt::AlignCenter);
    picture_->setFrameShape(QFrame::StyledPanel);
    picture_->setAccessibleName(tr("Preview"));
    details_->setAlignment(Qt::AlignHCenter);
    details_->setMinimumHeight(fontMetrics().height());
    auto* preview = new QVBoxLayout;
    preview->addWidget(picture_, 1);
    preview->addWidget(details_);
    if (auto* grid = qobject_cast<QGridLayout*>(layout()))
        grid->addLayout(preview, 1, grid->columnCount(), 1, 1);
    connect(this, &QFileDialog::currentChanged, this, &PictureFileDialog::Preview);
    resize(sizeHint());
    Preview({});
}

void PictureFileDialog::Preview(const QString& file) {
    shown_ = file;
    picture_->setPixmap({});
    picture_->setText(tr("No picture chosen"));
    details_->clear();
    if (!QFileInfo(file).isFile()) return;
    const double ratio = devicePixelRatioF();
    InBackground(
        this, [file, room = picture_->contentsRect().size() * ratio] { return Load(file, room); },
        [this, file, ratio](Thumbnail thumbnail) {
            if (file != shown_) return;
            if (thumbnail.image.isNull()) {
                picture_->setText(tr("Not a picture"));
                return;
            }
            thumbnail.image.setDevicePixelRatio(ratio);
            picture_->setPixmap(QPixmap::fromImage(thumbnail.image));
            details_->setText(
                tr("%1 \u00d7 %2 pixels").arg(thumbnail.size.width()).arg(thumbnail.size.height()));
        });
}

}  // namespace tessaloom
