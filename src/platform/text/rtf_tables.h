// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QColor>
#include <QHash>
#include <QList>
#include <QString>
#include <optional>

#include "platform/text/code_page.h"

namespace quillo {

/// The fonts that a document declares, while they are read and afterwards.
class RtfFontTable final {
public:
    /// Begins the font of this number, as \f does inside the table.
    void begin(int number);
    void setCodePage(int codePage);

    /// Bytes of the name; a semicolon ends the font.
    void append(QByteArrayView bytes, CodePageDecoder& decoder);
    void append(QStringView text);
    void finish(CodePageDecoder& decoder);

    [[nodiscard]] QString family(int number) const { return m_fonts.value(number).family; }

    /// 0 where the document's own code page applies.
    [[nodiscard]] int codePage(int number) const { return m_fonts.value(number).codePage; }

private:
    struct Font {
        QString family;
        int codePage = 0;
    };

    QHash<int, Font> m_fonts;
    std::optional<int> m_number;
    Font m_font;
    QByteArray m_name;
};

/// The colours that a document declares. An entry without components is the automatic colour.
class RtfColorTable final {
public:
    void setRed(int value) { current().setRed(clamped(value)); }
    void setGreen(int value) { current().setGreen(clamped(value)); }
    void setBlue(int value) { current().setBlue(clamped(value)); }

    /// Text of the table: each semicolon ends an entry.
    void append(QByteArrayView bytes);

    /// None for the automatic colour and for numbers that are not in the table.
    [[nodiscard]] std::optional<QColor> color(int number) const;

private:
    [[nodiscard]] static int clamped(int value);
    [[nodiscard]] QColor& current();

    QList<std::optional<QColor>> m_colors;
    std::optional<QColor> m_current;
};

}  // namespace quillo
