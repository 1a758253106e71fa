// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QScrollArea>
#include <QVBoxLayout>

#include "app/settings/appearance_page.h"
#include "appearance/clip_type_color_manager.h"
#include "library/groups/sheet.h"
#include "library/groups/swatch.h"
#include "library/groups/swatch_row.h"
#include "model/persistence_controller.h"
#include "support/fake_system_appearance.h"
#include "support/in_memory_store.h"
#include "support/manual_clock.h"
#include "support/memory_user_defaults.h"

namespace quillo::testing {

/// A panel that has only a place.
class FakePositionControl final : public PanelPositionControl {
public:
    [[nodiscard]] PanelPosition panelPosition() const override { return m_position; }
    [[nodiscard]] bool isPositionLocked() const override { return m_isLocked; }
    void setPanelPosition(PanelPosition position) override {
        m_position = position;
        Q_EMIT panelPositionChanged();
    }
    void resetToDefaultPosition() override { ++resets; }
    void setPositionLocked(bool isLocked) override {
        m_isLocked = isLocked;
        Q_EMIT positionLockedChanged();
    }

    int resets = 0;

private:
    PanelPosition m_position = PanelPosition::Bottom;
    bool m_isLocked = true;
};

/// The page in a window of the usual size, and hands to use it.
class AppearancePageTest : public ::testing::Test {
protected:
    ~AppearancePageTest() override { QGuiApplication::setPalette(QPalette()); }

    void open() {
        window.resize(500, 386);
        auto* column = new QVBoxLayout(&window);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(makeAppearancePage(theme, colors, store.viewContext()).release());
        window.show();
        settle();
    }
    void settle() {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        // Without a display nobody else makes it so.
        QApplication::setActiveWindow(&window);
    }
    /// The control that screen readers know by that name.
    template <typename Control>
    [[nodiscard]] Control& named(const QString& name, const QString& section = {}) {
        QWidget* root = section.isEmpty() ? &window : window.findChild<QWidget*>(section);
        const QList<Control*> controls = root->findChildren<Control*>();
        for (Control* control : controls) {
            if (control->accessibleName() == name) {
                return *control;
            }
        }
        throw std::runtime_error("no control is called " + name.toStdString());
    }
    /// To whoever has the focus, up to the first that accepts.
    void press(int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {}) {
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, modifiers, text);
            QApplication::sendEvent(QApplication::focusWidget(), &event);
        }
    }
    void type(const QString& text) {
        for (const QChar letter : text) {
            press(letter.toUpper().unicode(), {}, letter);
        }
    }
    template <typename Part>
    [[nodiscard]] Part& inSheet() {
        return *Sheet::openIn(&window)->findChild<Part*>();
    }
    void chooseSwatch(const QColor& color) {
        for (Swatch* swatch : inSheet<SwatchRow>().swatches()) {
            if (swatch->color() == color) {
                swatch->click();
            }
        }
    }

    MemoryUserDefaults defaults;
    FakeSystemAppearance desktop;
    ThemeManager theme{defaults, desktop};
    ClipTypeColorManager colors{defaults, theme};
    ManualClock clock;
    PersistenceController store{inMemory(clock)};
    QWidget window;
};

}  // namespace quillo::testing
