#include "ui/canvas/NewLayers.h"

#include <QBuffer>
#include <QDateTime>
#include <QFileInfo>
#include <QImage>
#include <QMimeData>
#include <QUrl>
#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "model/Canvas.h"
#include "model/edit/History.h"
#include "model/edit/Layers.h"
#include "platform/Bytes.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/PictureLoader.h"
#include "platform/Platform.h"
#include "ui/canvas/Background.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

constexpr int FirstPass = 1;
constexpr double NextDrop = 20;  ///< Pixels between several pictures that are dropped at once.

bool IsWebAddress(const QUrl& url) {
    return url.isValid() && (url.scheme() == "http" || url.scheme() == "https") && !url.host().isEmpty();
}

QPointF MiddleOf(const Canvas& canvas) { return {canvas.Width() / 2.0, canvas.Height() / 2.0}; }

/// The size of the layer's frame; `known` is that of a picture that is not loaded yet.
QSize ShownSize(const Canvas& canvas, LayerId layer, QSize known) {
    const Graphic* const graphic =
        layer.kind == LayerId::Kind::Graphic ? canvas.Graphic(layer.slot) : nullptr;
    if (known.isValid() && graphic)
        return graphic->Stretched() ? QSize(graphic->StretchWidth(), graphic->StretchHeight()) : known;
    const auto place = Layers::GeometryOf(canvas, layer);
    return place ? QSize(place->right - place->left, place->bottom - place->top) : QSize(0, 0);
}

/// Puts the layer's middle on `middle`, or as near as keeps it on the canvas; its upper left corner while its
/// size is not known yet.
void Centre(Canvas& canvas, LayerId layer, QPointF middle, QSize known = {}) {
    const auto place = Layers::GeometryOf(canvas, layer);
    if (!place) return;
    const QSize size = ShownSize(canvas, layer, known);
    const auto start = [](double centre, int length, int whole) {
        return std::clamp(static_cast<int>(std::lround(centre - length / 2.0)), 0,
                          std::max(0, whole - length));
    };
    const int left = start(middle.x(), size.width(), canvas.Width());
    const int top = start(middle.y(), size.height(), canvas.Height());
    Layers::Move(canvas, std::span(&layer, 1), left - place->left, top - place->top);
}

/// What the file says of itself; nothing when it is no picture.
std::optional<PictureHeader> HeaderOf(const Platform& platform, const std::string& file) {
    constexpr std::size_t Beginning = std::size_t{1} << 20;  // cameras write small pictures before the size
    const auto reader = platform.fileSystem.OpenFile(file);
    return reader ? platform.pictureLoader.Header(AsBytes(reader->Read(0, Beginning))) : std::nullopt;
}

}  // namespace

NewLayers::NewLayers(Workspace& workspace, int canvas, QObject* parent)
    : QObject(parent), workspace_(workspace), slot_(canvas), loading_(workspace, canvas) {}

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

void NewLayers::Add(std::string_view step, std::optional<QPointF> middle,
                    const std::function<std::optional<LayerId>(Canvas&)>& make) {
    Canvas* canvas = TheCanvas();
    if (!canvas) return;
    std::optional<LayerId> layer;
    {
        const HistoryStep recorded(workspace_.HistoryOf(slot_), step);
        layer = make(*canvas);
        if (layer) Centre(*canvas, *layer, middle.value_or(MiddleOf(*canvas)));
    }
    Finish(layer);
}

void NewLayers::AddGraphic(std::string_view step, Graphic::Source source, const std::string& name,
                           std::optional<QPointF> middle) {
    Add(step, middle, [&](Canvas& canvas) { return Layers::AddGraphic(canvas, source, name, 0, 0); });
}

void NewLayers::AddText(const QString& text, std::optional<QPointF> middle) {
    Add("Add text", middle, [&](Canvas& canvas) {
        const QPointF place = middle.value_or(MiddleOf(canvas));
        return Layers::AddText(canvas, text.toStdString(), qRound(place.x()), qRound(place.y()));
    });
}

void NewLayers::AddFeed(const std::string& name) { AddGraphic("Add camera", Graphic::VideoFeed, name); }

void NewLayers::AddBlock() { AddGraphic("Add block", Graphic::PlainBlock, {}); }

void NewLayers::AddCanvas(int source) {
    AddGraphic("Add canvas", Graphic::OtherCanvas, std::to_string(source));
}

void NewLayers::AddAddress(const QString& address, std::optional<QPointF> middle) {
    const QUrl url(address.trimmed(), QUrl::StrictMode);
    if (!IsWebAddress(url)) {
        Q_EMIT Refused(tr("A web address begins with http:// or https://."));
        return;
    }
    AddGraphic("Add web picture", Graphic::Address, url.toString(QUrl::FullyEncoded).toStdString(), middle);
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
            const auto header = HeaderOf(workspace_.Services(), file.toStdString());
            if (!header) {
                refused << QFileInfo(file).fileName();
                continue;
            }
            // One picture is there at once; of more the size is enough until the tick comes to them.
            const QSize size = layer ? QSize(header->width, header->height) : QSize();
            const PixelSize known = size.isEmpty() ? PixelSize() : PixelSize{size.width(), size.height()};
            const auto added =
                Layers::AddGraphic(*canvas, Graphic::PictureFile, file.toStdString(), 0, 0, FirstPass, known);
            full = !added;
            if (full) break;
            Centre(*canvas, *added, place, size.isEmpty() ? QSize() : size);
            if (!size.isEmpty()) loading_.Add(added->slot);
            layer = added;
            place += QPointF(NextDrop, NextDrop);
        }
    }
    if (layer || full) Finish(full ? std::nullopt : layer);
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
        [this, middle](const QByteArray& png) { Save(png, middle); });
}

void NewLayers::Save(const QByteArray& png, std::optional<QPointF> middle) {
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
    AddGraphic("Paste picture", Graphic::PictureFile, path, middle);
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
