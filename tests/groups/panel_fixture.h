// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

#include "library/groups/popup.h"

namespace quillo::testing {

/// A panel of the usual height with a control that has the focus, and hands to use it.
class PanelTest : public ::testing::Test {
protected:
    /// Counts what reaches it.
    class Control final : public QWidget {
    public:
        explicit Control(QWidget* parent) : QWidget(parent) { setFocusPolicy(Qt::StrongFocus); }
        int presses = 0;
        int releases = 0;

    protected:
        void mousePressEvent(QMouseEvent* /*event*/) override { ++presses; }
        void mouseReleaseEvent(QMouseEvent* /*event*/) override { ++releases; }
    };

    /// Notes the keys that nobody inside wanted.
    class Panel final : public QWidget {
    public:
        QList<int> keys;

    protected:
        void keyPressEvent(QKeyEvent* event) override { keys += event->key(); }
    };

    PanelTest() {
        panel.resize(1000, 320);
        control.setGeometry(900, 100, 50, 50);
        panel.show();
        QApplication::setActiveWindow(&panel);
        control.setFocus();
    }

    /// To whoever has the focus, up to the first that accepts.
    void press(int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {}) {
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, modifiers, text);
            QCoreApplication::sendEvent(panel.focusWidget(), &event);
        }
    }
    void type(const QString& text) {
        for (const QChar letter : text) {
            press(letter.toUpper().unicode(), {}, letter);
        }
    }
    /// A press or release at a place of the panel, as the window system brings it.
    void mouse(QEvent::Type type, const QPoint& at, Qt::MouseButton button = Qt::LeftButton) {
        QMouseEvent event(type, at, panel.mapToGlobal(at), button,
                          type == QEvent::MouseButtonPress ? button : Qt::NoButton, {});
        QCoreApplication::sendEvent(panel.windowHandle(), &event);
    }
    void click(const QPoint& at, Qt::MouseButton button = Qt::LeftButton) {
        mouse(QEvent::MouseButtonPress, at, button);
        mouse(QEvent::MouseButtonRelease, at, button);
    }
    static void settle() {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    Panel panel;
    Control control{&panel};
};

}  // namespace quillo::testing
