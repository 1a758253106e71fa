// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>
#include <initializer_list>
#include <vector>

#include "platform/text/html_elements.h"
#include "platform/text/html_line_writer.h"
#include "platform/text/html_style.h"
#include "platform/text/html_tokenizer.h"

namespace quillo {

/// Reduces an HTML document to one flow of text and nested <span>s: white space, blocks, lists
/// and tables are carried out here, so that what comes out has no structure whose cost could
/// explode, names no resource and may be given to a renderer with `white-space: pre-wrap`. A
/// span's `title` is the address of the link that it stands for. Linear in the document's length.
class HtmlFlattener final {
public:
    /// The text must outlive the flattener.
    explicit HtmlFlattener(QStringView html);

    [[nodiscard]] QString run();

private:
    struct OpenElement {
        const HtmlElement* element = nullptr;
        std::size_t nameHash = 0;
        bool hasSpan = false;
        bool hidden = false;
        bool preservesSpace = false;
        bool hasListMarks = true;
        bool outerCellWasEmpty = false;
        int count = 0;  ///< Items of a list, cells of a row.
    };

    struct Effect {
        HtmlStyle style;
        QString link;
        int firstNumber = 1;
    };

    void handle(const HtmlToken& token);
    void handleComment(QStringView comment);
    void openTag(const HtmlToken& token);
    void closeTag(QStringView name);
    void push(const HtmlElement& element, const HtmlToken& token);
    void beginStructure(OpenElement& open);
    void endStructure(const OpenElement& closed);
    void beginItem(const OpenElement& item);
    void openSpan(OpenElement& open, const Effect& effect);
    void closeImplied(HtmlRole role);
    void closeUpTo(HtmlRole target, std::initializer_list<HtmlRole> barriers);
    void popTo(std::size_t height);

    [[nodiscard]] static Effect effectOf(const HtmlElement& element, QStringView attributes);
    [[nodiscard]] OpenElement* nearest(std::initializer_list<HtmlRole> roles);
    [[nodiscard]] bool isVisible() const { return m_inFragment && !m_open.back().hidden; }

    HtmlTokenizer m_tokens;
    HtmlLineWriter m_writer;
    std::vector<OpenElement> m_open{OpenElement{}};
    qsizetype m_tooDeep = 0;
    qsizetype m_spans = 0;
    bool m_hasFragment = false;
    bool m_inFragment = true;
    bool m_isQtDocument = false;
};

}  // namespace quillo
