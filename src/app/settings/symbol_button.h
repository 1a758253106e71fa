// SPDX-License-Identifier: MIT
#pragma once

#include "library/groups/panel_button.h"

namespace quillo {

/// A small button that is a symbol, with a ground beneath it while the pointer is over it.
class SymbolButton final : public PanelButton {
    Q_OBJECT

public:
    /// The tip is what it is called by screen readers too.
    SymbolButton(QString symbol, const QString& tip, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_symbol;
};

}  // namespace quillo
