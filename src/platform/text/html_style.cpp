// SPDX-License-Identifier: MIT
#include "platform/text/html_style.h"

#include <algorithm>
#include <array>

namespace quillo {
namespace {

using namespace Qt::StringLiterals;

constexpr qsizetype kMaxAttributeUnits = 8192;
constexpr qsizetype kMaxValueUnits = 256;

bool isCharacterProperty(const QString& property) {
    static const std::array kProperties{
        u"color"_s,           u"background"_s,          u"background-color"_s, u"font"_s,
        u"font-family"_s,     u"font-size"_s,           u"font-style"_s,       u"font-weight"_s,
        u"text-decoration"_s, u"text-decoration-line"_s};
    return std::ranges::find(kProperties, property) != kProperties.end();
}

void readWhiteSpace(HtmlStyle& style, const QString& value) {
    style.preservesSpace = value.startsWith(u"pre"_s) && value != u"pre-line"_s;
    style.preservesSpace = *style.preservesSpace || value == u"break-spaces"_s;
}

void readDeclaration(HtmlStyle& style, QStringView declaration) {
    const qsizetype colon = declaration.indexOf(u':');
    if (colon < 0) {
        return;
    }
    const QString property = declaration.first(colon).trimmed().toString().toLower();
    const QString value = declaration.sliced(colon + 1).trimmed().toString();
    const QString lower = value.toLower();
    if (property == u"display"_s) {
        style.hidden = style.hidden || lower.startsWith(u"none"_s);
    } else if (property == u"visibility"_s) {
        style.hidden = style.hidden || lower.startsWith(u"hidden"_s);
    } else if (property == u"white-space"_s || property == u"white-space-collapse"_s) {
        readWhiteSpace(style, lower);
    } else if (property == u"list-style"_s || property == u"list-style-type"_s) {
        style.hasListMarks = !lower.contains(u"none"_s);
    } else if (isCharacterProperty(property)) {
        const bool line = property == u"text-decoration-line"_s;
        style.css += safeDeclaration(line ? u"text-decoration"_s : property, value);
    }
}

}  // namespace

HtmlStyle readStyleAttribute(const QString& attribute) {
    HtmlStyle style;
    const QStringView text =
        QStringView(attribute).first(std::min(attribute.size(), kMaxAttributeUnits));
    for (const QStringView declaration : text.tokenize(u';')) {
        readDeclaration(style, declaration);
    }
    return style;
}

QString safeDeclaration(QStringView property, QStringView value) {
    const auto isHarmless = [](QChar c) {
        return c.isLetterOrNumber() || QStringView(u" #.,%()'\"-_+").contains(c);
    };
    const bool safe = !value.isEmpty() && value.size() <= kMaxValueUnits &&
                      std::ranges::all_of(value, isHarmless) &&
                      !value.contains(u"url"_s, Qt::CaseInsensitive);
    return safe ? property.toString() + u':' + value.toString() + u';' : QString();
}

}  // namespace quillo
