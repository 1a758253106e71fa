// SPDX-License-Identifier: MIT
#include "platform/pasteboard_reading.h"

#include <QSet>
#include <algorithm>

#include "platform/file_bookmark.h"
#include "platform/pasteboard_decoding.h"

using namespace Qt::StringLiterals;

namespace quillo {

namespace {

constexpr qsizetype kMostTargets = 1000;
constexpr qsizetype kLongestTarget = 1000;
constexpr qsizetype kLongestLoggedName = 100;
constexpr qsizetype kMostUriLines = 100'000;

constexpr const char* kSecretHint = "x-kde-passwordManagerHint";
constexpr const char* kMozUrl = "text/x-moz-url";
constexpr const char* kUriList = "text/uri-list";
constexpr const char* kCopiedFiles = "x-special/gnome-copied-files";

/// Targets that act on the selection or describe it (ICCCM 2.6.2); none holds contents.
bool isProtocolTarget(const QByteArray& target) {
    static const QSet<QByteArray> names{"TARGETS",        "TIMESTAMP", "MULTIPLE",
                                        "SAVE_TARGETS",   "DELETE",    "INSERT_SELECTION",
                                        "INSERT_PROPERTY"};
    return names.contains(target);
}

QList<QByteArray> targetsFor(PasteboardType type) {
    switch (type) {
        case PasteboardType::Marker:
            return {kMarkerTarget};
        case PasteboardType::Rtf:
            return rtfTargets();
        case PasteboardType::Html:
            return {"text/html"};
        case PasteboardType::Png:
            return {"image/png", "image/x-png"};
        case PasteboardType::Tiff:
            return {"image/tiff", "image/x-tiff"};
        case PasteboardType::Jpeg:
            return {"image/jpeg", "image/jpg", "image/pjpeg"};
        case PasteboardType::String:
        case PasteboardType::Url:
        case PasteboardType::UrlName:
            break;
    }
    return {};
}

bool isMainImageTarget(const QByteArray& target) {
    return targetsFor(PasteboardType::Png).contains(target) ||
           targetsFor(PasteboardType::Tiff).contains(target) ||
           targetsFor(PasteboardType::Jpeg).contains(target);
}

bool isImage(PasteboardType type) {
    return type == PasteboardType::Png || type == PasteboardType::Tiff ||
           type == PasteboardType::Jpeg;
}

QByteArray withoutTrailingNuls(QByteArray bytes) {
    while (bytes.endsWith('\0')) {
        bytes.chop(1);
    }
    return bytes;
}

/// A name for the log: parameters can hold names of files, so all but the charset are cut off.
QString loggedName(const QByteArray& target) {
    const QByteArrayList parts = target.split(';');
    QByteArray name = parts.constFirst();
    for (const QByteArray& parameter : parts.sliced(1)) {
        if (parameter.trimmed().toLower().startsWith("charset=")) {
            name += ';' + parameter.trimmed();
        }
    }
    name.truncate(kLongestLoggedName);
    std::replace_if(name.begin(), name.end(), [](char c) { return c < 0x20 || c > 0x7e; }, '?');
    return QString::fromLatin1(name);
}

QStringList linesOf(const QString& text) {
    QStringList lines = text.split(u'\n');
    for (QString& line : lines) {
        line = line.trimmed();
    }
    return lines;
}

bool isWebAddress(const QString& line) {
    return line.startsWith("http://"_L1, Qt::CaseInsensitive) ||
           line.startsWith("https://"_L1, Qt::CaseInsensitive);
}

}  // namespace

PasteboardReading::PasteboardReading(std::unique_ptr<PasteboardSource> source)
    : m_source(std::move(source)) {}

PasteboardReading::~PasteboardReading() = default;

qint64 PasteboardReading::changeCount() const {
    return m_source->changeCount();
}

bool PasteboardReading::isConcealed() {
    if (!offers(kSecretHint)) {
        return false;
    }
    const auto reply = fetch(kSecretHint);
    return reply && withoutTrailingNuls(reply->bytes).trimmed() == "secret";
}

QStringList PasteboardReading::types() {
    QStringList names;
    for (const QByteArray& target : targets()) {
        names.append(loggedName(target));
    }
    return names;
}

std::optional<QByteArray> PasteboardReading::data(PasteboardType type) {
    if (isImage(type) && (!offersAnyOf(targetsFor(type)) || imageIsRendering())) {
        return std::nullopt;
    }
    const auto reply = firstOf(targetsFor(type));
    if (!reply) {
        return std::nullopt;
    }
    if (type == PasteboardType::Html) {
        return decodeHtml(reply->bytes);
    }
    return type == PasteboardType::Rtf ? withoutTrailingNuls(reply->bytes) : reply->bytes;
}

std::optional<QString> PasteboardReading::string(PasteboardType type) {
    switch (type) {
        case PasteboardType::Marker:
            if (const auto reply = firstOf(targetsFor(type))) {
                return decodeText(kMarkerTarget, *reply);
            }
            return std::nullopt;
        case PasteboardType::String:
            return plainText();
        case PasteboardType::Url: {
            QString address = mozUrlLines().value(0);
            if (!address.isEmpty()) {
                return address;
            }
            const QStringList lines = uriLines();
            const auto web = std::find_if(lines.cbegin(), lines.cend(), isWebAddress);
            return web != lines.cend() ? std::optional(*web) : std::nullopt;
        }
        case PasteboardType::UrlName: {
            const QString name = mozUrlLines().value(1);
            return name.isEmpty() ? std::nullopt : std::optional(name);
        }
        default:
            return std::nullopt;
    }
}

QList<QUrl> PasteboardReading::fileUrls() {
    QList<QUrl> urls;
    const QStringList lines = uriLines();
    for (const QString& line : lines) {
        if (line.startsWith("file:"_L1, Qt::CaseInsensitive)) {
            if (const auto url = normalizedFileUrl(QUrl(line, QUrl::TolerantMode))) {
                urls.append(*url);
            }
        }
    }
    return urls;
}

std::optional<QByteArray> PasteboardReading::anyImage() {
    const QList<QByteArray> candidates = otherImageTargets();
    if (candidates.isEmpty() || imageIsRendering()) {
        return std::nullopt;
    }
    for (const QByteArray& target : candidates) {
        if (const auto reply = fetch(target); reply && !reply->bytes.isEmpty()) {
            return reply->bytes;
        }
    }
    return std::nullopt;
}

bool PasteboardReading::wasSuperseded() const {
    return m_source->wasSuperseded();
}

KeptContents PasteboardReading::kept() const {
    KeptContents contents;
    for (const QByteArray& target : m_targets.value_or(QList<QByteArray>{})) {
        if (const auto reply = m_replies.value(target)) {
            contents.representations.append({target, *reply});
        }
    }
    return contents;
}

const QList<QByteArray>& PasteboardReading::targets() {
    if (!m_targets) {
        m_targets.emplace();
        QSet<QByteArray> seen;
        const QList<QByteArray> offered = m_source->targets();
        for (const QByteArray& target : offered.first(std::min(offered.size(), kMostTargets))) {
            if (!target.isEmpty() && target.size() <= kLongestTarget && !isProtocolTarget(target) &&
                !seen.contains(target)) {
                seen.insert(target);
                m_targets->append(target);
            }
        }
    }
    return *m_targets;
}

std::optional<RawReply> PasteboardReading::fetch(const QByteArray& target) {
    if (const auto known = m_replies.constFind(target); known != m_replies.cend()) {
        return *known;
    }
    // A secret is not even asked for, whichever order the questions come in.
    const bool isAllowed = target == kSecretHint || target == kMarkerTarget || !isConcealed();
    const std::optional<RawReply> reply = isAllowed ? m_source->fetch(target) : std::nullopt;
    m_replies.insert(target, reply);
    return reply;
}

std::optional<RawReply> PasteboardReading::firstOf(const QList<QByteArray>& wanted) {
    for (const QByteArray& target : wanted) {
        if (offers(target)) {
            if (auto reply = fetch(target)) {
                return reply;
            }
        }
    }
    return std::nullopt;
}

bool PasteboardReading::offers(const QByteArray& target) {
    return targets().contains(target);
}

bool PasteboardReading::offersAnyOf(const QList<QByteArray>& wanted) {
    return std::any_of(wanted.cbegin(), wanted.cend(),
                       [this](const QByteArray& target) { return offers(target); });
}

bool PasteboardReading::imageIsRendering() {
    return offersAnyOf(rtfTargets()) && !plainText().value_or(QString()).isEmpty();
}

QList<QByteArray> PasteboardReading::otherImageTargets() {
    static const QList<QByteArray> preferred{"image/webp", "image/heic", "image/avif",
                                             "image/gif",  "image/bmp",  "image/x-bmp"};
    QList<QByteArray> candidates;
    for (const QByteArray& target : preferred) {
        if (offers(target)) {
            candidates.append(target);
        }
    }
    for (const QByteArray& target : targets()) {
        if (isImageTarget(target) && !isMainImageTarget(target) && !preferred.contains(target)) {
            candidates.append(target);
        }
    }
    return candidates;
}

std::optional<QString> PasteboardReading::plainText() {
    if (!m_text) {
        m_text.emplace();
        for (const QByteArray& target : textTargetsAmong(targets())) {
            if (const auto reply = fetch(target)) {
                *m_text = decodeText(target, *reply, textDialectOf(targets()));
                break;
            }
        }
    }
    return *m_text;
}

QStringList PasteboardReading::mozUrlLines() {
    const auto reply = firstOf({kMozUrl});
    if (!reply) {
        return {};
    }
    // An address always has ASCII in it, and with that UTF-16 has NUL bytes.
    const bool isWide = withoutTrailingNuls(reply->bytes).contains('\0');
    return linesOf(isWide ? decodeUtf16(reply->bytes)
                          : QString::fromUtf8(withoutTrailingNuls(reply->bytes)));
}

QStringList PasteboardReading::uriLines() {
    QStringList lines;
    bool isCopiedFiles = false;
    auto reply = firstOf({kUriList});
    if (!reply) {
        reply = firstOf({kCopiedFiles});
        isCopiedFiles = reply.has_value();
    }
    if (!reply) {
        return {};
    }
    for (const QByteArray& line : withoutTrailingNuls(reply->bytes).split('\n')) {
        const QByteArray address = line.trimmed();
        if (!isCopiedFiles && !address.isEmpty() && !address.startsWith('#')) {
            lines.append(QString::fromUtf8(address));
        }
        isCopiedFiles = false;
        if (lines.size() >= kMostUriLines) {
            break;
        }
    }
    return lines;
}

}  // namespace quillo
