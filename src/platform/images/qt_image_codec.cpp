// SPDX-License-Identifier: MIT
#include "platform/images/qt_image_codec.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QLoggingCategory>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <mutex>

#include "platform/images/heif_decoder.h"
#include "platform/images/image_bounds.h"
#include "platform/images/image_type.h"
#include "platform/images/png_encoder.h"

namespace quillo {
namespace {

using namespace Qt::StringLiterals;

// What the bounds allow, at eight bytes a pixel.
constexpr int kAllocationLimitMebibytes = 512;
constexpr int kMaxIconPictures = 64;

QLoggingCategory::CategoryFilter g_previousFilter = nullptr;

void muteImagePlugins(QLoggingCategory* category) {
    if (g_previousFilter != nullptr) {
        g_previousFilter(category);
    }
    constexpr const char* kPlugins = "qt.gui.imageio";
    if (std::strncmp(category->categoryName(), kPlugins, std::strlen(kPlugins)) == 0) {
        category->setEnabled(QtWarningMsg, false);
    }
}

bool isHeif(const QString& type) {
    return type == u"image/heic" || type == u"image/heif" || type == u"image/avif";
}

QByteArray pluginFor(const QString& type) {
    return type == u"image/vnd.microsoft.icon" ? QByteArrayLiteral("ico")
                                               : type.sliced(type.indexOf(u'/') + 1).toLatin1();
}

QSize upright(QSize size, QImageIOHandler::Transformations transformation) {
    return transformation.testFlag(QImageIOHandler::TransformationRotate90) ? size.transposed()
                                                                            : size;
}

/// A reader on bytes, with the format fixed beforehand.
class Source final {
public:
    Source(const QByteArray& bytes, const QString& type) {
        m_buffer.setData(bytes);
        m_buffer.open(QIODevice::ReadOnly);
        m_reader = std::make_unique<QImageReader>(&m_buffer, pluginFor(type));
        m_reader->setAutoDetectImageFormat(false);
        m_reader->setAutoTransform(true);
        if (type == u"image/vnd.microsoft.icon") {
            selectLargest();
        }
    }

    [[nodiscard]] QImageReader& reader() { return *m_reader; }

    /// As stored, before the orientation is applied.
    [[nodiscard]] Result<QSize> storedSize() {
        const QSize size = m_reader->size();
        if (size.isEmpty()) {
            return std::unexpected(error());
        }
        if (!isWithinImageBounds(size)) {
            return failure(ErrorKind::TooLarge, u"picture beyond the bounds"_s);
        }
        return size;
    }

    [[nodiscard]] Result<QImage> read() {
        QImage image = m_reader->read();
        if (image.isNull()) {
            return std::unexpected(error());
        }
        // A GIF's frame may be announced small and its screen be large.
        if (!isWithinImageBounds(image.size())) {
            return failure(ErrorKind::TooLarge, u"picture beyond the bounds"_s);
        }
        return image;
    }

private:
    [[nodiscard]] Error error() const {
        const bool unsupported = m_reader->error() == QImageReader::UnsupportedFormatError;
        return {unsupported ? ErrorKind::Unsupported : ErrorKind::Malformed,
                u"%1 picture cannot be decoded"_s.arg(QLatin1StringView(m_reader->format()))};
    }

    void selectLargest() {
        const int count = std::min(m_reader->imageCount(), kMaxIconPictures);
        int best = 0;
        int bestWidth = 0;
        for (int i = 0; i < count && m_reader->jumpToImage(i); ++i) {
            if (m_reader->size().width() > bestWidth) {
                best = i;
                bestWidth = m_reader->size().width();
            }
        }
        m_reader->jumpToImage(best);
    }

