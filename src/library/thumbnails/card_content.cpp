// SPDX-License-Identifier: MIT
#include "library/thumbnails/card_content.h"

#include <QDateTime>
#include <QLocale>
#include <QUrl>

namespace quillo {
namespace {

// More than the ten lines of a card of 280 pixels can hold.
constexpr qsizetype kLongestBody = 700;

QString kindLabelOf(const Clip& clip, FilterType filter) {
    return clip.type() == ClipType::FileUrl ? clip.fileKindName() : label(filter);
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
    card.clip = clip.id();
    card.kind = clip.type().value_or(ClipType::Text);
    card.filter = filterTypeOf(clip);
    card.kindLabel = kindLabelOf(clip, card.filter);
    card.symbol = icon(card.filter);
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
