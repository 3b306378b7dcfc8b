#pragma once

#include <QObject>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "imaging/Graphic.h"
#include "model/edit/LayerId.h"
#include "ui/canvas/LoadQueue.h"

class QImage;
class QMimeData;
class QUrl;

namespace tessaloom {

class Canvas;
class Workspace;

/// Makes layers of what people bring: pictures, addresses, feeds, texts. Each is a step of the canvas's
/// history, and what it made is selected. Once the canvas has gone, nothing happens.
///
/// Places are canvas pixels, the canvas's middle where none is given. The middle of the new layer is put
/// there; the corner of one whose size is not known yet.
class NewLayers : public QObject {
    Q_OBJECT

public:
    NewLayers(Workspace& workspace, int canvas, QObject* parent);

    void AddText(const QString& text, std::optional<QPointF> middle = {});
    void AddFeed(const std::string& name);
    void AddBlock();
    void AddCanvas(int canvas);

    /// Refuses what is no web address.
    void AddAddress(const QString& address, std::optional<QPointF> middle = {});

    /// Those that are pictures become layers at once, and load one after the other; the others are refused.
    void AddPictureFiles(const QStringList& files, std::optional<QPointF> middle = {});

    /// Puts the picture into a file beside that of the canvas, and makes a layer of it.
    void AddPicture(const QImage& picture, std::optional<QPointF> middle = {});

    /// Whether `Take` can do anything with it, and what was dropped or pasted itself.
    static bool Takes(const QMimeData& data);
    void Take(const QMimeData& data, std::optional<QPointF> middle = {});

Q_SIGNALS:
    /// Why something was refused, in one line.
    void Refused(const QString& reason);
    void Added(tessaloom::LayerId layer);

private:
    tessaloom::Canvas* TheCanvas() const;
    void TakeUrls(const QList<QUrl>& urls, std::optional<QPointF> middle);
    void Save(const QByteArray& png, std::optional<QPointF> middle);
    void Add(std::string_view step, std::optional<QPointF> middle,
             const std::function<std::optional<LayerId>(tessaloom::Canvas&)>& make);
    void AddGraphic(std::string_view step, Graphic::Source source, const std::string& name,
                    std::optional<QPointF> middle = {});
    void Finish(std::optional<LayerId> layer);

    Workspace& workspace_;
    const int slot_;
    LoadQueue loading_;
};

}  // namespace tessaloom
