// SPDX-License-Identifier: MIT
#include "paste/text_transformation_service.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <QTextBoundaryFinder>
#include <algorithm>
#include <limits>

#include "paste/url_sanitizer.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

// A first character is looked for in this much: a boundary finder reads all that it is given.
constexpr qsizetype kFirstCharacterUnits = 256;

enum class CaseMapping { Lower, Upper, Title };

QString caseMapped(const QString& text, CaseMapping mapping, const QByteArray& localeName) {
    if (text.size() > std::numeric_limits<int32_t>::max()) {
        return text;  // More than an ICU string holds.
    }
    const icu::Locale locale(localeName.constData());
    icu::UnicodeString mapped(false, reinterpret_cast<const char16_t*>(text.utf16()),
                              int32_t(text.size()));
    switch (mapping) {
        case CaseMapping::Lower:
            mapped.toLower(locale);
            break;
        case CaseMapping::Upper:
            mapped.toUpper(locale);
            break;
        case CaseMapping::Title:
            mapped.toTitle(nullptr, locale);
            break;
    }
    return mapped.isBogus() ? text : QString::fromUtf16(mapped.getBuffer(), mapped.length());
}

QString plainText(QString text) {
    text.replace(u'\u00a0', u' ').replace(u'\u2009', u' ');
    return text.remove(u'\u200b').remove(u'\ufeff').trimmed();
}

// Each step looks over the text once, so three spaces become two.
QString withoutLineBreaks(QString text) {
    return text.replace(u'\n', u' ').replace(u'\r', u' ').replace(u"  "_s, u" "_s);
}

}  // namespace

TextTransformationService::TextTransformationService(const QLocale& locale)
    : m_locale(locale.name().toLatin1()) {}

const TextTransformationService& TextTransformationService::shared() {
    static const TextTransformationService service;
    return service;
}

QString TextTransformationService::apply(TextTransformation transformation,
                                         const QString& text) const {
    switch (transformation) {
        case TextTransformation::PlainText:
            return plainText(text);
        case TextTransformation::Lowercase:
            return caseMapped(text, CaseMapping::Lower, m_locale);
        case TextTransformation::Uppercase:
            return caseMapped(text, CaseMapping::Upper, m_locale);
        case TextTransformation::TitleCase:
            return caseMapped(text, CaseMapping::Title, m_locale);
        case TextTransformation::SentenceCase:
            return sentenceCased(text);
        case TextTransformation::Trim:
            return text.trimmed();
        case TextTransformation::UrlSanitize:
            return sanitizedUrl(text);
        case TextTransformation::RemoveLineBreaks:
            return withoutLineBreaks(text);
        case TextTransformation::AddLineBreaks:
            return QString(text).replace(u". "_s, u".\n"_s);
    }
    return text;
}

// A character is what a person takes for one (Unicode Annex 29), accents included.
QString TextTransformationService::sentenceCased(const QString& text) const {
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text.left(kFirstCharacterUnits));
    const qsizetype end = std::max<qsizetype>(characters.toNextBoundary(), 0);
    return caseMapped(text.left(end), CaseMapping::Upper, m_locale) +
           caseMapped(text.mid(end), CaseMapping::Lower, m_locale);
}

}  // namespace quillo
