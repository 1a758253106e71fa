// SPDX-License-Identifier: MIT
// Names of files, lists of them and bookmarks, as another program may have written them.
#include <cstring>

#include "fuzz_support.h"
#include "model/clip_file_kind.h"
#include "platform/file_bookmark.h"
#include "platform/pasteboard_reading.h"
#include "platform/uniform_types.h"

namespace {

using namespace quillo::fuzzing;
using namespace Qt::StringLiterals;

/// Offers the bytes as a list of files under one name.
class ListSource final : public quillo::PasteboardSource {
public:
    ListSource(QByteArray target, QByteArray bytes)
        : m_target(std::move(target)), m_bytes(std::move(bytes)) {}

    [[nodiscard]] qint64 changeCount() const override { return 1; }
    [[nodiscard]] QList<QByteArray> targets() override { return {m_target}; }
    [[nodiscard]] std::optional<quillo::RawReply> fetch(const QByteArray& target) override {
        return quillo::RawReply{target, m_bytes};
    }
    [[nodiscard]] bool wasSuperseded() const override { return false; }

private:
    QByteArray m_target;
    QByteArray m_bytes;
};

/// The case of an extension says nothing, and nothing but a picture is called one.
void requireSoundType(const QString& extension) {
    const auto type = quillo::uniformTypeForExtension(extension);
    if (!type) {
        return;
    }
    const QString upper = extension.toUpper();
    if (upper.size() == extension.size() && upper.toLower() == extension.toLower()) {
        const auto same = quillo::uniformTypeForExtension(upper);
        require(same && same->identifier == type->identifier);
    }
    const QString mimeType = quillo::mimeTypeForUniformType(type->identifier);
    require(!mimeType.isEmpty() && mimeType.startsWith("image/"_L1) == type->conformsToImage);
    require(type->conformsToImage ||
            quillo::fileKindName(type->identifier, std::nullopt) != "Image"_L1);
}

void requireSoundLabel(const std::optional<QString>& identifier, const QString& fileName) {
    constexpr qsizetype kLongestKind = 12;
    const QString kind = quillo::fileKindName(identifier, fileName);
    require(!kind.isEmpty() && kind.size() <= kLongestKind);
    const QString label = quillo::fileTypeLabel(kind, fileName);
    require(label.startsWith(kind) && label.size() <= kind.size() + 2 + 3 * fileName.size());
}

void requireSoundSize(const QByteArray& bytes) {
    qint64 number = 0;
    std::memcpy(&number, bytes.constData(), std::min(sizeof number, size_t(bytes.size())));
    const QString size = quillo::formattedByteCount(number);
    require(size.contains(u' ') && (number < 1000 || size.size() <= 9));
}

/// Each address has one spelling, and a bookmark of it leads back to it.
void requireSoundList(const QByteArray& target, const QByteArray& bytes) {
    quillo::PasteboardReading reading(std::make_unique<ListSource>(target, bytes));
    const QList<QUrl> urls = reading.fileUrls();
    require(urls.size() <= bytes.count('\n') + 1);
    for (const QUrl& url : urls) {
        require(url.isValid() && quillo::normalizedFileUrl(url) == url);
        if (const auto bookmark = quillo::makeFileBookmark(url)) {
            const auto resolved = quillo::resolveFileBookmark(*bookmark);
            require(resolved && *resolved == url);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes = inputBytes(data, size);
    const QString text = QString::fromUtf8(bytes);
    const qsizetype dot = text.indexOf(u'.');
    const QString extension = text.mid(dot + 1);
    requireSoundType(extension);
    (void)quillo::mimeTypeForUniformType(text);
    requireSoundLabel(text, text);
    requireSoundLabel(std::nullopt, text);
    requireSoundSize(bytes);
    requireSoundList("text/uri-list", bytes);
    requireSoundList("x-special/gnome-copied-files", bytes);
    const auto resolved = quillo::resolveFileBookmark(bytes);
    require(!resolved || quillo::normalizedFileUrl(*resolved) == *resolved);
    return 0;
}
