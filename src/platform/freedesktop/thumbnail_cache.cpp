// SPDX-License-Identifier: MIT
#include "platform/freedesktop/thumbnail_cache.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "platform/freedesktop/png_texts.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr std::array<ThumbnailFlavor, 4> kFlavors = {
    {{"normal", 128}, {"large", 256}, {"x-large", 512}, {"xx-large", 1024}}};

// A picture of 1024 by 1024 with noise in every pixel is smaller.
constexpr qint64 kLargestEntryBytes = 8 * 1024 * 1024;
constexpr int kMostFailFolders = 32;

size_t indexFor(int sidePx) {
    const auto found = std::ranges::find_if(
        kFlavors, [sidePx](const ThumbnailFlavor& flavor) { return flavor.side >= sidePx; });
    return std::min(size_t(found - kFlavors.begin()), kFlavors.size() - 1);
}

QString entryName(const QString& path) {
    const QByteArray digest =
        QCryptographicHash::hash(ThumbnailCache::uriOf(path), QCryptographicHash::Md5);
    return QLatin1StringView(digest.toHex()) + u".png"_s;
}

}  // namespace

const ThumbnailFlavor& thumbnailFlavorFor(int sidePx) {
    return kFlavors[indexFor(sidePx)];
}

ThumbnailCache::ThumbnailCache(QString folder, const ImageCodec& codec)
    : m_folder(std::move(folder)), m_codec(codec) {}

// The characters that the desktops' file managers leave as they are.
QByteArray ThumbnailCache::uriOf(const QString& path) {
    return "file://" + QFile::encodeName(path).toPercentEncoding("!$&'()*+,/:=@");
}

std::optional<QImage> ThumbnailCache::find(const QString& path, int sidePx) const {
    for (const ThumbnailFlavor& flavor : std::span(kFlavors).subspan(indexFor(sidePx))) {
        if (auto image = read(path, flavor)) {
            return image;
        }
    }
    return std::nullopt;
}

std::optional<QImage> ThumbnailCache::findSmaller(const QString& path, int sidePx) const {
    for (size_t i = indexFor(sidePx); i > 0; --i) {
        if (auto image = read(path, kFlavors[i - 1])) {
            return image;
        }
    }
    return std::nullopt;
}

bool ThumbnailCache::isKnownToFail(const QString& path) const {
    const QDir fails(m_folder + u"/fail"_s);
    const QStringList programs = fails.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return std::ranges::any_of(
        programs.first(std::min<qsizetype>(programs.size(), kMostFailFolders)),
        [&](const QString& program) {
            return validEntry(fails.filePath(program + u'/' + entryName(path)), path).has_value();
        });
}

std::optional<QImage> ThumbnailCache::read(const QString& path,
                                           const ThumbnailFlavor& flavor) const {
    const QString entry = m_folder + u'/' + QLatin1StringView(flavor.name) + u'/' + entryName(path);
    const auto bytes = validEntry(entry, path);
    if (!bytes) {
        return std::nullopt;
    }
    Result<QImage> image = m_codec.decodeScaled(*bytes, QSize(flavor.side, flavor.side));
    return image ? std::optional(std::move(*image)) : std::nullopt;
}

std::optional<QByteArray> ThumbnailCache::validEntry(const QString& entry,
                                                     const QString& path) const {
    QFile file(entry);
    // A pipe or a device in its place would block.
    const QFileInfo info(entry);
    if (!info.isFile() || info.size() > kLargestEntryBytes || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    QByteArray bytes = file.read(kLargestEntryBytes);
    const auto texts = pngTexts(bytes);
    bool isNumber = false;
    const qint64 modified = texts.value("Thumb::MTime").toLongLong(&isNumber);
    const bool isOfFile = isNumber &&
                          modified == QFileInfo(path).lastModified().toSecsSinceEpoch() &&
                          texts.value("Thumb::URI") == uriOf(path);
    return isOfFile ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace quillo
