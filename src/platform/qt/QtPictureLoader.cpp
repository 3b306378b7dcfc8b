#include "platform/qt/QtPictureLoader.h"

#include <QBuffer>
#include <QByteArray>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <limits>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/Bytes.h"
#include "platform/PictureFormat.h"
#include "platform/qt/GifFile.h"
#include "platform/qt/PngFile.h"
#include "platform/qt/VectorPicture.h"
#include "platform/qt/WholePicture.h"

namespace tessaloom {

namespace {

/// Keeps the decoders' messages about broken files off standard error while it lives, and counts them.
/// Messages of other threads pass, unless they have one, too.
class MessageTrap {
public:
    MessageTrap() : outer_(std::exchange(present_, this)) {
        const std::scoped_lock lock(mutex_);
        if (++traps_ == 1) next_ = qInstallMessageHandler(&Handle);
    }
    ~MessageTrap() {
        const std::scoped_lock lock(mutex_);
        if (--traps_ == 0) qInstallMessageHandler(next_);
        present_ = outer_;
    }
    MessageTrap(const MessageTrap&) = delete;
    MessageTrap& operator=(const MessageTrap&) = delete;

    int Count() const { return count_; }

    /// Whether a path of a vector picture was not drawn to its end.
    bool SawCutPath() const { return sawCutPath_; }

private:
    static void Handle(QtMsgType type, const QMessageLogContext& context, const QString& text) {
        if (present_)
            present_->Take(text);
        else if (const QtMessageHandler next = next_)
            next(type, context, text);
    }

    void Take(const QString& text) {
        ++count_;
        sawCutPath_ = sawCutPath_ || text.contains(QLatin1String("path truncated"));
    }

    static inline thread_local MessageTrap* present_ = nullptr;
    static inline std::mutex mutex_;
    static inline int traps_ = 0;
    static inline std::atomic<QtMessageHandler> next_ = nullptr;

    MessageTrap* outer_;
    int count_ = 0;
    bool sawCutPath_ = false;
};

/// For the decoders' own check. They count 4 bytes a pixel, more for deep ones, which are held to fewer
/// pixels.
void LimitAllocation(const PictureLimits& limits) {
    const int megabytes = static_cast<int>(
        std::min<std::int64_t>(limits.pixels * 4 / (1 << 20) + 1, std::numeric_limits<int>::max()));
    if (QImageReader::allocationLimit() != megabytes) QImageReader::setAllocationLimit(megabytes);
}

/// As the toolkit calls the formats.
const char* NameOf(PictureFormat format) {
    switch (format) {
        case PictureFormat::Bmp:
            return "bmp";
        case PictureFormat::Gif:
            return "gif";
        case PictureFormat::Icon:
            return "ico";
        case PictureFormat::Jpeg:
            return "jpeg";
        case PictureFormat::Png:
            return "png";
        case PictureFormat::Portable:
            return "ppm";
        case PictureFormat::Svg:
            return "svg";
        case PictureFormat::Tiff:
            return "tiff";
        case PictureFormat::WebP:
            return "webp";
    }
    return "";
}

/// A reader for one format and no other: it neither looks at the content nor asks any other plug-in.
class Reader {
public:
    Reader(PictureFormat format, const QByteArray& file) : reader_(&device_, NameOf(format)) {
        reader_.setAutoDetectImageFormat(false);
        device_.setData(file);
        device_.open(QIODevice::ReadOnly);
    }

    QImageReader* operator->() { return &reader_; }

private:
    QBuffer device_;
    QImageReader reader_;
};

QByteArray Shared(std::span<const std::uint8_t> bytes) {
    return QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()),
                                   static_cast<qsizetype>(bytes.size()));
}

bool CanDraw() { return qobject_cast<QGuiApplication*>(QCoreApplication::instance()); }

/// What the decoder writes onto: a file with run lengths may pass over pixels, which are then of the first
/// colour, and not what the memory happened to hold. Decoders that need another bitmap make one.
QImage Ground(QSize size, QImage::Format format) {
    if (format != QImage::Format_Indexed8 || size.isEmpty()) return {};
    QImage ground(size, format);
    if (!ground.isNull()) ground.fill(0);
    return ground;
}

