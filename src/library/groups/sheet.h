// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>

#include "library/groups/popup_look.h"
#include "platform/system_appearance.h"

namespace quillo {

/// A question or form in front of a window: a card in its middle, what is behind it dimmed and out
/// of reach. Takes the keyboard focus and keeps it inside; Escape closes it, Return presses its
/// default button; the focus goes back. Deletes itself when it is closed.
class Sheet : public QWidget {
    Q_OBJECT

public:
    /// The colours in a scheme: those of the widget's palette are asked for.
    using Look = PopupLook (*)(ColorScheme);

    /// Over the whole of the widget's window, in front of everything in it.
    Sheet(QWidget* over, Look look);

    /// Takes the widget over, and gives it the sheet's colours and name. Its text fields get a menu
    /// that is drawn in the window.
    void setContent(QWidget* content);
    /// Shows it. The focus goes to that widget, or to the first that takes it.
    void open(QWidget* firstFocus = nullptr);
    void closeSheet();

    /// The uppermost sheet of the widget's window; none is null.
    [[nodiscard]] static Sheet* openIn(const QWidget* widget);

Q_SIGNALS:
    /// However it came about; the focus is back.
    void closed();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void place();
    void takeColors();
    void pressDefault();

    Look m_lookFor;
    PopupLook m_look;
    QWidget* m_content = nullptr;
    QPointer<QWidget> m_focusBefore;
};

}  // namespace quillo
