// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>
#include <optional>
#include <vector>

#include "platform/text/code_page.h"
#include "platform/text/rtf_keywords.h"
#include "platform/text/rtf_output.h"
#include "platform/text/rtf_tables.h"
#include "platform/text/rtf_tokenizer.h"

namespace quillo {

/// Carries out the tokens of one RTF document. Time and memory grow with the document's length
/// only: groups nest in a vector of bounded height, and deeper ones share the state of the last.
class RtfInterpreter final {
public:
    explicit RtfInterpreter(QByteArrayView document) : m_tokens(document) {}

    /// The whole document, or as much as is there before it breaks off.
    [[nodiscard]] StyledText run();

private:
    enum class Destination { Text, Skipped, FontTable, ColorTable, FieldInstruction, UnicodePair };

    struct Format {
        bool bold = false;
        bool italic = false;
        bool underline = false;
        bool strikeOut = false;
        int font = -1;
        int halfPoints = 0;
        int foreground = -1;  ///< Index of the colour table; -1 where none was named.
        int background = -1;
        int link = -1;

        friend bool operator==(const Format&, const Format&) = default;
    };

    struct Group {
        Format format;
        Destination destination = Destination::Text;
        Destination pairDestination = Destination::Text;  ///< What the chosen half of \upr is.
        int unicodeSkip = 1;
        bool hidden = false;
        bool starred = false;
        bool ownsField = false;
    };

    struct Field {
        QString instruction;
        Destination resultDestination = Destination::Text;
        std::optional<int> link = {};  ///< Known once a result was met.
    };

    [[nodiscard]] bool handle(const RtfToken& token);
    void openGroup();
    void closeGroup();
    void handleWord(const RtfToken& token);
    void handleSymbol(char symbol);
    void handleDestination(RtfKeyword keyword);
    void handleStructure(RtfKeyword keyword);
    void handleEncoding(RtfKeyword keyword, const RtfToken& token);
    void handleTables(RtfKeyword keyword, const RtfToken& token);
    void handleFormat(RtfKeyword keyword, const RtfToken& token);
    void openField();
    void openFieldResult();
    void handleUnicode(const RtfToken& token);
    void appendBytes(QByteArrayView bytes);
    void appendText(QStringView text);
    void flushBytes();

    [[nodiscard]] int currentCodePage() const;
    [[nodiscard]] const TextStyle& style();
    [[nodiscard]] Group& group() { return m_groups.back(); }

    RtfTokenizer m_tokens;
    CodePageDecoder m_decoder;
    RtfFontTable m_fonts;
    RtfColorTable m_colors;
    RtfOutput m_output;
    std::vector<Group> m_groups{Group{}};
    std::vector<Field> m_fields;
    QStringList m_links;
    QByteArray m_bytes;
    Format m_styleFormat;
    TextStyle m_style;
    int m_codePage = kWesternCodePage;
    int m_defaultFont = -1;
    int m_skip = 0;
    qsizetype m_groupsTooDeep = 0;
};

}  // namespace quillo
