// SPDX-License-Identifier: MIT
#include "paste/url_sanitizer.h"

#include <QStringList>
#include <QUrl>
#include <algorithm>
#include <optional>

namespace quillo {
namespace {

constexpr const char* kTrackingNames[] = {
    "utm_source", "utm_medium", "utm_campaign", "utm_term",   "utm_content", "gclid",
    "fbclid",     "msclkid",    "twclid",       "_ga",        "_gl",         "mc_eid",
    "mc_cid",     "ref",        "referrer",     "campaign_id"};

bool isTracking(QStringView item) {
    const qsizetype end = item.indexOf(u'=');
    const QByteArray encoded = (end < 0 ? item : item.left(end)).toUtf8();
    const QByteArray name = QByteArray::fromPercentEncoding(encoded);
    return std::ranges::any_of(kTrackingNames,
                               [&name](const char* tracking) { return name == tracking; });
}

// A white space tells running text at once; the parser would read all of it.
std::optional<QUrl> parsed(const QString& text) {
    const bool hasSpace =
        std::any_of(text.cbegin(), text.cend(), [](QChar c) { return c.isSpace(); });
    QUrl url = hasSpace ? QUrl() : QUrl(text, QUrl::StrictMode);
    return url.isValid() ? std::optional(std::move(url)) : std::nullopt;
}

}  // namespace

// QUrl only says whether it is a URL: what it writes is normalised, and QUrlQuery's more so.
QString sanitizedUrl(const QString& text) {
    const qsizetype fragment = text.indexOf(u'#');
    const qsizetype end = fragment < 0 ? text.size() : fragment;
    const qsizetype mark = text.indexOf(u'?');
    if (mark < 0 || mark >= end) {
        return text;
    }
    const auto url = parsed(text);
    const bool isQuestion = url.has_value() && url->scheme().isEmpty() && mark + 1 == end;
    if (!url.has_value() || isQuestion) {
        return text;
    }
    QStringList items = text.mid(mark + 1, end - mark - 1).split(u'&');
    items.removeIf(isTracking);
    const bool isEmpty = std::ranges::all_of(items, &QString::isEmpty);
    const QString query = isEmpty ? QString() : u'?' + items.join(u'&');
    return text.left(mark) + query + text.mid(end);
}

}  // namespace quillo
