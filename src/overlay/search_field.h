// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

#include "appearance/palette.h"

namespace quillo {

/// The panel's search field: a round ground with a magnifying glass and, while there is text, a
/// button that empties it.
class SearchField final : public QLineEdit {
    Q_OBJECT

public:
    static constexpr int kWidth = 230;
    static constexpr int kLeastWidth = 150;
    static constexpr int kHeight = 26;
    /// Around its ground, for the ring of the focus; not counted in the sizes above.
    static constexpr int kRing = 2;

    explicit SearchField(QWidget* parent = nullptr);

    void setColors(const Palette& colors);
    /// The field in front of its text, as if it had been typed.
    void typeText(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Palette m_colors;
    QAction* m_clear;
};

}  // namespace quillo
