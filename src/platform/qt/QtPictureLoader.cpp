#include "platform/qt/QtPictureLoader.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>
#include <cstdlib>
#include <limits>
#include <utility>

#include "platform/qt/VectorPicture.h"
#include "platform/qt/WholePicture.h"

namespace tessaloom {

namespace {

/// Keeps the decoders' messages about broken files off standard error while it lives, and counts them.
/// Messages of other threads pass.
class MessageTrap {
public:
    MessageTrap() : outer_(std::exchange(count_, &own_)), previous_(qInstallMessageHandler(&Handle)) {
        if (previous_ != &Handle) next_ = previous_;
    }
    ~MessageTrap() {
        qInstallMessageHandler(previous_);
        count_ = outer_;
    }
    MessageTrap(const MessageTrap&) = delete;
    MessageTrap& operator=(const MessageTrap&) = delete;

    int Count() const { return own_; }

private:
    static void Handle(QtMsgType type, const QMessageLogContext& context, const QString& text) {
        if (count_)
            ++*count_;
        else if (next_)
            next_(type, context, text);
    }

    static inline thread_local int* count_ = nullptr;
    static inline QtMessageHandler next_ = nullptr;

    int own_ = 0;
    int* outer_;
    QtMessageHandler previous_;
};

/// For the decoders' own check. They count 4 bytes a pixel, more for deep ones, which are held to fewer
/// pixels.
void LimitAllocation(const PictureLimits& limits) {
    QImageReader::setAllocationLimit(static_cast<int>(
        std::min<std::int64_t>(limits.pixels * 4 / (1 << 20) + 1, std::numeric_limits<int>::max())));
}

/// A vector picture that is packed (SVGZ): how much memory it unpacks to is known only when it has.
bool IsPacked(std::span<const std::uint8_t> file) {
    return file.size() > 1 && file[0] == 0x1F && file[1] == 0x8B;
}

/// What remains to be asked once the format is known.
bool MayBeRead(const QByteArray& format, const QByteArray& file) {
    if (format == "svg") return IsDrawableVectorPicture(file);
    if (format == "xbm") return file.contains('}');  // cut short, it would be filled up with zeros
    return true;
}

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

}  // namespace

LoadedPicture QtPictureLoader::Load(std::span<const std::uint8_t> file) {
    if (file.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()) || IsPacked(file) ||
        !IsWholePicture(file))
        return {};
    LimitAllocation(limits_);
    const MessageTrap messages;
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(file.data()),
                                                     static_cast<qsizetype>(file.size()));
    QBuffer device;
    device.setData(bytes);
    if (!device.open(QIODevice::ReadOnly)) return {};

    QImageReader reader(&device);
    reader.setDecideFormatFromContent(true);
    if (!MayBeRead(reader.format(), bytes)) return {};
    const bool isJpeg = file.size() > 1 && file[0] == 0xFF && file[1] == 0xD8;
    const QSize size = reader.size();
    // A bitmap whose top row comes first reports a negative height.
    const std::int64_t height = std::abs(std::int64_t{size.height()});
    if (size != QSize(-1, -1)) {
        if (isJpeg ? !limits_.AllowJpeg(size.width(), height, file) : !limits_.Allow(size.width(), height))
            return {};
    }
    QImage image = Ground({size.width(), static_cast<int>(height)}, reader.imageFormat());
    if (!reader.read(&image) || image.isNull() || !limits_.Allow(image.width(), image.height())) return {};
    if (isJpeg && messages.Count() > 0) return {};
    image = std::move(image).convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32
                                                                     : QImage::Format_RGB32);
    return image.isNull() ? LoadedPicture() : Convert(image);
}

}  // namespace tessaloom
