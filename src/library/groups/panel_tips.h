// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QTimer>

#include "appearance/palette.h"

class QWidget;

namespace quillo {

class TipLabel;

/// Shows the tool tips of a panel's widgets as a child widget of the panel: QWidget::setToolTip()
/// is all a widget needs. One that has tips for places inside it handles QEvent::ToolTip itself
/// and calls PanelTips::of(this)->show() with the place. The tip goes on leaving, a key, a press,
/// the wheel, and by itself after a while.
class PanelTips final : public QObject {
    Q_OBJECT

public:
    /// Belongs to the panel.
    explicit PanelTips(QWidget* panel);
    ~PanelTips() override;

    /// The tips of the panel that a widget is in; none is null.
    [[nodiscard]] static PanelTips* of(const QWidget* widget);

    void setColors(const Palette& colors);
    /// Beneath the rectangle, or above it where there is no room; in the panel's coordinates. An
    /// empty text hides.
    void show(const QString& text, const QRect& target);
    void hide();
    [[nodiscard]] bool isShown() const;
    [[nodiscard]] QString text() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool showTipOf(QWidget& widget);
    void hideOn(const QObject* watched, const QEvent& event);

    QWidget* m_panel;
    TipLabel* m_label;
    QPointer<QWidget> m_widget;  ///< Whose tip is shown.
    QRect m_target;
    QTimer m_timeout;
};

}  // namespace quillo
