// SPDX-License-Identifier: MIT
#include "platform/rich_text.h"

#include <QStringList>
#include <QUrl>
#include <algorithm>
#include <array>

namespace quillo {
namespace {

using namespace Qt::StringLiterals;

constexpr auto kParagraphStart = u"<p style=\"margin:0;white-space:pre-wrap\">";

bool isSafeLink(const QString& link) {
    static const std::array kSchemes{u"http"_s, u"https"_s, u"mailto"_s, u"file"_s};
    return std::ranges::find(kSchemes, QUrl(link).scheme()) != kSchemes.end();
}

QString escaped(QStringView text) {
    QString html;
    bool afterSpace = true;
    for (const QChar c : text) {
        const bool isSpace = c == u' ';
        if (isSpace && afterSpace) {
            html += u"&nbsp;"_s;
        } else if (c.unicode() >= 0x20 || c == u'\t') {
            html += c == u'<' || c == u'>' || c == u'&' || c == u'"' ? QString(c).toHtmlEscaped()
                                                                     : QString(c);
        }
        afterSpace = isSpace;
    }
    return html;
}

QString familyForCss(const QString& family) {
    QString name = family;
    name.removeIf([](QChar c) { return !c.isLetterOrNumber() && !u" -_+.()"_s.contains(c); });
    return name.trimmed();
}

QString cssOf(const TextStyle& style) {
    QString css;
    if (style.foreground) {
        css += u"color:"_s + style.foreground->name() + u';';
    }
    if (style.background) {
        css += u"background-color:"_s + style.background->name() + u';';
    }
    if (const QString family = familyForCss(style.fontFamily); !family.isEmpty()) {
        css += u"font-family:'"_s + family + u"';"_s;
    }
    if (style.pointSize > 0) {
        css += u"font-size:"_s + QString::number(style.pointSize) + u"pt;"_s;
    }
    return css;
}

struct Tags {
    QString open;
    QString close;

    void add(const QString& element, const QString& attributes = {}) {
        open += u'<' + element + attributes + u'>';
        close.prepend(u"</"_s + element + u'>');
    }
};

Tags tagsOf(const TextStyle& style) {
    Tags tags;
    if (isSafeLink(style.link)) {
        tags.add(u"a"_s, u" href=\""_s + style.link.toHtmlEscaped() + u'"');
    }
    if (const QString css = cssOf(style); !css.isEmpty()) {
        tags.add(u"span"_s, u" style=\""_s + css + u'"');
    }
    const std::array<std::pair<bool, QString>, 4> simple{{{style.bold, u"b"_s},
                                                          {style.italic, u"i"_s},
                                                          {style.underline, u"u"_s},
                                                          {style.strikeOut, u"s"_s}}};
    for (const auto& [isOn, element] : simple) {
        if (isOn) {
            tags.add(element);
        }
    }
    return tags;
}

/// Writes paragraphs: each line feed ends one.
class HtmlWriter final {
public:
    void append(QStringView text, const Tags& tags) {
        qsizetype start = 0;
        while (start <= text.size()) {
            const qsizetype feed = text.indexOf(u'\n', start);
            const qsizetype end = feed < 0 ? text.size() : feed;
            if (end > start) {
                openParagraph();
                m_html += tags.open + escaped(text.sliced(start, end - start)) + tags.close;
                m_isEmpty = false;
            }
            if (feed < 0) {
                break;
            }
            openParagraph();
            closeParagraph();
            start = feed + 1;
        }
    }

    [[nodiscard]] QString take() {
        closeParagraph();
        return std::move(m_html);
    }

private:
    void openParagraph() {
        if (!m_isOpen) {
            m_html += kParagraphStart;
            m_isOpen = true;
            m_isEmpty = true;
        }
    }

    void closeParagraph() {
        if (m_isOpen) {
            m_html += m_isEmpty ? u"<br></p>\n"_s : u"</p>\n"_s;
            m_isOpen = false;
        }
    }

    QString m_html;
    bool m_isOpen = false;
    bool m_isEmpty = true;
};

}  // namespace

QByteArray htmlFromStyledText(const StyledText& text) {
    HtmlWriter writer;
    qsizetype end = 0;
    for (const StyledRun& run : text.runs) {
        const qsizetype start = std::clamp<qsizetype>(run.start, end, text.text.size());
        const qsizetype length =
            std::clamp<qsizetype>(run.start + run.length - start, 0, text.text.size() - start);
        writer.append(QStringView(text.text).sliced(end, start - end), {});
        writer.append(QStringView(text.text).sliced(start, length), tagsOf(run.style));
        end = start + length;
    }
    writer.append(QStringView(text.text).sliced(end), {});
    const QString html = u"<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"></head><body>\n"_s +
                         writer.take() + u"</body></html>\n"_s;
    return html.toUtf8();
}

}  // namespace quillo
