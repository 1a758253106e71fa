// SPDX-License-Identifier: MIT
#include "platform/text/rtf_tables.h"

#include <algorithm>

namespace quillo {
namespace {

// Far more than a real document has; a hostile one must not fill the memory with entries.
constexpr qsizetype kMaxEntries = 4096;
constexpr qsizetype kMaxNameBytes = 256;

}  // namespace

void RtfFontTable::begin(int number) {
    m_number = number;
    m_font = {};
    m_name.clear();
}

void RtfFontTable::setCodePage(int codePage) {
    m_font.codePage = codePage;
}

void RtfFontTable::append(QByteArrayView bytes, CodePageDecoder& decoder) {
    for (const char byte : bytes) {
        if (byte == ';') {
            finish(decoder);
        } else if (m_name.size() < kMaxNameBytes) {
            m_name.append(byte);
        }
    }
}

void RtfFontTable::append(QStringView text) {
    if (m_font.family.size() < kMaxNameBytes) {
        m_font.family.append(text);
    }
}

void RtfFontTable::finish(CodePageDecoder& decoder) {
    if (m_number && m_fonts.size() < kMaxEntries) {
        const int page = m_font.codePage == 0 || m_font.codePage == kSymbolCodePage
                             ? kWesternCodePage
                             : m_font.codePage;
        m_font.family = (m_font.family + decoder.decode(page, m_name)).trimmed();
        m_fonts.insert(*m_number, m_font);
    }
    m_number.reset();
    m_name.clear();
}

void RtfColorTable::append(QByteArrayView bytes) {
    const auto ends = std::ranges::count(bytes, ';');
    for (auto i = 0; i < ends && m_colors.size() < kMaxEntries; ++i) {
        m_colors.append(m_current);
        m_current.reset();
    }
}

std::optional<QColor> RtfColorTable::color(int number) const {
    return number >= 0 && number < m_colors.size() ? m_colors.at(number) : std::nullopt;
}

int RtfColorTable::clamped(int value) {
    return std::clamp(value, 0, 255);
}

QColor& RtfColorTable::current() {
    if (!m_current) {
        m_current = QColor(0, 0, 0);
    }
    return *m_current;
}

}  // namespace quillo