LoadedPicture Convert(const QImage& image) {
    LoadedPicture picture;
    picture.width = image.width();
    picture.height = image.height();
    const auto width = static_cast<std::size_t>(image.width());
    const std::size_t rowBytes = (width * 3 + 3) & ~std::size_t{3};
    picture.pixels.resize(rowBytes * static_cast<std::size_t>(image.height()));
    const bool transparent = image.hasAlphaChannel();
    if (transparent) picture.alpha.resize(width * static_cast<std::size_t>(image.height()));

    bool solid = true;
    for (int y = 0; y < image.height(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        const auto row = static_cast<std::size_t>(image.height() - 1 - y);
        std::uint8_t* to = picture.pixels.data() + row * rowBytes;
        for (std::size_t x = 0; x < width; ++x, to += 3) {
            to[0] = static_cast<std::uint8_t>(qBlue(from[x]));
            to[1] = static_cast<std::uint8_t>(qGreen(from[x]));
            to[2] = static_cast<std::uint8_t>(qRed(from[x]));
        }
        if (!transparent) continue;
        for (std::size_t x = 0; x < width; ++x) {
            picture.alpha[row * width + x] = static_cast<std::uint8_t>(qAlpha(from[x]));
            solid = solid && qAlpha(from[x]) == 255;
        }
    }
    if (solid) picture.alpha.clear();
    return picture;
}

LoadedPicture Refused(PictureRefusal reason) {
    LoadedPicture none;
    none.refusal = reason;
    return none;
}

/// A bitmap whose top row comes first reports a negative height.
QSize SizeOf(Reader& reader) {
    const QSize size = reader->size();
    return {size.width(), static_cast<int>(std::abs(std::int64_t{size.height()}))};
}

/// Asks the toolkit, once the file has been found harmless.
LoadedPicture Decode(PictureFormat format, std::span<const std::uint8_t> file, const PictureLimits& limits) {
    LimitAllocation(limits);
    const MessageTrap messages;
    Reader reader(format, Shared(file));
    const bool isJpeg = format == PictureFormat::Jpeg;
    const QSize size = SizeOf(reader);
    if (size.isValid()) {
        const bool allowed = isJpeg ? limits.AllowJpeg(size.width(), size.height(), file)
                                    : limits.Allow(size.width(), size.height());
        if (!allowed) return Refused(PictureRefusal::TooLarge);
    }
    QImage image = Ground(size, reader->imageFormat());
    if (!reader->read(&image) || image.isNull() || (isJpeg && messages.Count() > 0))
        return Refused(PictureRefusal::Damaged);
    if (!limits.Allow(image.width(), image.height())) return Refused(PictureRefusal::TooLarge);
    image = std::move(image).convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32
                                                                     : QImage::Format_RGB32);
    return image.isNull() ? Refused(PictureRefusal::TooLarge) : Convert(image);
}

/// The toolkit draws paths of many thousand parts to a certain one only; a broken path, too, and rightly so.
bool IsCutOff(const VectorScene& scene, const MessageTrap& messages) {
    constexpr std::size_t Many = 5'000;
    return messages.SawCutPath() && std::ranges::any_of(scene.elements, [](const VectorElement& element) {
               return element.outline.understood && element.outline.lines.size() > Many;
           });
}

/// Draws a vector picture in as many pixels as it asks for, unless that would take too long.
LoadedPicture Draw(std::span<const std::uint8_t> file, const PictureLimits& limits) {
    const VectorPicture picture = VectorPicture::Of(file);
    if (picture.refusal != PictureRefusal::None) return Refused(picture.refusal);
    if (!CanDraw()) return Refused(PictureRefusal::NotSupported);
    const auto takes = [&](QSize size) {
        return picture.scene.Work(size.width(), size.height(), limits.work);
    };
    // Telling the size may mean going through all that is drawn.
    if (picture.sheetWork > limits.work || takes({1, 1}) > limits.work)
        return Refused(PictureRefusal::TooElaborate);
    const MessageTrap messages;
    const QSize size = Reader(PictureFormat::Svg, picture.drawing)->size();
    if (!size.isValid()) return Refused(PictureRefusal::Damaged);
    if (!limits.Allow(size.width(), size.height())) return Refused(PictureRefusal::TooLarge);
    if (takes(size) > limits.work || IsCutOff(picture.scene, messages))
        return Refused(PictureRefusal::TooElaborate);
    const QByteArray& drawing = picture.drawing;
    return Decode(PictureFormat::Svg, AsBytes({drawing.data(), static_cast<std::size_t>(drawing.size())}),
                  limits);
}

}  // namespace

LoadedPicture QtPictureLoader::Load(std::span<const std::uint8_t> file) {
    if (file.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return Refused(PictureRefusal::TooLarge);
    const auto format = PictureFormatOf(file);
    if (!format) return Refused(PictureRefusal::NotSupported);
    if (format == PictureFormat::Svg) return Draw(file, limits_);
    if (format == PictureFormat::Png) {
        const auto essential = EssentialPng(file);
        return essential ? Decode(*format, *essential, limits_) : Refused(PictureRefusal::Damaged);
    }
    if (!IsWholePicture(*format, file)) return Refused(PictureRefusal::Damaged);
    if (const auto first = FirstOfIcon(file); format == PictureFormat::Icon && !first.empty())
        return Load(first);
    if (format == PictureFormat::Gif && UnpackedGifPixels(file) > limits_.pixels)
        return Refused(PictureRefusal::TooLarge);
    return Decode(*format, file, limits_);
}

std::optional<PictureHeader> QtPictureLoader::Header(std::span<const std::uint8_t> beginning) {
    const auto format = PictureFormatOf(beginning);
    if (!format) return std::nullopt;
    if (format == PictureFormat::Svg)
        return IsVectorPicture(beginning) ? std::optional(PictureHeader()) : std::nullopt;
    if (format == PictureFormat::Png) {
        const auto size = SizeOfPng(beginning);
        if (!size || !limits_.Allow(size->width, size->height)) return PictureHeader();
        return PictureHeader{static_cast<int>(size->width), static_cast<int>(size->height)};
    }
    const MessageTrap messages;
    Reader reader(*format, Shared(beginning));
    const QSize size = SizeOf(reader);
    if (!limits_.Allow(size.width(), size.height())) return PictureHeader();
    return PictureHeader{size.width(), size.height()};
}

std::shared_ptr<PictureLoader> QtPictureLoader::Another() const {
    return std::make_shared<QtPictureLoader>(*this);
}

}  // namespace tessaloom
