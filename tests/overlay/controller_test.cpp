// SPDX-License-Identifier: MIT
// The panel's controller with a store in memory and a fake desktop.
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QWindow>

#include "library/groups/chip_row.h"
#include "model/groups.h"
#include "overlay/overlay_panel_controller.h"
#include "platform/images/qt_image_codec.h"
#include "platform/text/document_reader.h"
#include "support/fake_hot_keys.h"
#include "support/fake_key_event_poster.h"
#include "support/fake_panel_surface.h"
#include "support/fake_pasteboard.h"
#include "support/fake_system_appearance.h"
#include "support/fake_thumbnail_service.h"
#include "support/fake_workspace.h"
#include "support/in_memory_store.h"
#include "support/manual_clock.h"
#include "support/memory_user_defaults.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillo::testing {
namespace {

class Controller : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<OverlayPanelController> makeController() {
        return std::make_unique<OverlayPanelController>(OverlayPanelServices{
            m_persistence, m_workspace, m_pasteBack, m_defaults, m_theme, m_colors, m_notifications,
            m_images, m_richText, m_thumbnails, m_surface, m_clock, [] {}, [] { return 0U; }});
    }

    void store(const QString& text) {
        // What was begun before reads the clock before it moves on.
        m_persistence.waitUntilIdle();
        m_clock.advance(1s);
        m_persistence.perform([this, text](ObjectContext& context) {
            const std::shared_ptr<Clip> clip = Clip::create(context, m_clock.now());
            clip->setPlaintext(text);
            (void)context.save();
        });
        m_persistence.waitUntilIdle();
        QCoreApplication::processEvents();
    }

    void press(OverlayPanelController& controller, int key, const QString& text = {}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(controller.panel()->windowHandle(), &event);
    }

    [[nodiscard]] QByteArray pasteboardText() {
        return m_pasteboard.paste("UTF8_STRING").value_or(RawReply{}).bytes;
    }

    ManualClock m_clock;
    MemoryUserDefaults m_defaults;
    FakeSystemAppearance m_system;
    ThemeManager m_theme{m_defaults, m_system};
    ClipTypeColorManager m_colors{m_defaults, m_theme};
    NotificationCenter m_notifications;
    PersistenceController m_persistence{inMemory(m_clock)};
    DocumentReader m_richText;
    QtImageCodec m_images;
    FakePasteboard m_pasteboard{PasteboardConverters{m_richText, m_images}};
    FakeWorkspace m_workspace;
    FakeKeyEventPoster m_keys;
    FakeHotKeys m_hotKeys;
    FakePanelSurface m_surface;
    FakeThumbnailService m_thumbnails;
    PasteBack m_pasteBack{{m_pasteboard, m_workspace, m_keys, m_hotKeys, m_persistence, m_defaults,
                           ContentReaders{m_richText, m_images}, m_clock}};
};

TEST_F(Controller, ASecondToggleWithinTheDebounceIsIgnored) {
    const auto controller = makeController();
    controller->toggle();
    controller->toggle();
    EXPECT_TRUE(controller->isVisible());
    ASSERT_TRUE(waitUntil([&] {
        controller->toggle();
        return !controller->isVisible();
    }));
}

TEST_F(Controller, ACardThatComesInDoesNotMoveTheSelectionToAnotherClip) {
    store(u"a"_s);
    store(u"b"_s);
    const auto controller = makeController();
    controller->show();
    press(*controller, Qt::Key_Right);
    store(u"new"_s);
    EXPECT_EQ(controller->selectedIndex(), 2);
    press(*controller, Qt::Key_Return);
    EXPECT_EQ(pasteboardText(), "a");

    // Without a choice made, the first card stays selected: it is the newest copy.
    controller->show();
    store(u"newest"_s);
    EXPECT_EQ(controller->selectedIndex(), 0);
    press(*controller, Qt::Key_Return);
    EXPECT_EQ(pasteboardText(), "newest");
}

TEST_F(Controller, ADraggedPlaceIsClearedByChoosingAPosition) {
    const auto controller = makeController();
    controller->setPositionLocked(false);
    controller->show();
    controller->panel()->move(5, 6);
    Q_EMIT controller->panel()->dragged();
    controller->hide();
    EXPECT_EQ(m_defaults.boolean(u"panelHasCustomOrigin"_s), true);
    controller->show();
    EXPECT_EQ(controller->panel()->pos(), QPoint(5, 6));
    controller->setPanelPosition(PanelPosition::Top);
    EXPECT_EQ(m_defaults.boolean(u"panelHasCustomOrigin"_s), false);
    EXPECT_EQ(m_defaults.string(u"panelPosition"_s), u"top"_s);
    EXPECT_EQ(controller->panel()->pos().y(),
              QGuiApplication::primaryScreen()->availableGeometry().y() + 24);
    controller->hide();
    EXPECT_EQ(controller->customOrigin(), std::nullopt);
}

