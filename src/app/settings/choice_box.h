// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>

namespace quillo {

/// One choice of a list that opens; the arrow keys and letters choose without opening it.
class ChoiceBox final : public QComboBox {
    Q_OBJECT

public:
    /// The name is for screen readers.
    explicit ChoiceBox(const QString& name, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
};

}  // namespace quillo