    QBuffer m_buffer;
    std::unique_ptr<QImageReader> m_reader;
};

Error unknownImage() {
    return {ErrorKind::Malformed, u"no known image format"_s};
}

QSize fitted(QSize size, QSize bounds) {
    if (size.width() <= bounds.width() && size.height() <= bounds.height()) {
        return size;
    }
    const double scale =
        std::min(bounds.width() / double(size.width()), bounds.height() / double(size.height()));
    return QSize(std::max(1, int(std::lround(size.width() * scale))),
                 std::max(1, int(std::lround(size.height() * scale))));
}

Result<QImage> shrunk(Result<QImage> image, QSize bounds) {
    if (!image || fitted(image->size(), bounds) == image->size()) {
        return image;
    }
    return image->scaled(fitted(image->size(), bounds), Qt::IgnoreAspectRatio,
                         Qt::SmoothTransformation);
}

// The decoder leaves out what the smaller picture does not need.
Result<QImage> decodeScaledJpeg(const QByteArray& bytes, const QString& type, QSize bounds) {
    Source source(bytes, type);
    const auto stored = source.storedSize();
    if (!stored) {
        return std::unexpected(stored.error());
    }
    const auto transformation = source.reader().transformation();
    const QSize target = upright(fitted(upright(*stored, transformation), bounds), transformation);
    if (target != *stored) {
        source.reader().setScaledSize(target);
    }
    return source.read();
}

QImage onWhite(const QImage& image) {
    QImage opaque(image.size(), QImage::Format_RGB32);
    opaque.fill(Qt::white);
    QPainter painter(&opaque);
    painter.drawImage(opaque.rect(), image, image.rect());
    return opaque;
}

QImage withoutTexts(QImage image) {
    const QStringList keys = image.textKeys();
    for (const QString& key : keys) {
        image.setText(key, QString());
    }
    return image;
}

}  // namespace

QtImageCodec::QtImageCodec() {
    static std::once_flag once;
    std::call_once(once, [] {
        QImageReader::setAllocationLimit(kAllocationLimitMebibytes);
        g_previousFilter = QLoggingCategory::installFilter(nullptr);
        QLoggingCategory::installFilter(&muteImagePlugins);
    });
}

Result<QImage> QtImageCodec::decode(const QByteArray& bytes) const {
    const QString type = imageMimeType(bytes);
    if (type.isEmpty()) {
        return std::unexpected(unknownImage());
    }
    if (isHeif(type)) {
        return decodeHeif(bytes);
    }
    Source source(bytes, type);
    if (const auto stored = source.storedSize(); !stored) {
        return std::unexpected(stored.error());
    }
    return source.read();
}

Result<QSize> QtImageCodec::size(const QByteArray& bytes) const {
    const QString type = imageMimeType(bytes);
    if (type.isEmpty()) {
        return std::unexpected(unknownImage());
    }
    if (isHeif(type)) {
        return heifSize(bytes);
    }
    Source source(bytes, type);
    const auto stored = source.storedSize();
    if (!stored) {
        return stored;
    }
    return upright(*stored, source.reader().transformation());
}

Result<QImage> QtImageCodec::decodeScaled(const QByteArray& bytes, QSize bounds) const {
    if (bounds.isEmpty()) {
        return failure(ErrorKind::Failed, u"empty bounds for a picture"_s);
    }
    const QString type = imageMimeType(bytes);
    if (type == u"image/jpeg") {
        return decodeScaledJpeg(bytes, type, bounds);
    }
    return shrunk(decode(bytes), bounds);
}

Result<QByteArray> QtImageCodec::encodePng(const QImage& image) const {
    return encodePngQuickly(image);
}

Result<QByteArray> QtImageCodec::encodeJpeg(const QImage& image, double quality) const {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, QByteArrayLiteral("jpeg"));
    writer.setQuality(static_cast<int>(std::lround(std::clamp(quality, 0.0, 1.0) * 100)));
    const bool written =
        writer.write(withoutTexts(image.hasAlphaChannel() ? onWhite(image) : image));
    if (!written) {
        return failure(ErrorKind::Failed, u"the JPEG encoder failed"_s);
    }
    return bytes;
}

QString QtImageCodec::mimeType(const QByteArray& bytes) const {
    return imageMimeType(bytes);
}

}  // namespace quillo
