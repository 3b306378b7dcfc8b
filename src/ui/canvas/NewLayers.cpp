#include "ui/canvas/NewLayers.h"

#include <QBuffer>
#include <QDateTime>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QMimeData>
#include <QUrl>
#include <algorithm>
#include <cmath>
#include <utility>

#include "model/Canvas.h"
#include "model/edit/History.h"
#include "model/edit/Layers.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/Platform.h"
#include "text/Text.h"
#include "ui/canvas/Background.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

constexpr double NextDrop = 20;  ///< Pixels between several pictures that are dropped at once.

bool IsWebAddress(const QUrl& url) {
    return url.isValid() && (url.scheme() == "http" || url.scheme() == "https") && !url.host().isEmpty();
}

QPointF MiddleOf(const Canvas& canvas) { return {canvas.Width() / 2.0, canvas.Height() / 2.0}; }

/// New texts are readable on large canvases, too: a twentieth of the height, in points.
float FontSizeFor(const Canvas& canvas) {
    return static_cast<float>(std::max(14, canvas.Height() * 72 / Text::DotsPerInch / 20));
}

}  // namespace

NewLayers::NewLayers(Workspace& workspace, int canvas, QObject* parent)
    : QObject(parent), workspace_(workspace), slot_(canvas) {}

Canvas* NewLayers::TheCanvas() const { return workspace_.CanvasAt(slot_); }

void NewLayers::Finish(std::optional<LayerId> layer) {
    if (!layer) {
        Q_EMIT Refused(tr("This canvas has no room for more layers."));
        return;
    }
    workspace_.Activate(slot_);
    workspace_.Select({*layer});
    Q_EMIT Added(*layer);
}

void NewLayers::AddText(const QString& text, std::optional<QPointF> middle) {
    Canvas* canvas = TheCanvas();
    if (!canvas) return;
    const QPointF place = middle.value_or(MiddleOf(*canvas));
    std::optional<LayerId> layer;
    {
        const HistoryStep recorded(workspace_.HistoryOf(slot_), "Add text");
        const float points = FontSizeFor(*canvas);
        // Its size is known only once it is drawn; about half an em a letter is near enough.
        const double em = points * Text::DotsPerInch / 72;
        const double width = em / 2 * std::min<double>(static_cast<double>(text.size()), 40);
        layer = Layers::AddText(*canvas, text.toStdString(),
                                static_cast<int>(std::max(0.0, place.x() - width / 2)),
                                static_cast<int>(std::max(0.0, place.y() - em / 2)));
        if (layer) canvas->Text(layer->slot)->SetFontSize(points);
    }
    Finish(layer);
}

std::optional<LayerId> NewLayers::Place(Canvas& canvas, Graphic::Source source, std::string_view name,
                                        QSize size, QPointF middle) {
    QSize room = size;
    if (size.width() > canvas.Width() || size.height() > canvas.Height())
        room.scale(canvas.Width(), canvas.Height(), Qt::KeepAspectRatio);
    const auto start = [](double centre, int length, int whole) {
        return std::clamp(static_cast<int>(std::lround(centre - length / 2.0)), 0,
                          std::max(0, whole - length));
    };
    const int left = start(middle.x(), room.width(), canvas.Width());
    const int top = start(middle.y(), room.height(), canvas.Height());
    const auto layer = Layers::AddGraphic(canvas, source, name, left, top);
    if (layer && (room != size || source == Graphic::PlainBlock)) {
        canvas.Graphic(layer->slot)->SetStretchSmoothing(true);
        Layers::Resize(canvas, *layer, left, top, std::max(room.width(), 1), std::max(room.height(), 1));
    }
    return layer;
}

void NewLayers::Add(std::string_view step, Graphic::Source source, std::string_view name, QSize size,
                    std::optional<QPointF> middle) {
    Canvas* canvas = TheCanvas();
    if (!canvas) return;
    std::optional<LayerId> layer;
    {
        const HistoryStep recorded(workspace_.HistoryOf(slot_), step);
        layer = Place(*canvas, source, name, size, middle.value_or(MiddleOf(*canvas)));
    }
    Finish(layer);
}

void NewLayers::AddFeed(const std::string& name) {
    const Portfolio* portfolio = workspace_.Portfolio();
    const Canvas* canvas = TheCanvas();
    const int feed = portfolio ? portfolio->FeedNamed(name) : -1;
    if (feed < 0 || !canvas) return;
    const auto frame = canvas->FeedFrame(feed);
    // Without a frame yet the layer takes its room from the corner on.
    Add("Add video feed", Graphic::VideoFeed, name,
        frame ? QSize(frame->Width(), frame->Height()) : QSize(canvas->Width(), canvas->Height()));
}

