// SPDX-License-Identifier: MIT
#include "capture/page_charset.h"

#include <unicode/ucnv.h>

#include <QStringDecoder>
#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <utility>

namespace quillo {
namespace {

constexpr qsizetype kBytesToName = 4096;
constexpr qsizetype kLongestName = 40;

struct CloseConverter {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

bool standsInName(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == ':' ||
           c == '.';
}

// The name after "charset=", with or without quotation marks, in lower case.
QByteArray nameAfterCharset(const QByteArray& text) {
    const QByteArray lowered = text.toLower();
    constexpr QByteArrayView kWord = "charset";
    for (qsizetype at = lowered.indexOf(kWord); at >= 0; at = lowered.indexOf(kWord, at + 1)) {
        const QByteArray rest = lowered.sliced(at + kWord.size()).trimmed();
        if (!rest.startsWith('=')) {
            continue;
        }
        const QByteArray value = rest.sliced(1).trimmed();
        const bool isQuoted = value.startsWith('"') || value.startsWith('\'');
        const auto* const start = value.cbegin() + (isQuoted ? 1 : 0);
        const auto* const end = std::find_if_not(start, value.cend(), standsInName);
        return QByteArray(start, std::min(qsizetype(end - start), kLongestName));
    }
    return {};
}

// Names under which the web means more than the standard does (WHATWG Encoding, 4.2).
QByteArray widened(const QByteArray& name) {
    static constexpr std::array<std::pair<QByteArrayView, QByteArrayView>, 12> kWider = {{
        {"iso-8859-1", "windows-1252"},
        {"iso8859-1", "windows-1252"},
        {"latin1", "windows-1252"},
        {"us-ascii", "windows-1252"},
        {"ascii", "windows-1252"},
        {"iso-8859-9", "windows-1254"},
        {"gb2312", "gb18030"},
        {"gbk", "gb18030"},
        {"shift_jis", "windows-31j"},
        {"shift-jis", "windows-31j"},
        {"sjis", "windows-31j"},
        {"euc-kr", "windows-949"},
    }};
    const auto* found = std::ranges::find(kWider, QByteArrayView(name),
                                          [](const auto& pair) { return pair.first; });
    return found == kWider.end() ? name : found->second.toByteArray();
}

}  // namespace

std::optional<QString> decodeUtf8(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(text));
}

QByteArray namedCharset(const QByteArray& bytes, const QByteArray& contentType) {
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        return "utf-16";
    }
    QByteArray sent = nameAfterCharset(contentType);
    if (!sent.isEmpty() && sent != "utf-8") {
        return sent;
    }
    return nameAfterCharset(bytes.first(std::min(bytes.size(), kBytesToName)));
}

std::optional<QString> decodeCharset(const QByteArray& bytes, const QByteArray& charset) {
    UErrorCode status = U_ZERO_ERROR;
    const Converter converter(ucnv_open(widened(charset).constData(), &status));
    // A text has at most two UTF-16 units for a byte.
    if (U_FAILURE(status) || bytes.size() > std::numeric_limits<int32_t>::max() / 2) {
        return std::nullopt;
    }
    QString text(bytes.size() * 2 + 1, Qt::Uninitialized);
    const int32_t length =
        ucnv_toUChars(converter.get(), reinterpret_cast<UChar*>(text.data()), int32_t(text.size()),
                      bytes.constData(), int32_t(bytes.size()), &status);
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    text.truncate(length);
    return text;
}

}  // namespace quillo
