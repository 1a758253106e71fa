// SPDX-License-Identifier: MIT
#include "model/search/text_folding.h"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <algorithm>

namespace quillo {
namespace {

bool isAscii(QStringView text) {
    return std::all_of(text.utf16(), text.utf16() + text.size(),
                       [](char16_t unit) { return unit < 0x80; });
}

QByteArray foldedAscii(QStringView text) {
    QByteArray result(text.size(), Qt::Uninitialized);
    std::transform(text.utf16(), text.utf16() + text.size(), result.data(), [](char16_t unit) {
        return char(unit >= 'A' && unit <= 'Z' ? unit + ('a' - 'A') : unit);
    });
    return result;
}

icu::UnicodeString normalized(const icu::UnicodeString& text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* nfc = icu::Normalizer2::getNFCInstance(status);
    icu::UnicodeString result = U_SUCCESS(status) ? nfc->normalize(text, status) : text;
    return U_SUCCESS(status) ? result : text;
}

}  // namespace

CaseFolding caseFoldingFor(const QLocale& locale) {
    const bool isTurkic =
        locale.language() == QLocale::Turkish || locale.language() == QLocale::Azerbaijani;
    return isTurkic ? CaseFolding::Turkic : CaseFolding::Default;
}

QByteArray foldedText(QStringView text, CaseFolding folding) {
    const bool hasOtherI = folding == CaseFolding::Turkic && text.contains(u'I');
    if (!hasOtherI && isAscii(text)) {
        return foldedAscii(text);
    }
    // An alias: ICU copies the text when it changes it.
    icu::UnicodeString folded =
        normalized(icu::UnicodeString(false, text.utf16(), int32_t(text.size())));
    folded.foldCase(folding == CaseFolding::Turkic ? U_FOLD_CASE_EXCLUDE_SPECIAL_I
                                                   : U_FOLD_CASE_DEFAULT);
    folded = normalized(folded);
    return QStringView(folded.getBuffer(), folded.length()).toUtf8();
}

}  // namespace quillo
