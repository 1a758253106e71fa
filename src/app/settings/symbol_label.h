// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace quillo {

/// A symbol that says nothing by itself: screen readers pass over it.
class SymbolLabel final : public QWidget {
    Q_OBJECT

public:
    enum class Ink { Secondary, Success };

    SymbolLabel(QString symbol, int size, Ink ink = Ink::Secondary, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_symbol;
    Ink m_ink;
};

}  // namespace quillo
