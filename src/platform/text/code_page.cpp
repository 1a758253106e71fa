// SPDX-License-Identifier: MIT
#include "platform/text/code_page.h"

#include <algorithm>
#include <array>
#include <string>

namespace quillo {
namespace {

struct CharsetPage {
    int charset;
    int codePage;
};

constexpr std::array<CharsetPage, 20> kCharsets{{
    {0, kWesternCodePage},
    {2, kSymbolCodePage},
    {77, 10000},
    {78, 932},
    {128, 932},
    {129, 949},
    {134, 936},
    {136, 950},
    {161, 1253},
    {162, 1254},
    {163, 1258},
    {177, 1255},
    {178, 1256},
    {186, 1257},
    {204, 1251},
    {222, 874},
    {238, 1250},
    {254, 437},
    {255, 850},
    {130, 949},
}};

// A document must not make the table of open converters grow without end.
constexpr std::size_t kMaxConverters = 32;

std::string converterName(int codePage) {
    switch (codePage) {
        case 10000:
            return "macintosh";
        case 65001:
            return "UTF-8";
        default:
            return "cp" + std::to_string(codePage);
    }
}

}  // namespace

int codePageOfCharset(int charset) {
    const auto* found = std::ranges::find(kCharsets, charset, &CharsetPage::charset);
    return found == kCharsets.end() ? 0 : found->codePage;
}

QChar symbolFromByte(int byte) {
    switch (byte) {
        case 0xA7:
            return u'▪';
        case 0xA8:
            return u'◻';
        case 0xB7:
            return u'•';
        case 0xD8:
            return u'➢';
        case 0xFC:
            return u'✓';
        default:
            return QChar(static_cast<char16_t>(byte));
    }
}

QString CodePageDecoder::decode(int codePage, QByteArrayView bytes) {
    if (codePage == kSymbolCodePage) {
        QString text;
        for (const char byte : bytes) {
            text.append(symbolFromByte(static_cast<unsigned char>(byte)));
        }
        return text;
    }
    const bool ascii = std::ranges::all_of(bytes, [](char byte) { return byte > 0; });
    UConverter* const source = ascii ? nullptr : converter(codePage);
    if (source == nullptr) {
        return QString::fromLatin1(bytes);
    }
    QString text(bytes.size() * 2, Qt::Uninitialized);
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = ucnv_toUChars(source, reinterpret_cast<UChar*>(text.data()),
                                         static_cast<int32_t>(text.size()), bytes.data(),
                                         static_cast<int32_t>(bytes.size()), &status);
    text.resize(U_SUCCESS(status) ? std::min<qsizetype>(length, text.size()) : 0);
    return text;
}

CodePageDecoder::Converter CodePageDecoder::open(int codePage) {
    UErrorCode status = U_ZERO_ERROR;
    Converter converter(ucnv_open(converterName(codePage).c_str(), &status));
    if (U_SUCCESS(status) && converter) {
        return converter;
    }
    status = U_ZERO_ERROR;
    return Converter(ucnv_open("windows-1252", &status));
}

UConverter* CodePageDecoder::converter(int codePage) {
    auto known = m_converters.find(codePage);
    if (known == m_converters.end()) {
        if (m_converters.size() >= kMaxConverters) {
            m_converters.clear();
        }
        known = m_converters.emplace(codePage, open(codePage)).first;
    }
    ucnv_reset(known->second.get());
    return known->second.get();
}

}  // namespace quillo
