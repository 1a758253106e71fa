// SPDX-License-Identifier: MIT
#include "capture/web_link.h"

#include <algorithm>

namespace quillo {
namespace {

bool cannotStandInUrl(QChar c) {
    return c.isSpace() || c.category() == QChar::Other_Control;
}

}  // namespace

std::optional<QUrl> parseWholeUrl(const QString& text) {
    if (text.isEmpty() || std::any_of(text.cbegin(), text.cend(), cannotStandInUrl)) {
        return std::nullopt;
    }
    QUrl url(text, QUrl::TolerantMode);
    if (!url.isValid()) {
        return std::nullopt;
    }
    return url;
}

bool isWebLink(const QString& text) {
    // Cheap first: most copied texts are no addresses, and some are very long.
    if (!text.startsWith(QLatin1StringView("http"), Qt::CaseInsensitive)) {
        return false;
    }
    const std::optional<QUrl> url = parseWholeUrl(text);
    return url && (url->scheme() == QLatin1StringView("http") ||
                   url->scheme() == QLatin1StringView("https"));
}

}  // namespace quillo
