// SPDX-License-Identifier: MIT
#pragma once

#include "library/list/glass_field.h"

namespace quillo {

/// The search field above a list, with a bordered ground. Drawn in the colours of its palette.
class ListSearchField final : public GlassField {
    Q_OBJECT

public:
    static constexpr int kHeight = 30;

    explicit ListSearchField(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void followPalette();

    bool m_isApplying = false;
};

}  // namespace quillo
