// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>

namespace quillo {

/// A question or form in front of a window: a card in its middle, what is behind it dimmed and out
/// of reach. Takes the keyboard focus and keeps it inside; Escape closes it; the focus goes back.
/// Deletes itself when it is closed.
class Sheet : public QWidget {
    Q_OBJECT

public:
    /// Over the whole of the widget's window, in front of everything in it.
    explicit Sheet(QWidget* over);

    /// Takes the widget over.
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
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void place();

    QWidget* m_content = nullptr;
    QPointer<QWidget> m_focusBefore;
};

}  // namespace quillo
