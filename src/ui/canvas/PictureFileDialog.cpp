#include "ui/canvas/PictureFileDialog.h"

#include <QFile>
#include <QFileInfo>
#include <QFontMetrics>
#include <QGridLayout>
#include <QImage>
#include <QLabel>
#include <QVBoxLayout>

#include "imaging/LoadJpegIntoDIB.h"
#include "platform/Bytes.h"
#include "platform/PictureFormat.h"
#include "platform/PictureLoader.h"
#include "ui/canvas/Background.h"

namespace tessaloom {

namespace {

struct Thumbnail {
    QImage image;
    QSize size;  ///< Of the whole picture; empty when the file is none.
};

/// In the way that layers load it: what is shown here can be shown there.
Thumbnail Load(PictureLoader& pictures, const QString& name, QSize room) {
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly) || file.size() > qint64{MaximumPictureFileBytes}) return {};
    const QByteArray bytes = file.readAll();
    const LoadedPicture picture =
        pictures.Load(AsBytes({bytes.constData(), static_cast<std::size_t>(bytes.size())}));
    if (!picture) return {};
    const QSize whole(picture.width, picture.height);
    QSize size = whole;
    if (size.width() > room.width() || size.height() > room.height()) size.scale(room, Qt::KeepAspectRatio);
    const auto scaled = [&](const std::vector<std::uint8_t>& rows, QImage::Format format) {
        const auto rowBytes = static_cast<qsizetype>(rows.size() / static_cast<std::size_t>(whole.height()));
        return QImage(rows.data(), whole.width(), whole.height(), rowBytes, format)
            .scaled(size.expandedTo({1, 1}), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .mirrored();
    };
    Thumbnail thumbnail{scaled(picture.pixels, QImage::Format_BGR888), whole};
    if (!picture.alpha.empty()) thumbnail.image.setAlphaChannel(scaled(picture.alpha, QImage::Format_Alpha8));
    return thumbnail;
}

/// "Pictures|*.jpg *.png" as the dialog wants it.
QString Filters() {
    const QStringList pictures =
        QString::fromUtf8(PictureFileFilter.data(), qsizetype(PictureFileFilter.size())).split('|');
    return QString("%1 (%2)").arg(pictures.front(), pictures.back()) + ";;" +
           PictureFileDialog::tr("All files (*)");
}

}  // namespace

PictureFileDialog::PictureFileDialog(QWidget* parent, const QString& folder, const PictureLoader& pictures)
    : QFileDialog(parent, tr("Add Picture File"), folder, Filters()),
      pictures_(pictures.Another()),
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
        this,
        [pictures = pictures_, file, room = picture_->contentsRect().size() * ratio] {
            return Load(*pictures, file, room);
        },
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
