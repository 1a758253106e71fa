// SPDX-License-Identifier: MIT
// The panel's controller with a store in memory and a fake desktop.
#include <gtest/gtest.h>

#include <QAbstractButton>
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

RunningApplication program(quint32 window, const QString& windowClass) {
    RunningApplication application;
    application.windowId = window;
    application.windowClass = windowClass;
    return application;
}

class Controller : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<OverlayPanelController> makeController() {
        return std::make_unique<OverlayPanelController>(OverlayPanelServices{
            m_persistence, m_workspace, m_pasteBack, m_defaults, m_theme, m_colors, m_notifications,
            m_images, m_richText, m_thumbnails, m_surface, m_clock, [this] { ++m_captureRequests; },
            [] { return 4711U; }});
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
    int m_captureRequests = 0;
};

TEST_F(Controller, FirstShowPlacesThePanelAtTheBottomAndAsksForTheFocus) {
    const auto controller = makeController();
    int announced = 0;
    m_notifications.observe(kOverlayDidShowNotification, controller.get(), [&] { ++announced; });
    controller->show();
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    EXPECT_EQ(controller->panel()->geometry(),
              QRect(screen.x(), screen.bottom() + 1 - 340, screen.width(), 320));
    EXPECT_TRUE(controller->isPositionLocked());
    EXPECT_FALSE(controller->panel()->isMovable());
    EXPECT_EQ(m_surface.lastUserTime, 4711U);
    EXPECT_EQ(m_surface.focusRequests, 1);
    EXPECT_EQ(m_captureRequests, 1);
    EXPECT_EQ(announced, 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(announced, 1);
    EXPECT_TRUE(m_defaults.values().isEmpty());
}

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

TEST_F(Controller, ReturnPastesTheSelectedCardIntoTheProgramThatWasInFront) {
    m_workspace.setActive(program(7, u"Editor"_s));
    store(u"oldest"_s);
    store(u"middle"_s);
    store(u"newest"_s);
    const auto controller = makeController();
    controller->show();
    press(*controller, Qt::Key_Right);
    EXPECT_EQ(controller->selectedIndex(), 1);
    m_workspace.setActive(program(8, u"Other"_s));
    m_clock.advance(1s);
    press(*controller, Qt::Key_Return);
    EXPECT_FALSE(controller->isVisible());
    EXPECT_EQ(pasteboardText(), "middle");
    ASSERT_EQ(m_workspace.activated.size(), 1);
    EXPECT_EQ(m_workspace.activated.first().windowId, 7U);
    ASSERT_TRUE(waitUntil([&] { return !m_keys.posted.isEmpty(); }));
    EXPECT_EQ(m_keys.posted, QList{PasteKeys::ControlV});
    ASSERT_TRUE(waitUntil(
        [&] { return controller->clips().clips().first()->displayText() == u"middle"_s; }));
}

TEST_F(Controller, DigitsChooseAndEscapeOnlyHides) {
    for (const QString& text : {u"a"_s, u"b"_s, u"c"_s}) {
        store(text);
    }
    const auto controller = makeController();
    controller->show();
    press(*controller, Qt::Key_7, u"7"_s);
    EXPECT_TRUE(controller->isVisible());
    press(*controller, Qt::Key_3, u"3"_s);
    EXPECT_FALSE(controller->isVisible());
    EXPECT_EQ(pasteboardText(), "a");
    controller->show();
    EXPECT_EQ(controller->selectedIndex(), 0);
    const qint64 count = m_pasteboard.changeCount();
    press(*controller, Qt::Key_Escape);
    EXPECT_FALSE(controller->isVisible());
    EXPECT_EQ(m_pasteboard.changeCount(), count);
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

TEST_F(Controller, ADraggedPlaceIsSavedOnHidingAndClearedByChoosingAPosition) {
    const auto controller = makeController();
    controller->setPositionLocked(false);
    controller->show();
    controller->panel()->move(5, 6);
    Q_EMIT controller->panel()->dragged();
    controller->hide();
    EXPECT_EQ(controller->customOrigin(), QPointF(5, 6));
    EXPECT_EQ(m_defaults.real(u"panelCustomX"_s), 5.0);
    EXPECT_EQ(m_defaults.boolean(u"panelHasCustomOrigin"_s), true);

    const auto restarted = makeController();
    EXPECT_FALSE(restarted->isPositionLocked());
    restarted->show();
    EXPECT_EQ(restarted->panel()->pos(), QPoint(5, 6));
    restarted->setPanelPosition(PanelPosition::Top);
    EXPECT_EQ(restarted->customOrigin(), std::nullopt);
    EXPECT_EQ(m_defaults.boolean(u"panelHasCustomOrigin"_s), false);
    EXPECT_EQ(m_defaults.string(u"panelPosition"_s), u"top"_s);
    EXPECT_EQ(restarted->panel()->pos().y(),
              QGuiApplication::primaryScreen()->availableGeometry().y() + 24);
    restarted->hide();
    EXPECT_EQ(restarted->customOrigin(), std::nullopt);
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

TEST_F(Controller, ADeletedCardIsOutOfSightAtOnceAndOutOfTheStoreWhenThePanelHides) {
    for (const QString& text : {u"a"_s, u"b"_s, u"c"_s}) {
        store(text);
    }
    const auto controller = makeController();
    const auto shown = [&] {
        QStringList texts;
        for (const CardContent& card : controller->clips().cards()) {
            texts.append(card.body);
        }
        return texts.join(u' ');
    };
    const auto stored = [&] {
        return m_persistence.viewContext().count(FetchRequest{}).value_or(-1);
    };
    controller->show();
    press(*controller, Qt::Key_Right);
    press(*controller, Qt::Key_Delete);
    EXPECT_EQ(shown(), u"c a"_s);
    EXPECT_EQ(controller->clips().total(), 2);
    EXPECT_EQ(controller->selectedIndex(), 1);
    press(*controller, Qt::Key_Delete);
    EXPECT_EQ(shown(), u"c"_s);
    EXPECT_EQ(stored(), 3);
    auto* undo = controller->panel()->findChild<HintsLine*>()->undoButton();
    ASSERT_TRUE(undo->isVisible());
    qobject_cast<QAbstractButton*>(undo)->click();
    EXPECT_EQ(shown(), u"c b a"_s);
    EXPECT_FALSE(undo->isVisible());

    press(*controller, Qt::Key_End);
    press(*controller, Qt::Key_Delete);
    EXPECT_EQ(shown(), u"c b"_s);
    controller->hide();
    ASSERT_TRUE(waitUntil([&] { return stored() == 2; }));
    EXPECT_EQ(shown(), u"c b"_s);
    EXPECT_EQ(controller->clips().total(), 2);
}

TEST_F(Controller, AGroupShowsItsOwnOrderAndPinsAndIsLeftWhenItIsDeleted) {
    for (const QString& text : {u"a"_s, u"b"_s, u"c"_s}) {
        store(text);
    }
    const auto controller = makeController();
    ObjectContext& context = m_persistence.viewContext();
    QList<QUuid> ids;
    for (const auto& clip : controller->clips().clips()) {
        ids.append(clip->id());
    }
    const auto group = createGroup(
        context, {.title = u"Work"_s, .color = Qt::red, .clips = {ids.at(0), ids.at(2)}});
    ASSERT_TRUE(group && *group);
    controller->show();
    auto* chips = controller->panel()->findChild<ChipRow*>();
    ASSERT_NE(chips->groupChip((*group)->id()), nullptr);
    chips->groupChip((*group)->id())->click();
    const auto shown = [&] {
        QStringList texts;
        for (const CardContent& card : controller->clips().cards()) {
            texts.append(card.isPinned ? u'*' + card.body : card.body);
        }
        return texts.join(u' ');
    };
    ASSERT_TRUE(waitUntil([&] { return shown() == u"c a"_s; }));
    press(*controller, Qt::Key_End);
    QKeyEvent pin(QEvent::KeyPress, Qt::Key_P, Qt::ControlModifier, u"\x10"_s);
    QCoreApplication::sendEvent(controller->panel()->windowHandle(), &pin);
    ASSERT_TRUE(waitUntil([&] { return shown().contains(u"*a"_s); })) << qPrintable(shown());
    EXPECT_FALSE(controller->clips().clips().constLast()->isPinned()) << "the group's pin";
    ASSERT_TRUE(deleteGroup(**group));
    ASSERT_TRUE(waitUntil([&] { return shown() == u"c b a"_s; }));
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
