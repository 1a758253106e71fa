// SPDX-License-Identifier: MIT
#include "capture/pasteboard_snapshot.h"

#include "base/logging.h"
#include "capture/image_normalizer.h"
#include "capture/web_link.h"
#include "platform/uniform_types.h"

#include <QFile>
#include <QFileInfo>

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcWatcher, "PasteboardWatcher")

// A copied image file beyond this is a file, not a picture for the strip.
constexpr qint64 kLargestImageFile = 256LL * 1024 * 1024;

bool isStoredAsItIs(const QString& lowerExtension) {
    static const QStringList kExtensions = {QStringLiteral("jpg"),  QStringLiteral("jpeg"),
                                            QStringLiteral("webp"), QStringLiteral("heic"),
                                            QStringLiteral("heif"), QStringLiteral("gif")};
    return kExtensions.contains(lowerExtension);
}

bool fits(QSize size) {
    return size.width() <= kLongestStoredSide && size.height() <= kLongestStoredSide;
}

// Regular files only: a name in a copied list may be a pipe or a device that never ends.
std::optional<QByteArray> fileBytes(const QString& path) {
    const QFileInfo info(path);
    QFile file(path);
    if (!info.isFile() || info.size() > kLargestImageFile || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    QByteArray bytes = file.read(kLargestImageFile);
    if (file.error() != QFileDevice::NoError) {
        return std::nullopt;
    }
    return bytes;
}

}  // namespace

CaptureSwitches captureSwitches(const UserDefaults& defaults) {
    return {defaults.boolean(QStringLiteral("captureImages")).value_or(true),
            defaults.boolean(QStringLiteral("captureFiles")).value_or(true)};
}

CaptureKind captureKind(const PasteboardSnapshot& snapshot) {
    if (snapshot.isUnwanted) {
        return CaptureKind::Unwanted;
    }
    if (snapshot.imageData) {
        return CaptureKind::Image;
    }
    if (snapshot.fileUrls && !snapshot.fileUrls->isEmpty()) {
        return CaptureKind::Files;
    }
    if (snapshot.rtfData) {
        return CaptureKind::Rtf;
    }
    if (snapshot.htmlData) {
        return CaptureKind::Html;
    }
    if (snapshot.urlString) {
        return CaptureKind::Url;
    }
    return snapshot.plainText ? CaptureKind::Text : CaptureKind::Nothing;
}

PasteboardSnapshotReader::PasteboardSnapshotReader(PasteboardReading& reading,
                                                   const ImageCodec& codec,
                                                   CaptureSwitches switches)
    : m_reading(reading), m_codec(codec), m_switches(switches) {}

PasteboardSnapshot PasteboardSnapshotReader::readSnapshot() {
    PasteboardSnapshot snapshot;
    snapshot.fileUrls = readFileUrls();
    if (m_switches.images) {
        NamedImage image = readImage(snapshot.fileUrls);
        snapshot.imageData = std::move(image.data);
        snapshot.imageFileName = std::move(image.fileName);
    }
    snapshot.isUnwanted = isSwitchedOff(snapshot);
    if (snapshot.isUnwanted) {
        return snapshot;
    }
    snapshot.rtfData = m_reading.data(PasteboardType::Rtf);
    snapshot.htmlData = m_reading.data(PasteboardType::Html);
    snapshot.urlString = readUrlString();
    snapshot.plainText = m_reading.string(PasteboardType::String);
    return snapshot;
}

bool PasteboardSnapshotReader::isSwitchedOff(const PasteboardSnapshot& snapshot) {
    if (snapshot.fileUrls) {
        return !m_switches.files && !snapshot.imageData;
    }
    return !m_switches.images && holdsPicture();
}

