// SPDX-License-Identifier: MIT
#pragma once

#include "library/list/glass_field.h"

namespace quillo {

/// The panel's search field, with a ring in the accent around its ground while it has the focus.
class SearchField final : public GlassField {
    Q_OBJECT

public:
    static constexpr int kWidth = 230;
    static constexpr int kLeastWidth = 150;
    static constexpr int kHeight = 26;
    /// Around its ground, for the ring of the focus; not counted in the sizes above.
    static constexpr int kRing = 2;

    explicit SearchField(QWidget* parent = nullptr);

    void setColors(const Palette& colors) { applyColors(colors); }
    /// The field in front of its text, as if it had been typed.
    void typeText(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillo
