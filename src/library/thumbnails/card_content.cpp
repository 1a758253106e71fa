// SPDX-License-Identifier: MIT
#include "library/thumbnails/card_content.h"

#include <QDateTime>
#include <QLocale>
#include <QUrl>

namespace quillo {
namespace {

// More than the ten lines of a card of 280 pixels can hold.
constexpr qsizetype kLongestBody = 700;

struct CardKind {
    QString label;
    const char* symbol;
    QRgb color;
};

CardKind fileCardKind(const Clip& clip) {
    const QString name = clip.fileKindName();
    return {name, name == QLatin1StringView("Folder") ? "folder" : "doc",
            name == QLatin1StringView("Folder") ? 0xfff39c12 : 0xff95a5a6};
}

CardKind cardKindOf(const Clip& clip, bool isColor) {
    switch (clip.type().value_or(ClipType::Text)) {
        case ClipType::Rtf:
            return {QStringLiteral("Rich Text"), "doc.richtext", 0xff9b59b6};
        case ClipType::Html:
            return {QStringLiteral("HTML"), "globe", 0xffff8e72};
        case ClipType::Image:
            return {QStringLiteral("Image"), "photo", 0xff6bcb77};
        case ClipType::FileUrl:
            return fileCardKind(clip);
        case ClipType::Text:
            break;
    }
    if (!clip.urlString().value_or(QString()).isEmpty()) {
        return {QStringLiteral("Link"), "link", 0xff3498db};
    }
    if (isColor) {
        return {QStringLiteral("Color"), "paintpalette", 0xffff6b6b};
    }
    return {QStringLiteral("Text"), "doc.text", 0xff4d96ff};
}

QString charactersText(const Clip& clip) {
    const qsizetype count = clip.plaintext().value_or(QString()).size();
    return count == 1 ? QStringLiteral("1 character")
                      : QStringLiteral("%1 characters").arg(QLocale().toString(count));
}

QString detailOf(const Clip& clip) {
    const std::optional<ClipType> type = clip.type();
    if (type == ClipType::Image) {
        return clip.formattedFileSize().value_or(QString());
    }
    if (type == ClipType::FileUrl) {
        const QString size = clip.formattedFileSize().value_or(QString());
        return size.isEmpty() ? clip.fileTypeLabel()
                              : clip.fileTypeLabel() + QStringLiteral(" · ") + size;
    }
    const QString host = clip.urlHost().value_or(QString());
    return host.isEmpty() ? charactersText(clip) : host;
}

QString bodyOf(const Clip& clip) {
    if (clip.type() == ClipType::FileUrl) {
        const QUrl url(clip.displayText());
        return url.isLocalFile() ? url.toLocalFile() : clip.displayText();
    }
    return clip.displayText().left(kLongestBody);
}

}  // namespace

CardContent cardContentFor(const Clip& clip, const QString& source) {
    CardContent card;
    card.swatch =
        clip.urlString().value_or(QString()).isEmpty() ? clip.detectedColor() : std::nullopt;
    const CardKind kind = cardKindOf(clip, card.swatch.has_value());
    card.clip = clip.id();
    card.kindLabel = kind.label;
    card.symbol = QString::fromLatin1(kind.symbol);
    card.color = QColor::fromRgb(kind.color);
    card.body = bodyOf(clip);
    card.createdAt = clip.createdAt();
    card.detail = card.swatch ? card.body.trimmed() : detailOf(clip);
    card.source = source;
    card.hasImage = clip.type() == ClipType::Image;
    card.isPinned = clip.isPinned();
    return card;
}

QString ageText(Timestamp moment, Timestamp now) {
    using namespace std::chrono;
    const auto age = now - moment;
    if (age < minutes(1)) {
        return QStringLiteral("now");
    }
    if (age < hours(1)) {
        return QStringLiteral("%1 min").arg(duration_cast<minutes>(age).count());
    }
    if (age < days(1)) {
        return QStringLiteral("%1 h").arg(duration_cast<hours>(age).count());
    }
    if (age < days(7)) {
        return QStringLiteral("%1 d").arg(duration_cast<days>(age).count());
    }
    const qint64 milliseconds =
        duration_cast<std::chrono::milliseconds>(moment.time_since_epoch()).count();
    return QLocale().toString(QDateTime::fromMSecsSinceEpoch(milliseconds).date(),
                              QLocale::ShortFormat);
}

}  // namespace quillo
