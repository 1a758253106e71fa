// SPDX-License-Identifier: MIT
#include "platform/text/rtf_keywords.h"

#include "platform/text/code_page.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quillo {
namespace {

struct Entry {
    std::string_view word;
    RtfAction action;
    int value = 0;
};

using enum RtfAction;

// Sorted by word. The table names what the text needs; formatting of pages and paragraphs is
// left out on purpose.
constexpr std::array kKeywords = {
    Entry{"annotation", SkipGroup},
    Entry{"ansi", DocumentCharset, kWesternCodePage},
    Entry{"ansicpg", CodePage},
    Entry{"atnauthor", SkipGroup},
    Entry{"atnid", SkipGroup},
    Entry{"author", SkipGroup},
    Entry{"b", Bold},
    Entry{"bkmkend", SkipGroup},
    Entry{"bkmkstart", SkipGroup},
    Entry{"blue", Blue},
    Entry{"bullet", Character, u'•'},
    Entry{"buptim", SkipGroup},
    Entry{"category", SkipGroup},
    Entry{"cb", Background},
    Entry{"cell", Cell},
    Entry{"cf", Foreground},
    Entry{"chcbpat", Background},
    Entry{"colorschememapping", SkipGroup},
    Entry{"colortbl", ColorTable},
    Entry{"column", Paragraph},
    Entry{"comment", SkipGroup},
    Entry{"company", SkipGroup},
    Entry{"cpg", CodePage},
    Entry{"creatim", SkipGroup},
    Entry{"datafield", SkipGroup},
    Entry{"datastore", SkipGroup},
    Entry{"deff", DefaultFont},
    Entry{"do", SkipGroup},
    Entry{"doccomm", SkipGroup},
    Entry{"docvar", SkipGroup},
    Entry{"emdash", Character, u'—'},
    Entry{"emspace", Character, u'\u2003'},
    Entry{"endash", Character, u'–'},
    Entry{"enspace", Character, u'\u2002'},
    Entry{"f", Font},
    Entry{"fcharset", FontCharset},
    Entry{"field", Field},
    Entry{"filetbl", SkipGroup},
    Entry{"fldinst", FieldInstruction},
    Entry{"fldrslt", FieldResult},
    Entry{"fonttbl", FontTable},
    Entry{"footer", SkipGroup},
    Entry{"footerf", SkipGroup},
    Entry{"footerl", SkipGroup},
    Entry{"footerr", SkipGroup},
    Entry{"footnote", SkipGroup},
    Entry{"formfield", SkipGroup},
    Entry{"fs", FontSize},
    Entry{"ftncn", SkipGroup},
    Entry{"ftnsep", SkipGroup},
    Entry{"ftnsepc", SkipGroup},
    Entry{"generator", SkipGroup},
    Entry{"green", Green},
    Entry{"header", SkipGroup},
    Entry{"headerf", SkipGroup},
    Entry{"headerl", SkipGroup},
    Entry{"headerr", SkipGroup},
    Entry{"highlight", Background},
    Entry{"i", Italic},
    Entry{"info", SkipGroup},
    Entry{"keywords", SkipGroup},
    Entry{"latentstyles", SkipGroup},
    Entry{"ldblquote", Character, u'“'},
    Entry{"line", Paragraph},
    Entry{"listoverridetable", SkipGroup},
    Entry{"listtable", SkipGroup},
    Entry{"listtext", KeepGroup},
    Entry{"lquote", Character, u'‘'},
    Entry{"ltrmark", Character, u'\u200E'},
    Entry{"mac", DocumentCharset, 10000},
    Entry{"manager", SkipGroup},
    Entry{"nestcell", Cell},
    Entry{"nestrow", NestedRow},
    Entry{"nesttableprops", KeepGroup},
    Entry{"nonesttables", SkipGroup},
    Entry{"nonshppict", SkipGroup},
    Entry{"objdata", SkipGroup},
    Entry{"object", SkipGroup},
    Entry{"operator", SkipGroup},
    Entry{"page", Paragraph},
    Entry{"panose", SkipGroup},
    Entry{"par", Paragraph},
    Entry{"pc", DocumentCharset, 437},
    Entry{"pca", DocumentCharset, 850},
    Entry{"pict", SkipGroup},
    Entry{"plain", Plain},
    Entry{"pntext", KeepGroup},
    Entry{"printim", SkipGroup},
    Entry{"private", SkipGroup},
    Entry{"qmspace", Character, u'\u2005'},
    Entry{"rdblquote", Character, u'”'},
    Entry{"red", Red},
    Entry{"revtbl", SkipGroup},
    Entry{"revtim", SkipGroup},
    Entry{"row", Row},
    Entry{"rquote", Character, u'’'},
    Entry{"rsidtbl", SkipGroup},
    Entry{"rtlmark", Character, u'\u200F'},
    Entry{"rxe", SkipGroup},
    Entry{"sect", Section},
    Entry{"shppict", SkipGroup},
    Entry{"softline", Paragraph},
    Entry{"strike", StrikeOut},
    Entry{"striked", StrikeOut},
    Entry{"stylesheet", SkipGroup},
    Entry{"subject", SkipGroup},
    Entry{"tab", Character, u'\t'},
    Entry{"tc", SkipGroup},
    Entry{"template", SkipGroup},
    Entry{"themedata", SkipGroup},
    Entry{"title", SkipGroup},
    Entry{"txe", SkipGroup},
    Entry{"u", Unicode},
    Entry{"uc", UnicodeSkip},
    Entry{"ud", UnicodeHalf},
    Entry{"ul", Underline},
    Entry{"uld", Underline},
    Entry{"uldash", Underline},
    Entry{"uldashd", Underline},
    Entry{"uldashdd", Underline},
    Entry{"uldb", Underline},
    Entry{"ulhwave", Underline},
    Entry{"ulldash", Underline},
    Entry{"ulnone", UnderlineOff},
    Entry{"ulth", Underline},
    Entry{"ulthd", Underline},
    Entry{"ulthdash", Underline},
    Entry{"ulthdashd", Underline},
    Entry{"ulthdashdd", Underline},
    Entry{"ulthldash", Underline},
    Entry{"ululdbwave", Underline},
    Entry{"ulw", Underline},
    Entry{"ulwave", Underline},
    Entry{"upr", UnicodePair},
    Entry{"userprops", SkipGroup},
    Entry{"v", Hidden},
    Entry{"webhidden", Hidden},
    Entry{"xe", SkipGroup},
    Entry{"xmlnstbl", SkipGroup},
    Entry{"zwbo", Character, u'\u200B'},
    Entry{"zwj", Character, u'\u200D'},
    Entry{"zwnbo", Character, u'\u2060'},
    Entry{"zwnj", Character, u'\u200C'},
};

static_assert(std::ranges::is_sorted(kKeywords, {}, &Entry::word));

}  // namespace

RtfKeyword rtfKeyword(QByteArrayView word) {
    const std::string_view wanted(word.data(), static_cast<std::size_t>(word.size()));
    const auto* found = std::ranges::lower_bound(kKeywords, wanted, {}, &Entry::word);
    if (found == kKeywords.end() || found->word != wanted) {
        return {};
    }
    return {found->action, found->value};
}

}  // namespace quillo
