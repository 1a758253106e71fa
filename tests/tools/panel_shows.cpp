// SPDX-License-Identifier: MIT
// Shows and hides the panel on the stored history as often as it is told, through the program's own
// services of the desktop: what the shortcut does, without the pause that it needs between presses.
// What is copied meanwhile is captured.
// usage: panel_shows
// For each line of standard input, a number, shows and hides the panel that often and prints
// 'done', or 'failed' when it did not appear or vanish. Ends with the input.
#include <QApplication>
#include <QWindow>
#include <cstdio>
#include <string>

#include "app/allocator.h"
#include "app/desktop_services.h"
#include "base/clock.h"
#include "capture/clip_saver.h"
#include "capture/pasteboard_watcher.h"
#include "model/persistence_controller.h"
#include "overlay/overlay_panel_controller.h"
#include "paste/paste_back.h"
#include "platform/freedesktop/json_user_defaults.h"
#include "platform/notification_center.h"
#include "platform/thread_tick_timer.h"
#include "support/wait_until.h"

using quillo::testing::waitUntil;

namespace {

/// Sees every painting of the panel's widgets.
class PaintWitness : public QObject {
public:
    int paintings = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        paintings += event->type() == QEvent::Paint && watched->isWidgetType() ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
};

/// What the program composes for its panel; members depend on those before them.
class PanelOnDesktop {
public:
    explicit PanelOnDesktop(quillo::DesktopServices services)
        : m_services(std::move(services)),
          m_persistence({quillo::StoreKind::OnDisk, {}, &m_clock, &m_defaults}),
          m_pasteBack({*m_services.pasteboard,
                       *m_services.workspace,
                       *m_services.keyEvents,
                       *m_services.hotKeys,
                       m_persistence,
                       m_defaults,
                       {*m_services.richText, *m_services.images},
                       m_clock}),
          m_controller({m_persistence, *m_services.workspace, m_pasteBack, m_defaults, m_theme,
                        m_colors, m_notifications, *m_services.images, *m_services.richText,
                        *m_services.thumbnails, *m_services.panelSurface, m_clock,
                        [this] { m_watcher.checkSoon(); }, [] { return 0U; }}) {
        qApp->installEventFilter(&m_witness);
        m_watcher.start();
    }

    ~PanelOnDesktop() {
        m_watcher.stop();
        m_persistence.waitUntilIdle();
    }

    PanelOnDesktop(const PanelOnDesktop&) = delete;
    PanelOnDesktop& operator=(const PanelOnDesktop&) = delete;

    bool showAndHide() {
        const int before = m_witness.paintings;
        m_controller.show();
        const QWindow& window = *m_controller.panel()->windowHandle();
        const bool wasShown = waitUntil([&] {
            return window.isExposed() && window.isActive() && m_witness.paintings > before;
        });
        m_controller.hide();
        return wasShown && waitUntil([&] { return !window.isExposed(); });
    }

private:
    quillo::SystemClock m_clock;
    quillo::DesktopServices m_services;
    quillo::JsonUserDefaults m_defaults;
    quillo::NotificationCenter m_notifications;
    quillo::PersistenceController m_persistence;
    quillo::ClipSaver m_saver{
        {m_persistence, m_defaults, m_notifications, *m_services.richText, m_clock}};
    quillo::ThreadTickTimer m_timer;
    quillo::PasteboardWatcher m_watcher{{*m_services.pasteboard, *m_services.workspace, m_timer,
                                         m_saver, *m_services.images, m_defaults}};
    quillo::PasteBack m_pasteBack;
    quillo::ThemeManager m_theme{m_defaults, *m_services.appearance};
    quillo::ClipTypeColorManager m_colors{m_defaults, m_theme};
    quillo::OverlayPanelController m_controller;
    PaintWitness m_witness;
};

bool showAndHide(PanelOnDesktop& panel, int times) {
    for (int i = 0; i < times; ++i) {
        if (!panel.showAndHide()) {
            return false;
        }
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    quillo::returnLargeBlocksToTheSystem();
    const QApplication application(argc, argv);
    if (argc != 1) {
        return 2;
    }
    auto services = quillo::makeDesktopServices({});
    if (!services) {
        std::fprintf(stderr, "panel_shows: %s\n", qUtf8Printable(services.error().text));
        return 2;
    }
    PanelOnDesktop panel(std::move(*services));
    int times = 0;
    while (std::scanf("%d", &times) == 1) {
        std::puts(showAndHide(panel, times) ? "done" : "failed");
        std::fflush(stdout);
    }
    return 0;
}
