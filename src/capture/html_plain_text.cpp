// SPDX-License-Identifier: MIT
#include "capture/html_plain_text.h"

#include <QStringDecoder>
#include <array>
#include <utility>

namespace quillo {
namespace {

// A tag is a "<", at least one character that is no ">", and a ">".
QString withoutTags(const QString& html) {
    QString text;
    text.reserve(html.size());
    qsizetype from = 0;
    while (true) {
        const qsizetype open = html.indexOf(u'<', from);
        const qsizetype close = open < 0 ? -1 : html.indexOf(u'>', open);
        if (close < 0) {
            return text.append(QStringView(html).sliced(from));
        }
        const bool isTag = close > open + 1;
        const qsizetype keepUntil = isTag ? open : close + 1;
        text.append(QStringView(html).sliced(from, keepUntil - from));
        from = close + 1;
    }
}

}  // namespace

std::optional<QString> plainTextOfHtml(const QByteArray& document) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString html = decoder.decode(document);
    if (decoder.hasError()) {
        return std::nullopt;
    }
    QString text = withoutTags(html);
    // In this order: what "&amp;" gives may be an entity that comes after it.
    static constexpr std::array<std::pair<QLatin1StringView, QLatin1StringView>, 7> kEntities = {{
        {QLatin1StringView("&nbsp;"), QLatin1StringView(" ")},
        {QLatin1StringView("&amp;"), QLatin1StringView("&")},
        {QLatin1StringView("&lt;"), QLatin1StringView("<")},
        {QLatin1StringView("&gt;"), QLatin1StringView(">")},
        {QLatin1StringView("&quot;"), QLatin1StringView("\"")},
        {QLatin1StringView("&#39;"), QLatin1StringView("'")},
        {QLatin1StringView("&apos;"), QLatin1StringView("'")},
    }};
    for (const auto& [entity, character] : kEntities) {
        text.replace(entity, character);
    }
    return text.trimmed();
}

}  // namespace quillo
