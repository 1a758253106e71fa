// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "appearance/palette.h"

class QLabel;

namespace quillo {

class LinkButton;

/// The line below the cards: what the keys do, or, for the seconds in which a deletion can be taken
/// back, that offer.
class HintsLine final : public QWidget {
    Q_OBJECT

public:
    static constexpr int kHeight = 24;

    explicit HintsLine(QWidget* parent = nullptr);

    void setColors(const Palette& colors);
    /// How many deletions can be taken back; none shows the keys.
    void offerUndo(qsizetype deletedCount);
    [[nodiscard]] QWidget* undoButton() const;

Q_SIGNALS:
    void undoRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void paintHints(QPainter& painter) const;
    void layOut();

    QLabel* m_message;
    LinkButton* m_undo;
    Palette m_colors = paletteFor(ColorScheme::Light);
};

}  // namespace quillo
