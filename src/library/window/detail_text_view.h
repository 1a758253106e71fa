// SPDX-License-Identifier: MIT
#pragma once

#include <QTextBrowser>
#include <QTextLayout>
#include <QTimer>

#include "library/window/library_look.h"
#include "platform/rich_text.h"

namespace quillo {

/// A clip's text in the detail pane, with its own styling where it has one. It can be selected and
/// copied in parts. A long text is filled in piece by piece, so that nothing waits for it. As high
/// as its text within bounds; what is longer scrolls.
class DetailTextView final : public QTextBrowser {
    Q_OBJECT

public:
    static constexpr int kLeastHeight = 126;
    static constexpr int kMostHeight = 330;
    /// What is beyond it is not shown, but for three dots: a paragraph is laid out as a whole.
    static constexpr qsizetype kLongestText = 200'000;

    explicit DetailTextView(QWidget* parent = nullptr);

    /// The runs may be empty. The same text again leaves the place and the selection as they are.
    void setText(const StyledText& text);
    void setLook(const LibraryLook& look);
    /// Less than kLeastHeight where something else stands beside the text.
    void setLeastHeight(int height);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    /// Nothing that a document names is loaded.
    QVariant loadResource(int /*type*/, const QUrl& /*name*/) override { return {}; }
    void resizeEvent(QResizeEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    /// A part of a clip is text alone, and is no new clip.
    [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;

private:
    void startAnew();
    void addPiece();
    void textGrew();

    LibraryLook m_look;
    StyledText m_text;
    QList<QTextLayout::FormatRange> m_formats;
    qsizetype m_added = 0;  ///< How much of the text is in the view.
    qsizetype m_nextFormat = 0;
    int m_leastHeight = kLeastHeight;
    int m_height = kLeastHeight;
    QTimer m_next;
};

}  // namespace quillo
