// SPDX-License-Identifier: MIT
#pragma once

#include <QSlider>
#include <QString>

namespace quillo {

/// A slider over a range of real numbers in steps: by pointer, wheel while focused, arrow and page
/// keys. Clicking the track goes there.
class ValueSlider final : public QSlider {
    Q_OBJECT

public:
    struct Range {
        double least = 0.0;
        double greatest = 1.0;
        double step = 0.05;
    };

    /// The name is for screen readers.
    ValueSlider(const QString& name, Range range, QWidget* parent = nullptr);

    /// Nearest step within the range. Sends no signal.
    void setShownValue(double value);
    [[nodiscard]] double shownValue() const;

    [[nodiscard]] QSize sizeHint() const override { return {170, 22}; }

Q_SIGNALS:
    /// The person chose another value; sent while the knob is dragged too.
    void chosen(double value);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void goTo(qreal x);

    Range m_range;
    bool m_isShowing = false;  ///< The value is being set, not chosen.
};

/// "85%", from a share of one.
[[nodiscard]] QString percentText(double share);

}  // namespace quillo
