// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "library/groups/popup_look.h"

namespace quillo {

/// A field of colours in which one place is chosen, by the pointer or the arrow keys.
class ColorField : public QWidget {
    Q_OBJECT

public:
    ColorField(const QString& name, Qt::Orientations axes);

    [[nodiscard]] virtual QColor chosenColor() const = 0;
    void setLook(const PopupLook& look);

Q_SIGNALS:
    /// By the person.
    void moved();

protected:
    /// From 0, 0 at the top left to 1, 1.
    [[nodiscard]] QPointF place() const { return m_place; }
    void setPlace(const QPointF& place);

    virtual void paintColors(QPainter& painter, const QRectF& area) const = 0;

    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    Qt::Orientations m_axes;  ///< In which there is something to choose.
    QPointF m_place;
    PopupLook m_look;
};

/// Saturation from left to right, value from bottom to top, in one hue.
class ShadeSquare final : public ColorField {
    Q_OBJECT

public:
    ShadeSquare();

    [[nodiscard]] double saturation() const { return place().x(); }
    [[nodiscard]] double value() const { return 1 - place().y(); }
    void setShade(double saturation, double value) { setPlace({saturation, 1 - value}); }
    void setHue(double hue);
    [[nodiscard]] QColor chosenColor() const override;

protected:
    void paintColors(QPainter& painter, const QRectF& area) const override;

private:
    double m_hue = 0;
};

/// The hues from top to bottom.
class HueStrip final : public ColorField {
    Q_OBJECT

public:
    HueStrip();

    /// 0 to 1, which are the same red.
    [[nodiscard]] double hue() const { return place().y(); }
    void setHue(double hue) { setPlace({0.5, hue}); }
    [[nodiscard]] QColor chosenColor() const override;

protected:
    void paintColors(QPainter& painter, const QRectF& area) const override;
};

}  // namespace quillo
