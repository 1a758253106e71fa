// SPDX-License-Identifier: MIT
#include "platform/text/html_elements.h"

#include <algorithm>
#include <array>

namespace quillo {
namespace {

using namespace Qt::StringLiterals;
using enum HtmlRole;

// Sorted by name.
constexpr std::array kElements = {
    HtmlElement{QLatin1StringView("a"), Inline},
    HtmlElement{QLatin1StringView("address"), Block},
    HtmlElement{QLatin1StringView("applet"), Hidden},
    HtmlElement{QLatin1StringView("area"), Void},
    HtmlElement{QLatin1StringView("article"), Block},
    HtmlElement{QLatin1StringView("aside"), Block},
    HtmlElement{QLatin1StringView("audio"), Hidden},
    HtmlElement{QLatin1StringView("b"), Inline, QLatin1StringView("font-weight:bold")},
    HtmlElement{QLatin1StringView("base"), Void},
    HtmlElement{QLatin1StringView("basefont"), Void},
    HtmlElement{QLatin1StringView("bgsound"), Void},
    HtmlElement{QLatin1StringView("blockquote"), Block},
    HtmlElement{QLatin1StringView("body"), Block},
    HtmlElement{QLatin1StringView("br"), LineBreak},
    HtmlElement{QLatin1StringView("canvas"), Hidden},
    HtmlElement{QLatin1StringView("caption"), Block},
    HtmlElement{QLatin1StringView("center"), Block},
    HtmlElement{QLatin1StringView("cite"), Inline, QLatin1StringView("font-style:italic")},
    HtmlElement{QLatin1StringView("code"), Inline, QLatin1StringView("font-family:monospace")},
    HtmlElement{QLatin1StringView("col"), Void},
    HtmlElement{QLatin1StringView("colgroup"), Hidden},
    HtmlElement{QLatin1StringView("datalist"), Hidden},
    HtmlElement{QLatin1StringView("dd"), Block},
    HtmlElement{QLatin1StringView("del"), Inline,
                QLatin1StringView("text-decoration:line-through")},
    HtmlElement{QLatin1StringView("details"), Block},
    HtmlElement{QLatin1StringView("dfn"), Inline, QLatin1StringView("font-style:italic")},
    HtmlElement{QLatin1StringView("dialog"), Block},
    HtmlElement{QLatin1StringView("dir"), List},
    HtmlElement{QLatin1StringView("div"), Block},
    HtmlElement{QLatin1StringView("dl"), Block},
    HtmlElement{QLatin1StringView("dt"), Block},
    HtmlElement{QLatin1StringView("em"), Inline, QLatin1StringView("font-style:italic")},
    HtmlElement{QLatin1StringView("embed"), Void},
    HtmlElement{QLatin1StringView("fieldset"), Block},
    HtmlElement{QLatin1StringView("figcaption"), Block},
    HtmlElement{QLatin1StringView("figure"), Block},
    HtmlElement{QLatin1StringView("font"), Inline},
    HtmlElement{QLatin1StringView("footer"), Block},
    HtmlElement{QLatin1StringView("form"), Block},
    HtmlElement{QLatin1StringView("frame"), Void},
    HtmlElement{QLatin1StringView("h1"), Block, QLatin1StringView("font-weight:bold")},
    HtmlElement{QLatin1StringView("h2"), Block, QLatin1StringView("font-weight:bold")},
    HtmlElement{QLatin1StringView("h3"), Block, QLatin1StringView("font-weight:bold")},
    HtmlElement{QLatin1StringView("h4"), Block, QLatin1StringView("font-weight:bold")},
    HtmlElement{QLatin1StringView("h5"), Block, QLatin1StringView("font-weight:bold")},
    HtmlElement{QLatin1StringView("h6"), Block, QLatin1StringView("font-weight:bold")},
    HtmlElement{QLatin1StringView("header"), Block},
    HtmlElement{QLatin1StringView("hgroup"), Block},
    HtmlElement{QLatin1StringView("hr"), Block},
    HtmlElement{QLatin1StringView("html"), Block},
    HtmlElement{QLatin1StringView("i"), Inline, QLatin1StringView("font-style:italic")},
    HtmlElement{QLatin1StringView("iframe"), RawText},
    HtmlElement{QLatin1StringView("img"), Void},
    HtmlElement{QLatin1StringView("input"), Void},
    HtmlElement{QLatin1StringView("ins"), Inline, QLatin1StringView("text-decoration:underline")},
    HtmlElement{QLatin1StringView("kbd"), Inline, QLatin1StringView("font-family:monospace")},
    HtmlElement{QLatin1StringView("legend"), Block},
    HtmlElement{QLatin1StringView("li"), ListItem},
    HtmlElement{QLatin1StringView("link"), Void},
    HtmlElement{QLatin1StringView("listing"), Block, QLatin1StringView("font-family:monospace"),
                true},
    HtmlElement{QLatin1StringView("main"), Block},
    HtmlElement{QLatin1StringView("map"), Hidden},
    HtmlElement{QLatin1StringView("math"), Hidden},
    HtmlElement{QLatin1StringView("menu"), List},
    HtmlElement{QLatin1StringView("meta"), Void},
    HtmlElement{QLatin1StringView("nav"), Block},
    HtmlElement{QLatin1StringView("noembed"), RawText},
    HtmlElement{QLatin1StringView("noframes"), RawText},
    HtmlElement{QLatin1StringView("noscript"), RawText},
    HtmlElement{QLatin1StringView("object"), Hidden},
    HtmlElement{QLatin1StringView("ol"), OrderedList},
    HtmlElement{QLatin1StringView("p"), Paragraph},
    HtmlElement{QLatin1StringView("param"), Void},
    HtmlElement{QLatin1StringView("picture"), Hidden},
    HtmlElement{QLatin1StringView("pre"), Block, QLatin1StringView("font-family:monospace"), true},
    HtmlElement{QLatin1StringView("s"), Inline, QLatin1StringView("text-decoration:line-through")},
    HtmlElement{QLatin1StringView("samp"), Inline, QLatin1StringView("font-family:monospace")},
    HtmlElement{QLatin1StringView("script"), RawText},
    HtmlElement{QLatin1StringView("section"), Block},
    HtmlElement{QLatin1StringView("select"), Hidden},
    HtmlElement{QLatin1StringView("source"), Void},
    HtmlElement{QLatin1StringView("strike"), Inline,
                QLatin1StringView("text-decoration:line-through")},
    HtmlElement{QLatin1StringView("strong"), Inline, QLatin1StringView("font-weight:bold")},
    HtmlElement{QLatin1StringView("style"), RawText},
    HtmlElement{QLatin1StringView("summary"), Block},
    HtmlElement{QLatin1StringView("svg"), Hidden},
    HtmlElement{QLatin1StringView("table"), Table},
    HtmlElement{QLatin1StringView("td"), Cell},
    HtmlElement{QLatin1StringView("template"), Hidden},
    HtmlElement{QLatin1StringView("textarea"), RawText},
    HtmlElement{QLatin1StringView("th"), Cell, QLatin1StringView("font-weight:bold")},
    HtmlElement{QLatin1StringView("title"), RawText},
    HtmlElement{QLatin1StringView("tr"), Row},
    HtmlElement{QLatin1StringView("track"), Void},
    HtmlElement{QLatin1StringView("tt"), Inline, QLatin1StringView("font-family:monospace")},
    HtmlElement{QLatin1StringView("u"), Inline, QLatin1StringView("text-decoration:underline")},
    HtmlElement{QLatin1StringView("ul"), List},
    HtmlElement{QLatin1StringView("var"), Inline, QLatin1StringView("font-style:italic")},
    HtmlElement{QLatin1StringView("video"), Hidden},
    HtmlElement{QLatin1StringView("wbr"), Void},
    HtmlElement{QLatin1StringView("xml"), Hidden},
    HtmlElement{QLatin1StringView("xmp"), RawText},
};

constexpr HtmlElement kUnknown{QLatin1StringView("")};

constexpr qsizetype kLongestName = 10;

}  // namespace

const HtmlElement& htmlElement(QStringView name) {
    if (name.size() > kLongestName) {
        return kUnknown;
    }
    const auto* found = std::lower_bound(
        kElements.begin(), kElements.end(), name, [](const HtmlElement& known, QStringView wanted) {
            return known.name.compare(wanted, Qt::CaseInsensitive) < 0;
        });
    const bool known =
        found != kElements.end() && found->name.compare(name, Qt::CaseInsensitive) == 0;
    return known ? *found : kUnknown;
}

bool isBlockRole(HtmlRole role) {
    return role == Block || role == Paragraph || role == List || role == OrderedList ||
           role == ListItem || role == Table;
}

}  // namespace quillo
