// SPDX-License-Identifier: MIT
#include "platform/text/html_tokenizer.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace quillo {
namespace {

bool isAsciiLetter(QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isHtmlSpace(QChar c) {
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f';
}

bool endsName(QChar c) {
    return isHtmlSpace(c) || c == u'/' || c == u'>';
}

QStringView attributeValue(QStringView text, qsizetype& i) {
    const QChar quote = i < text.size() ? text[i] : QChar();
    if (quote == u'"' || quote == u'\'') {
        const qsizetype start = ++i;
        const qsizetype close = text.indexOf(quote, start);
        const qsizetype end = close < 0 ? text.size() : close;
        i = end + 1;
        return text.sliced(start, end - start);
    }
    const qsizetype start = i;
    while (i < text.size() && !isHtmlSpace(text[i])) {
        ++i;
    }
    return text.sliced(start, i - start);
}

void skipSpace(QStringView text, qsizetype& i) {
    while (i < text.size() && isHtmlSpace(text[i])) {
        ++i;
    }
}

std::optional<char32_t> numericReference(QStringView name) {
    const bool hex = name.size() > 1 && (name[1] == u'x' || name[1] == u'X');
    bool valid = false;
    const uint code = name.sliced(hex ? 2 : 1).toUInt(&valid, hex ? 16 : 10);
    if (!valid || code == 0 || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) {
        return std::nullopt;
    }
    return code;
}

std::optional<char32_t> characterOf(QStringView name) {
    static constexpr std::array<std::pair<QStringView, char32_t>, 6> kNamed{{{u"amp", U'&'},
                                                                             {u"lt", U'<'},
                                                                             {u"gt", U'>'},
                                                                             {u"quot", U'"'},
                                                                             {u"apos", U'\''},
                                                                             {u"nbsp", U' '}}};
    if (name.startsWith(u'#')) {
        return numericReference(name);
    }
    for (const auto& [known, character] : kNamed) {
        if (name == known) {
            return character;
        }
    }
    return std::nullopt;
}

}  // namespace

HtmlTokenizer::HtmlTokenizer(QStringView html)
    : m_html(html), m_lastTagEnd(html.lastIndexOf(u'>')) {}

QChar HtmlTokenizer::at(qsizetype position) const {
    return position < m_html.size() ? m_html[position] : QChar();
}

HtmlToken HtmlTokenizer::next() {
    if (m_position >= m_html.size()) {
        return {};
    }
    if (!beginsMarkup(m_position)) {
        return text();
    }
    const QChar second = at(m_position + 1);
    if (second == u'!' || second == u'?') {
        return m_html.sliced(m_position).startsWith(u"<!--") ? comment() : declaration();
    }
    return second == u'/' ? tag(m_position + 2, HtmlTokenKind::EndTag)
                          : tag(m_position + 1, HtmlTokenKind::StartTag);
}

bool HtmlTokenizer::beginsMarkup(qsizetype position) const {
    if (at(position) != u'<' || position > m_lastTagEnd) {
        return false;
    }
    const QChar second = at(position + 1);
    return isAsciiLetter(second) || second == u'!' || second == u'?' ||
           (second == u'/' && isAsciiLetter(at(position + 2)));
}

HtmlToken HtmlTokenizer::text() {
    const qsizetype start = m_position;
    do {
        const qsizetype open = m_html.indexOf(u'<', m_position + 1);
        m_position = open < 0 ? m_html.size() : open;
    } while (m_position < m_html.size() && !beginsMarkup(m_position));
    return {HtmlTokenKind::Text, m_html.sliced(start, m_position - start)};
}

HtmlToken HtmlTokenizer::tag(qsizetype nameStart, HtmlTokenKind kind) {
    qsizetype nameEnd = nameStart;
    while (nameEnd < m_html.size() && !endsName(m_html[nameEnd])) {
        ++nameEnd;
    }
    const qsizetype end = tagEnd(nameEnd);
    m_position = end + 1;
    return {kind, m_html.sliced(nameStart, nameEnd - nameStart),
            m_html.sliced(nameEnd, end - nameEnd)};
}

// Where the tag closes: at the first ">" outside quotes or, where the quotes do not match up, at
// the first ">" of all. Either way the tag is consumed, so that no part is scanned again and again.
qsizetype HtmlTokenizer::tagEnd(qsizetype from) const {
    QChar quote;
    for (qsizetype i = from; i <= m_lastTagEnd; ++i) {
        const QChar c = m_html[i];
        if (!quote.isNull()) {
            quote = c == quote ? QChar() : quote;
        } else if (c == u'>') {
            return i;
        } else if ((c == u'"' || c == u'\'') && i > from) {
            quote = c;
        }
    }
    const qsizetype first = m_html.indexOf(u'>', from);
    return first < 0 ? m_html.size() : first;
}

HtmlToken HtmlTokenizer::comment() {
    const qsizetype start = m_position + 4;
    const qsizetype close = m_html.indexOf(u"-->", start);
    const qsizetype end = close < 0 ? m_html.size() : close;
    m_position = close < 0 ? m_html.size() : close + 3;
    return {HtmlTokenKind::Comment,
            m_html.sliced(std::min(start, end), end - std::min(start, end))};
}

HtmlToken HtmlTokenizer::declaration() {
    const qsizetype close = m_html.indexOf(u'>', m_position);
    m_position = close < 0 ? m_html.size() : close + 1;
    return {HtmlTokenKind::Comment};
}

void HtmlTokenizer::skipPast(QStringView endTag) {
    while (m_position < m_html.size()) {
        const qsizetype open = m_html.indexOf(u"</", m_position);
        if (open < 0) {
            break;
        }
        m_position = open + 2;
        if (m_html.sliced(m_position).startsWith(endTag, Qt::CaseInsensitive)) {
            const qsizetype close = m_html.indexOf(u'>', m_position);
            m_position = close < 0 ? m_html.size() : close + 1;
            return;
        }
    }
    m_position = m_html.size();
}

void forEachAttribute(QStringView attributes,
                      const std::function<void(QStringView, QStringView)>& use) {
    for (qsizetype i = 0; i < attributes.size();) {
        skipSpace(attributes, i);
        const qsizetype start = i;
        while (i < attributes.size() && !isHtmlSpace(attributes[i]) && attributes[i] != u'=') {
            ++i;
        }
        const QStringView name = attributes.sliced(start, i - start);
        skipSpace(attributes, i);
        QStringView value;
        if (i < attributes.size() && attributes[i] == u'=') {
            skipSpace(attributes, ++i);
            value = attributeValue(attributes, i);
        }
        if (!name.isEmpty()) {
            use(name, value);
        }
    }
}

QString withoutCharacterReferences(QStringView text) {
    constexpr qsizetype kLongestName = 10;
    QString plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'&') {
            const qsizetype end =
                text.sliced(i, std::min(kLongestName, text.size() - i)).indexOf(u';');
            const auto character =
                end < 0 ? std::nullopt : characterOf(text.sliced(i + 1, end - 1));
            if (character) {
                plain.append(QChar::fromUcs4(*character));
                i += end;
                continue;
            }
        }
        plain.append(text[i]);
    }
    return plain;
}

}  // namespace quillo
