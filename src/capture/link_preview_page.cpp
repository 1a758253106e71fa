// SPDX-License-Identifier: MIT
#include "capture/link_preview_page.h"

#include <algorithm>
#include <array>
#include <utility>

#include "capture/page_charset.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

// The patterns hold no letter that has another form than its two ASCII ones.
QString asciiLowered(QString text) {
    for (QChar& c : text) {
        if (c >= u'A' && c <= u'Z') {
            c = QChar(char16_t(c.unicode() + (u'a' - u'A')));
        }
    }
    return text;
}

/// The start and the end of a value in the page.
struct Span {
    qsizetype start;
    qsizetype end;
};

/// Finds meta elements that say something about one key, one pattern at a time. A regular
/// expression would take cubic time on pages that are made for it; here a page is cut at each ">",
/// which no pattern's gaps can pass, and each piece is looked at once.
class MetaSearch final {
public:
    MetaSearch(QStringView lowered, const QString& keyText) : m_page(lowered), m_keyText(keyText) {}

    /// <meta[^>]+KEYTEXT[^>]+content="([^"]*)"
    [[nodiscard]] std::optional<Span> keyFirst() const { return search(&MetaSearch::keyFirstIn); }
    /// <meta[^>]+content="([^"]*)"[^>]+KEYTEXT
    [[nodiscard]] std::optional<Span> contentFirst() const {
        return search(&MetaSearch::contentFirstIn);
    }

private:
    using Finder = std::optional<Span> (MetaSearch::*)(Span piece) const;

    // In one piece the leftmost element leaves the most room for the rest.
    [[nodiscard]] std::optional<Span> search(Finder finder) const {
        qsizetype from = 0;
        while (true) {
            const qsizetype open = m_page.indexOf(kOpening, from);
            if (open < 0) {
                return std::nullopt;
            }
            const qsizetype afterOpening = open + kOpening.size();
            const qsizetype end = endOfPiece(afterOpening);
            if (const auto found = (this->*finder)({afterOpening + 1, end})) {
                return found;
            }
            from = end;
        }
    }

    [[nodiscard]] qsizetype endOfPiece(qsizetype from) const {
        const qsizetype end = m_page.indexOf(u'>', from);
        return end < 0 ? m_page.size() : end;
    }

    // The last place in the piece where the words stand before `end`.
    [[nodiscard]] qsizetype lastBefore(QStringView words, Span piece, qsizetype end) const {
        const qsizetype room = end - piece.start;
        const qsizetype found =
            room < words.size() ? -1 : m_page.sliced(piece.start, room).lastIndexOf(words);
        return found < 0 ? -1 : piece.start + found;
    }

    // The gaps are greedy: the last content that is closed counts, and before it a key.
    [[nodiscard]] std::optional<Span> keyFirstIn(Span piece) const {
        qsizetype content = lastBefore(kContent, piece, piece.end);
        if (content >= 0 && m_page.indexOf(u'"', content + kContent.size()) < 0) {
            // Its own mark closes the one before.
            content = lastBefore(kContent, piece, content);
        }
        if (content < 0 || lastBefore(m_keyText, piece, content - 1) < 0) {
            return std::nullopt;
        }
        const qsizetype start = content + kContent.size();
        return Span{start, m_page.indexOf(u'"', start)};
    }

    [[nodiscard]] std::optional<Span> contentFirstIn(Span piece) const {
        const qsizetype lastKey = lastBefore(m_keyText, piece, piece.end);
        qsizetype content = lastBefore(kContent, piece, piece.end);
        while (content >= 0) {
            const qsizetype start = content + kContent.size();
            const qsizetype close = m_page.indexOf(u'"', start);
            const bool isMatch = close < piece.end ? lastKey >= close + 2 : keyFollows(close);
            if (close >= 0 && isMatch) {
                return Span{start, close};
            }
            content = lastBefore(kContent, piece, content);
        }
        return std::nullopt;
    }

    // Whether the key stands after a closing mark outside the piece, with a gap and no ">" between;
    // at most the last content of a piece asks.
    [[nodiscard]] bool keyFollows(qsizetype close) const {
        const qsizetype end = endOfPiece(close + 1);
        return lastBefore(m_keyText, {close + 2, end}, end) >= 0;
    }

    static constexpr QStringView kOpening = u"<meta";
    static constexpr QStringView kContent = u"content=\"";

    QStringView m_page;
    QString m_keyText;
};

// One pass each, in this order: what "&amp;" gives may be a reference that comes after it.
QString withReferencesResolved(QString text) {
    static constexpr std::array<std::pair<QLatin1StringView, QChar>, 5> kReferences = {{
        {QLatin1StringView("&amp;"), u'&'},
        {QLatin1StringView("&lt;"), u'<'},
        {QLatin1StringView("&gt;"), u'>'},
        {QLatin1StringView("&quot;"), u'"'},
        {QLatin1StringView("&#39;"), u'\''},
    }};
    for (const auto& [reference, character] : kReferences) {
        text.replace(reference, QString(character));
    }
    return text;
}

}  // namespace

std::optional<QString> decodePage(const QByteArray& bytes, const QByteArray& contentType) {
    // What is ASCII is UTF-8 too.
    if (auto text = decodeUtf8(bytes)) {
        return text;
    }
    const QByteArray charset = namedCharset(bytes, contentType);
    const bool isUtf8 = charset == "utf-8" || charset == "utf8";
    return charset.isEmpty() || isUtf8 ? std::nullopt : decodeCharset(bytes, charset);
}

std::optional<QString> extractMeta(const QString& html, QLatin1StringView key) {
    const QString lowered = asciiLowered(html);
    for (const QLatin1StringView attribute : {"property"_L1, "name"_L1}) {
        const MetaSearch search(lowered, QString(attribute) + u"=\""_s + asciiLowered(key) + u'"');
        for (const auto& found : {search.keyFirst(), search.contentFirst()}) {
            if (!found) {
                continue;
            }
            QString value =
                withReferencesResolved(html.sliced(found->start, found->end - found->start));
            if (!value.isEmpty()) {
                return value;
            }
        }
    }
    return std::nullopt;
}

std::optional<QString> extractTitle(const QString& html) {
    static const QString kOpening = u"<title"_s;
    static const QString kClosing = u"</title>"_s;
    const QString lowered = asciiLowered(html);
    qsizetype from = 0;
    while (true) {
        const qsizetype open = lowered.indexOf(kOpening, from);
        const qsizetype tagEnd = open < 0 ? -1 : lowered.indexOf(u'>', open + kOpening.size());
        const qsizetype textEnd = tagEnd < 0 ? -1 : lowered.indexOf(u'<', tagEnd);
        if (textEnd < 0) {
            return std::nullopt;
        }
        const qsizetype start = tagEnd + 1;
        if (textEnd > start && QStringView(lowered).sliced(textEnd).startsWith(kClosing)) {
            QString title = html.sliced(start, textEnd - start).trimmed();
            return title.isEmpty() ? std::nullopt : std::optional(std::move(title));
        }
        from = tagEnd;
    }
}

std::optional<QUrl> resolveImageUrl(const QString& text, const QUrl& page) {
    const QUrl own(text);
    if (!own.isValid()) {
        return std::nullopt;
    }
    QUrl address = own.scheme().isEmpty() ? page.resolved(own) : own;
    return address.isValid() && !address.scheme().isEmpty() ? std::optional(std::move(address))
                                                            : std::nullopt;
}

}  // namespace quillo
