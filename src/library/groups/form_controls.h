// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

#include "library/groups/panel_button.h"
#include "library/groups/popup_look.h"

class QHBoxLayout;

namespace quillo {

/// A text field of a form: a round ground, a ring in the accent when it has the focus.
class FormField final : public QLineEdit {
    Q_OBJECT

public:
    static constexpr int kHeight = 28;

    explicit FormField(QWidget* parent = nullptr);

    void setLook(const PopupLook& look);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    PopupLook m_look;
};

/// A button of a form.
class PushButton final : public PanelButton {
    Q_OBJECT

public:
    enum class Style {
        Plain,
        Default,      ///< What Return does.
        Destructive,  ///< For what destroys.
        Link,         ///< A text in the accent, without a ground; a symbol where there is one.
        Bare,         ///< Without a ground; a symbol and a quiet text.
    };

    PushButton(Style style, const QString& text, QWidget* parent = nullptr);

    /// In front of the text.
    void setSymbol(const QString& name);
    void setLook(const PopupLook& look);

    [[nodiscard]] bool isDefault() const { return m_style == Style::Default; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] bool hasGround() const;
    [[nodiscard]] int symbolWidth() const;
    [[nodiscard]] QColor ground() const;
    [[nodiscard]] QColor ink() const;

    Style m_style;
    QString m_symbol;
    PopupLook m_look;
};

/// The buttons at the end of a form, at its right, the last one outermost.
[[nodiscard]] QHBoxLayout* buttonRow(const QList<PushButton*>& buttons);

/// Gives the form controls in a tree of widgets that look.
void dressControls(QWidget& root, const PopupLook& look);

void fillRounded(QPainter& painter, const QRectF& area, qreal radius, const QBrush& brush);

/// A line around what has the focus.
void paintFocusRing(QPainter& painter, const QRectF& around, qreal radius, const QColor& color);

}  // namespace quillo