TEST_F(Controller, AbsurdStoredPlacesAreNotUsed) {
    m_defaults.setObject(u"panelHasCustomOrigin"_s, true);
    m_defaults.setObject(u"panelCustomX"_s, 1e300);
    m_defaults.setObject(u"panelCustomY"_s, 0);
    m_defaults.setObject(u"panelPosition"_s, 7);
    const auto controller = makeController();
    EXPECT_EQ(controller->customOrigin(), std::nullopt);
    EXPECT_EQ(controller->panelPosition(), PanelPosition::Bottom);
}

TEST_F(Controller, WhatIsChangedOrEditedInTheSettingsIsTakenOverAtOnce) {
    const auto controller = makeController();
    controller->show();
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    const auto frame = [&] { return controller->panel()->geometry(); };
    m_colors.setPanelWidth(0.85);
    EXPECT_EQ(frame().width(), std::max(640, qRound(0.85 * screen.width())));
    m_defaults.setObject(u"panelWidth"_s, -3);
    EXPECT_EQ(frame().width(), std::min(640, screen.width()));
    m_defaults.setObject(u"panelWidth"_s, 1e300);
    EXPECT_EQ(frame().width(), screen.width());
    m_defaults.setObject(u"panelPosition"_s, u"top"_s);
    EXPECT_EQ(frame().y(), QGuiApplication::primaryScreen()->availableGeometry().y() + 24);
    m_defaults.setObject(u"panelPositionLocked"_s, false);
    EXPECT_TRUE(controller->panel()->isMovable());
    m_defaults.setObject(u"panelCustomX"_s, 7);
    m_defaults.setObject(u"panelCustomY"_s, 8);
    m_defaults.setObject(u"panelHasCustomOrigin"_s, true);
    EXPECT_EQ(frame().topLeft(), QPoint(7, 8));

    m_colors.setHasCustomPanelBackground(true);
    m_colors.setPanelBackgroundColor(Qt::red);
    m_colors.savePanelBackgroundColor();
    m_theme.setCurrentTheme(AppTheme::Dark);
    EXPECT_FALSE(m_defaults.object(u"panelBackgroundColor"_s));
    const QImage shown = controller->panel()->grab().toImage();
    EXPECT_EQ(shown.pixelColor(120, 308), QColor(0x2c, 0x2c, 0x2e));
    m_theme.setCurrentTheme(AppTheme::Auto);
}

TEST_F(Controller, ACompositorThatComesOrGoesMakesThePanelAnew) {
    const auto controller = makeController();
    controller->show();
    EXPECT_FALSE(controller->panel()->mask().isEmpty());
    m_surface.setCompositing(true);
    EXPECT_TRUE(controller->isVisible());
    EXPECT_TRUE(controller->panel()->mask().isEmpty());
    EXPECT_TRUE(controller->panel()->testAttribute(Qt::WA_TranslucentBackground));
}

TEST_F(Controller, AGroupThatIsDeletedIsLeft) {
    store(u"a"_s);
    const auto controller = makeController();
    const auto group = createGroup(m_persistence.viewContext(),
                                   {.title = u"Work"_s, .color = Qt::red, .clips = {}});
    ASSERT_TRUE(group && *group);
    controller->show();
    auto* chips = controller->panel()->findChild<ChipRow*>();
    chips->groupChip((*group)->id())->click();
    ASSERT_TRUE(waitUntil([&] { return controller->clips().cards().isEmpty(); }));
    ASSERT_TRUE(deleteGroup(**group));
    ASSERT_TRUE(waitUntil([&] { return controller->clips().cards().size() == 1; }));
    EXPECT_EQ(chips->selectedGroup(), std::nullopt);
}

TEST_F(Controller, ChoosingBeyondTheListDoesNothing) {
    store(u"only"_s);
    const auto controller = makeController();
    controller->show();
    const qint64 count = m_pasteboard.changeCount();
    controller->chooseClip(1, controller->clips().clips());
    controller->chooseClip(-1, controller->clips().clips());
    EXPECT_TRUE(controller->isVisible());
    EXPECT_EQ(m_pasteboard.changeCount(), count);
}

}  // namespace
}  // namespace quillo::testing
