// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <utility>

namespace quillo {

/// Writes the inline flow that is left of a document: white space collapsed, blocks turned into
/// line breaks, cells into tabs. Breaks and spaces are held back until text follows, so that
/// none stand before the first text or behind the last; they are then written where they were
/// met, outside any style that was opened since.
class HtmlLineWriter final {
public:
    /// Stands for a line break in the flow.
    static constexpr char16_t kLineBreak = u'\u2028';

    /// Text with its character references.
    void addText(QStringView text, bool preserveSpace);

    /// Markup that is handed on as it is.
    void addMarkup(QStringView markup) { m_flow.append(markup); }

    void blockBoundary();
    void lineBreak();
    void listMark(const QString& mark);
    void dropListMark() { m_mark.clear(); }

    /// A cell's start; returns what endCell must be given.
    [[nodiscard]] bool beginCell(bool isFirstOfRow);
    void endCell(bool outerCellWasEmpty);

    /// A line feed directly behind this belongs to the markup, as after <pre>.
    void ignoreNextLineFeed() { m_ignoreLineFeed = true; }

    [[nodiscard]] bool isFull() const;
    [[nodiscard]] QString take() { return std::move(m_flow); }

private:
    void addCollapsed(QStringView text);
    void addPreserved(QStringView text);
    void addRun(QStringView run);
    void flushPending();

    QString m_flow;
    QString m_mark;
    qsizetype m_textEnd = 0;
    qsizetype m_markPosition = 0;
    qsizetype m_spacePosition = 0;
    qsizetype m_units = 0;
    int m_breaks = 0;
    bool m_space = false;
    bool m_lineHasText = false;
    bool m_inEmptyCell = false;
    bool m_ignoreLineFeed = false;
};

}  // namespace quillo
