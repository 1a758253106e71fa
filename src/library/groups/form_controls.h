// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

#include "library/groups/panel_button.h"
#include "library/groups/popup_look.h"

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

/// A line around what has the focus.
void paintFocusRing(QPainter& painter, const QRectF& around, qreal radius, const QColor& color);

}  // namespace quillo
