// SPDX-License-Identifier: MIT
#pragma once

#include <QUuid>
#include <optional>

#include "appearance/palette.h"
#include "library/groups/panel_button.h"
#include "model/filter_type.h"

namespace quillo {

/// What a chip says.
struct ChipContent {
    QString text = {};
    QString symbol = {};
    std::optional<QColor> badge = {};  ///< A tile of that colour beneath the symbol.
    std::optional<QColor> dot = {};
    std::optional<qsizetype> count = {};

    friend bool operator==(const ChipContent&, const ChipContent&) = default;
};

/// A round-ended button of the chip row: a filter, a group or the "plus".
class Chip final : public PanelButton {
    Q_OBJECT

public:
    static constexpr int kHeight = 24;
    /// A longer title is cut with an ellipsis, and told by the tip.
    static constexpr int kLongestTitle = 160;

    enum class Kind { All, Filter, Group, Plus };

    Chip(Kind kind, QWidget* parent);

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] const ChipContent& content() const { return m_content; }
    void setContent(const ChipContent& content);
    void setColors(const Palette& colors);
    /// A drag that it takes is over it.
    void setDropTarget(bool isDropTarget);
    [[nodiscard]] bool isDropTarget() const { return m_isDropTarget; }

    /// Where the row ends at which the chip fades, in the chip's coordinates.
    struct Fade {
        std::optional<int> left = {};
        std::optional<int> right = {};

        friend bool operator==(const Fade&, const Fade&) = default;
    };
    static constexpr int kFadeWidth = 28;
    void setFade(const Fade& fade);

    std::optional<FilterType> filter;
    std::optional<QUuid> group;

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    /// Right click, the Menu key or Shift-F10.
    void menuRequested();
    void focused();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    struct Inks {
        QColor ground;
        QColor primary;
        QColor secondary;
    };

    [[nodiscard]] Inks inks() const;
    [[nodiscard]] QColor ringOn(const QColor& ground) const;
    [[nodiscard]] QString shownTitle() const;
    void paintChip(QPainter& painter) const;
    int paintMark(QPainter& painter, int x, const Inks& inks) const;
    [[nodiscard]] int markWidth() const;
    void fadeOut(QPainter& painter) const;

    Kind m_kind;
    ChipContent m_content;
    Palette m_colors = paletteFor(ColorScheme::Light);
    Fade m_fade;
    bool m_isDropTarget = false;
};

}  // namespace quillo
