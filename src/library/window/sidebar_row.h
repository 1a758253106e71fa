// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "library/groups/panel_button.h"
#include "library/window/library_look.h"
#include "library/window/library_section.h"

namespace quillo {

/// What a row of the sidebar says.
struct SidebarRowContent {
    LibrarySection section;
    QString symbol;
    std::optional<QColor> symbolColor;  ///< None is the colour of the text.
    QString title;
    qsizetype count = 0;

    friend bool operator==(const SidebarRowContent&, const SidebarRowContent&) = default;
};

/// One section in the sidebar: its symbol, title and count. Can be dragged up and down; where to is
/// the sidebar's business.
class SidebarRow final : public PanelButton {
    Q_OBJECT

public:
    static constexpr int kHeight = 28;

    explicit SidebarRow(const SidebarRowContent& content, QWidget* parent = nullptr);

    [[nodiscard]] const SidebarRowContent& content() const { return m_content; }
    void setContent(const SidebarRowContent& content);
    void setLook(const LibraryLook& look);
    /// Clips are dragged over it, and it takes them.
    void setDropTarget(bool isDropTarget);

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    /// Right click, the Menu key or Shift-F10; the anchor is in the row's coordinates.
    void menuRequested(const QRect& anchor);
    /// The row is held and moved; the point is in the row's coordinates.
    void dragged(const QPoint& position);
    void dropped(const QPoint& position);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    [[nodiscard]] QString shownTitle(int width) const;
    [[nodiscard]] QRect titleArea() const;

    SidebarRowContent m_content;
    LibraryLook m_look;
    QPoint m_pressPosition;
    bool m_isDragged = false;
    bool m_isDropTarget = false;
};

}  // namespace quillo