// Some programs offer pictures and then refuse them, or give what is none: a look at the bytes
// tells that from a picture whose text is only its address.
bool PasteboardSnapshotReader::holdsPicture() {
    const auto isPicture = [this](const std::optional<QByteArray>& bytes) {
        return bytes && m_codec.size(*bytes).has_value();
    };
    return isPicture(m_reading.data(PasteboardType::Png)) ||
           isPicture(m_reading.data(PasteboardType::Tiff)) ||
           isPicture(m_reading.data(PasteboardType::Jpeg)) || isPicture(m_reading.anyImage());
}

std::optional<QList<QUrl>> PasteboardSnapshotReader::readFileUrls() {
    QList<QUrl> urls = m_reading.fileUrls();
    if (urls.isEmpty()) {
        return std::nullopt;
    }
    return urls;
}

PasteboardSnapshotReader::NamedImage PasteboardSnapshotReader::readImage(
    const std::optional<QList<QUrl>>& fileUrls) {
    if (!fileUrls) {
        std::optional<QByteArray> data = readPasteboardImage();
        if (!data) {
            return {};
        }
        return {std::move(data), m_reading.string(PasteboardType::UrlName)};
    }
    std::optional<QByteArray> data = imageFromFileUrl(fileUrls->constFirst());
    if (!data) {
        return {};
    }
    qCDebug(lcWatcher, "Image extracted from file URL: %s", kPrivate);
    return {std::move(data), fileUrls->constFirst().fileName()};
}

std::optional<QByteArray> PasteboardSnapshotReader::readPasteboardImage() {
    for (const PasteboardType type : {PasteboardType::Png, PasteboardType::Tiff}) {
        if (std::optional<QByteArray> png = pngFrom(m_reading.data(type))) {
            return png;
        }
    }
    const std::optional<QByteArray> jpeg = m_reading.data(PasteboardType::Jpeg);
    return jpeg ? storedJpeg(*jpeg) : pngFrom(m_reading.anyImage());
}

std::optional<QByteArray> PasteboardSnapshotReader::pngFrom(
    const std::optional<QByteArray>& bytes) const {
    if (!bytes) {
        return std::nullopt;
    }
    const Result<QImage> image = m_codec.decode(*bytes);
    return image ? normalizedPng(m_codec, *image, kLongestStoredSide) : std::nullopt;
}

// Bytes that do not decode are kept as they came.
QByteArray PasteboardSnapshotReader::storedJpeg(const QByteArray& bytes) const {
    const Result<QSize> size = m_codec.size(bytes);
    if (!size || fits(*size)) {
        return bytes;
    }
    const Result<QImage> image = m_codec.decode(bytes);
    return image ? downscaledJpeg(m_codec, *image, kLongestStoredSide, kStoredJpegQuality)
                       .value_or(bytes)
                 : bytes;
}

std::optional<QByteArray> PasteboardSnapshotReader::imageFromFileUrl(const QUrl& url) const {
    if (!url.isLocalFile()) {
        return std::nullopt;
    }
    const QString extension = QFileInfo(url.toLocalFile()).suffix().toLower();
    const std::optional<UniformType> type = uniformTypeForExtension(extension);
    if (!type || !type->conformsToImage) {
        return std::nullopt;
    }
    const std::optional<QByteArray> bytes = fileBytes(url.toLocalFile());
    if (!bytes) {
        return std::nullopt;
    }
    const Result<QImage> image = m_codec.decode(*bytes);
    if (!image) {
        return std::nullopt;
    }
    if (!isStoredAsItIs(extension)) {
        return normalizedPng(m_codec, *image, kLongestStoredSide);
    }
    return fits(image->size())
               ? bytes
               : downscaledJpeg(m_codec, *image, kLongestStoredSide, kStoredJpegQuality);
}

std::optional<QString> PasteboardSnapshotReader::readUrlString() {
    if (std::optional<QString> url = m_reading.string(PasteboardType::Url)) {
        return url;
    }
    std::optional<QString> text = m_reading.string(PasteboardType::String);
    return text && isWebLink(*text) ? text : std::nullopt;
}

}  // namespace quillo