void NewLayers::AddBlock() {
    if (const Canvas* canvas = TheCanvas())
        Add("Add block", Graphic::PlainBlock, {}, QSize(canvas->Width() / 3, canvas->Height() / 3));
}

void NewLayers::AddCanvas(int source) {
    if (const Canvas* other = workspace_.CanvasAt(source))
        Add("Add canvas", Graphic::OtherCanvas, std::to_string(source),
            QSize(other->Width(), other->Height()));
}

void NewLayers::AddAddress(const QString& address, std::optional<QPointF> middle) {
    const QUrl url(address.trimmed(), QUrl::StrictMode);
    if (!IsWebAddress(url)) {
        Q_EMIT Refused(tr("A web address begins with http:// or https://."));
        return;
    }
    Add("Add web address", Graphic::Address, url.toString(QUrl::FullyEncoded).toStdString(), {}, middle);
}

void NewLayers::AddPictureFiles(const QStringList& files, std::optional<QPointF> middle) {
    Canvas* canvas = TheCanvas();
    if (!canvas || files.isEmpty()) return;
    QPointF place = middle.value_or(MiddleOf(*canvas));
    QStringList refused;
    std::optional<LayerId> layer;
    bool full = false;
    {
        const HistoryStep recorded(workspace_.HistoryOf(slot_),
                                   files.size() == 1 ? "Add picture" : "Add pictures");
        for (const QString& file : files) {
            QImageReader reader(file);
            reader.setDecideFormatFromContent(true);
            if (!QFileInfo(file).isFile() || !reader.canRead()) {
                refused << QFileInfo(file).fileName();
                continue;
            }
            const auto added = Place(*canvas, Graphic::PictureFile, file.toStdString(), reader.size(), place);
            full = !added;
            if (full) break;
            layer = added;
            place += QPointF(NextDrop, NextDrop);
        }
    }
    if (layer || full) Finish(layer);
    if (refused.size() == 1)
        Q_EMIT Refused(tr("\u201c%1\u201d is not a picture.").arg(refused.front()));
    else if (!refused.isEmpty())
        Q_EMIT Refused(tr("%1 of %2 files are not pictures.").arg(refused.size()).arg(files.size()));
}

void NewLayers::AddPicture(const QImage& picture, std::optional<QPointF> middle) {
    if (picture.isNull() || !TheCanvas()) return;
    InBackground(
        this,
        [picture] {
            QByteArray png;
            QBuffer buffer(&png);
            buffer.open(QIODevice::WriteOnly);
            picture.save(&buffer, "PNG");
            return png;
        },
        [this, size = picture.size(), middle](const QByteArray& png) { Save(png, size, middle); });
}

void NewLayers::Save(const QByteArray& png, QSize size, std::optional<QPointF> middle) {
    const Canvas* canvas = TheCanvas();
    if (!canvas) return;
    FileSystem& files = workspace_.Services().fileSystem;
    std::string folder = ParentFolderName(canvas->FileName());
    if (folder.empty()) folder = files.CurrentFolder();
    const std::string now = QDateTime::currentDateTime().toString("yyyyMMdd-HHmmss").toStdString();
    const std::string name = JoinPath(folder, "pasted-" + now);
    std::string path = name + ".png";
    for (int more = 2; files.FileExists(path); ++more) path = name + "-" + std::to_string(more) + ".png";
    if (png.isEmpty() || !files.WriteFile(path, {png.constData(), static_cast<std::size_t>(png.size())})) {
        Q_EMIT Refused(tr("The picture could not be written to %1.").arg(QString::fromStdString(path)));
        return;
    }
    Add("Paste picture", Graphic::PictureFile, path, size, middle);
}

bool NewLayers::Takes(const QMimeData& data) { return data.hasUrls() || data.hasImage() || data.hasText(); }

void NewLayers::Take(const QMimeData& data, std::optional<QPointF> middle) {
    if (data.hasUrls())
        TakeUrls(data.urls(), middle);
    else if (data.hasImage())
        AddPicture(qvariant_cast<QImage>(data.imageData()), middle);
    else if (const QUrl url(data.text().trimmed(), QUrl::StrictMode); IsWebAddress(url))
        AddAddress(url.toString(), middle);
    else if (!data.text().trimmed().isEmpty())
        AddText(data.text(), middle);
}

void NewLayers::TakeUrls(const QList<QUrl>& urls, std::optional<QPointF> middle) {
    QStringList files;
    for (const QUrl& url : urls) {
        if (url.isLocalFile())
            files << url.toLocalFile();
        else if (IsWebAddress(url))
            AddAddress(url.toString(QUrl::FullyEncoded), middle);
        else
            Q_EMIT Refused(tr("Only picture files and web addresses can be dropped here."));
    }
    AddPictureFiles(files, middle);
}

}  // namespace tessaloom
