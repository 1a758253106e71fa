// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>
#include <QWidget>

#include "library/groups/popup_look.h"

namespace quillo {

/// Saturation from left to right, value from bottom to top, in one hue.
class ShadeSquare final : public QWidget {
    Q_OBJECT

public:
    explicit ShadeSquare(QWidget* parent = nullptr);

    [[nodiscard]] double saturation() const { return m_saturation; }
    [[nodiscard]] double value() const { return m_value; }
    void setShade(double saturation, double value);
    void setHue(double hue);
    void setLook(const PopupLook& look);

Q_SIGNALS:
    /// By the person.
    void moved();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void moveTo(double saturation, double value);

    double m_hue = 0;
    double m_saturation = 1;
    double m_value = 1;
    PopupLook m_look;
};

/// The hues from top to bottom.
class HueStrip final : public QWidget {
    Q_OBJECT

public:
    explicit HueStrip(QWidget* parent = nullptr);

    /// 0 to 1, which are the same red.
    [[nodiscard]] double hue() const { return m_hue; }
    void setHue(double hue);
    void setLook(const PopupLook& look);

Q_SIGNALS:
    /// By the person.
    void moved();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void moveTo(double hue);

    double m_hue = 0;
    PopupLook m_look;
};

}  // namespace quillo
