// SPDX-License-Identifier: MIT
#pragma once

#include <unicode/ucnv.h>

#include <QByteArrayView>
#include <QString>
#include <map>
#include <memory>

namespace quillo {

inline constexpr int kWesternCodePage = 1252;

/// The stand-in for fonts whose letters are pictures (bullets, ticks).
inline constexpr int kSymbolCodePage = 42;

/// The code page of an RTF \fcharset number, or nothing (0) where the document's own applies.
[[nodiscard]] int codePageOfCharset(int charset);

/// The sign that a byte (0 to 255) of a symbol font shows.
[[nodiscard]] QChar symbolFromByte(int byte);

/// Turns bytes of legacy code pages into text through ICU. Unknown pages are read as Western;
/// bytes without a meaning become U+FFFD.
class CodePageDecoder final {
public:
    [[nodiscard]] QString decode(int codePage, QByteArrayView bytes);

private:
    struct Close {
        void operator()(UConverter* converter) const { ucnv_close(converter); }
    };
    using Converter = std::unique_ptr<UConverter, Close>;

    [[nodiscard]] static Converter open(int codePage);
    [[nodiscard]] UConverter* converter(int codePage);

    std::map<int, Converter> m_converters;
};

}  // namespace quillo
