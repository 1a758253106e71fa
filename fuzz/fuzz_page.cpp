// SPDX-License-Identifier: MIT
// A web page: what is found in it is what the patterns find that define it.
#include <QRegularExpression>

#include "capture/link_preview_page.h"
#include "fuzz_support.h"

namespace {

using namespace quillo;
using namespace quillo::fuzzing;
using namespace Qt::StringLiterals;

/// Beyond this a regular expression takes too long, which is why the product has none.
constexpr qsizetype kMostForPatterns = 400;

/// The first group of the first match; none when the pattern gave up.
std::optional<QString> firstMatch(const QString& pattern, const QString& html, bool& isDecided) {
    const QRegularExpression expression(pattern, QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = expression.match(html);
    isDecided &= match.isValid();
    return match.hasMatch() ? std::optional(match.captured(1)) : std::nullopt;
}

QString resolved(QString text) {
    return text.replace(u"&amp;"_s, u"&"_s)
        .replace(u"&lt;"_s, u"<"_s)
        .replace(u"&gt;"_s, u">"_s)
        .replace(u"&quot;"_s, u"\""_s)
        .replace(u"&#39;"_s, u"'"_s);
}

std::optional<QString> metaByPatterns(const QString& html, const QString& key, bool& isDecided) {
    for (const QString& attribute : {u"property"_s, u"name"_s}) {
        const QString keyText = attribute + u"=\""_s + key + u'"';
        for (const QString& pattern : {u"<meta[^>]+"_s + keyText + u"[^>]+content=\"([^\"]*)\""_s,
                                       u"<meta[^>]+content=\"([^\"]*)\"[^>]+"_s + keyText}) {
            const auto found = firstMatch(pattern, html, isDecided);
            if (found && !resolved(*found).isEmpty()) {
                return resolved(*found);
            }
        }
    }
    return std::nullopt;
}

void requireSameAsPatterns(const QString& html) {
    for (const auto key : {"og:title"_L1, "og:image"_L1}) {
        bool isDecided = true;
        const auto expected = metaByPatterns(html, key, isDecided);
        require(!isDecided || extractMeta(html, key) == expected);
    }
    bool isDecided = true;
    const auto title = firstMatch(u"<title[^>]*>([^<]+)</title>"_s, html, isDecided);
    const bool hasTitle = title && !title->trimmed().isEmpty();
    require(!isDecided ||
            extractTitle(html) == (hasTitle ? std::optional(title->trimmed()) : std::nullopt));
}

}  // namespace

// The first line is what the server says the page is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes = inputBytes(data, size);
    const qsizetype lineEnd = std::max<qsizetype>(bytes.indexOf('\n'), 0);
    const auto html = decodePage(bytes.sliced(lineEnd), bytes.first(lineEnd));
    if (!html) {
        return 0;
    }
    if (html->size() <= kMostForPatterns) {
        requireSameAsPatterns(*html);
    }
    const auto title = extractMeta(*html, "og:title"_L1);
    require(!title || (!title->isEmpty() && title->size() <= html->size()));
    const auto image = extractMeta(*html, "og:image"_L1);
    const QUrl page(u"https://host/a/b"_s);
    const auto address = image ? resolveImageUrl(*image, page) : std::nullopt;
    require(!address || (address->isValid() && !address->scheme().isEmpty()));
    return 0;
}
