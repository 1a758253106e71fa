// SPDX-License-Identifier: MIT
#include "library/thumbnails/card_content.h"

#include <QDateTime>
#include <QLocale>
#include <QUrl>
#include <algorithm>

namespace quillo {
namespace {

// More than the ten lines of a card of 280 pixels can hold.
constexpr qsizetype kLongestBody = 700;

QString kindLabelOf(const Clip& clip, FilterType filter) {
    return clip.type() == ClipType::FileUrl ? clip.fileKindName() : label(filter);
}

QString charactersText(const Clip& clip) {
    const qsizetype count = characterCount(clip.plaintext().value_or(QString()));
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

// Cut where it stays whole characters.
QString bounded(const QString& text) {
    const bool splitsPair =
        text.size() > kLongestBody && text.at(kLongestBody - 1).isHighSurrogate();
    return text.left(splitsPair ? kLongestBody - 1 : kLongestBody);
}

QString bodyOf(const Clip& clip) {
    if (clip.type() == ClipType::FileUrl) {
        const QUrl url(clip.displayText());
        return url.isLocalFile() ? url.toLocalFile() : clip.displayText();
    }
    return bounded(clip.displayText());
}

// A link is only known to have an image once that was loaded, so every link may turn out to.
CardPreview previewOf(const Clip& clip, FilterType filter) {
    switch (clip.type().value_or(ClipType::Text)) {
        case ClipType::Image:
            return CardPreview::Image;
        case ClipType::FileUrl:
            return CardPreview::File;
        case ClipType::Rtf:
        case ClipType::Html:
            return CardPreview::RichText;
        case ClipType::Text:
            break;
    }
    if (clip.detectedColor()) {
        return CardPreview::Swatch;
    }
    return filter == FilterType::Link ? CardPreview::Link : CardPreview::Text;
}

QString titleOf(const Clip& clip, CardPreview preview) {
    if (preview == CardPreview::Link) {
        return bounded(clip.linkTitle().value_or(QString())).simplified();
    }
    return preview == CardPreview::File ? clip.fileName().value_or(QString()) : QString();
}

}  // namespace

qsizetype characterCount(const QString& text) {
    return text.size() - std::ranges::count_if(text, [](QChar c) { return c.isLowSurrogate(); });
}

CardContent cardContentFor(const Clip& clip, const QString& source) {
    CardContent card;
    card.clip = clip.id();
    card.kind = clip.type().value_or(ClipType::Text);
    card.filter = filterTypeOf(clip);
    card.kindLabel = kindLabelOf(clip, card.filter);
    card.symbol = icon(card.filter);
    card.preview = previewOf(clip, card.filter);
    card.swatch = card.preview == CardPreview::Swatch ? clip.detectedColor() : std::nullopt;
    card.body = bodyOf(clip);
    card.title = titleOf(clip, card.preview);
    const QString address = clip.urlString().value_or(QString());
    card.address = card.preview == CardPreview::File ? address : bounded(address);
    card.createdAt = clip.createdAt();
    card.sizeText = clip.formattedFileSize().value_or(QString());
    card.detail = card.swatch ? card.body.trimmed() : detailOf(clip);
    card.source = source;
    card.sourceIdentifier = clip.sourceBundleId().value_or(QString());
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
