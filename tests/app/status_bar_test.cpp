// SPDX-License-Identifier: MIT
// The status item: its icon, its menu, the bounce, and what it opens.
#include <gtest/gtest.h>

#include <QLabel>
#include <algorithm>
#include <cmath>
#include <map>

#include "app/status/status_bar_controller.h"
#include "appearance/contrast.h"
#include "support/fake_hot_keys.h"
#include "support/fake_panel_surface.h"
#include "support/fake_status_item.h"
#include "support/fake_system_appearance.h"
#include "support/fake_workspace.h"
#include "support/memory_user_defaults.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

using std::chrono::milliseconds;

class StatusBar : public ::testing::Test {
protected:
    /// Lets that much time pass for what waits.
    void advance(milliseconds step) {
        const milliseconds end = m_now + step;
        while (!m_waiting.empty() && m_waiting.begin()->first <= end) {
            m_now = m_waiting.begin()->first;
            const auto work = m_waiting.begin()->second;
            m_waiting.erase(m_waiting.begin());
            work();
        }
        m_now = end;
    }

    std::unique_ptr<StatusBarController> make() {
        return std::make_unique<StatusBarController>(StatusBarServices{
            item, popover, windows, defaults, notifications, appearance,
            [this](milliseconds delay, std::function<void()> work) {
                m_waiting.emplace(m_now + delay, std::move(work));
            },
            [this] {
                return std::make_unique<HotkeyManager>(HotkeyServices{hotKeys, defaults, workspace},
                                                       nullptr);
            },
            [this] { ++overlayHidden; }, [this] { ++updateChecks; }, [this] { ++quits; }});
    }

    [[nodiscard]] QStringList titles() const {
        QStringList all;
        for (const StatusMenuItem& entry : item.menu) {
            all.append(entry.title);
        }
        return all;
    }

    [[nodiscard]] QStringList checkedIcons() const {
        QStringList all;
        for (const StatusMenuItem& entry : item.menu.value(4).submenu) {
            if (entry.mark == StatusMenuItem::Mark::Checked) {
                all.append(entry.representedObject.toString());
            }
        }
        return all;
    }

    FakeStatusItem item;
    FakePanelSurface surface;
    FakeHotKeys hotKeys;
    FakeWorkspace workspace;
    FakeSystemAppearance appearance;
    MemoryUserDefaults defaults;
    NotificationCenter notifications;
    Popover popover{surface, [] { return std::make_unique<QLabel>(); }};
    ShellWindows windows{defaults,
                         {[] { return std::make_unique<QLabel>(); },
                          [] { return std::make_unique<QLabel>(); }, [](QWindow&) {}}};
    int overlayHidden = 0;
    int updateChecks = 0;
    int quits = 0;

private:
    milliseconds m_now{0};
    std::multimap<milliseconds, std::function<void()>> m_waiting;
};

TEST_F(StatusBar, MenuFollowsTheShortcutAndReachesEverything) {
    const auto controller = make();
    EXPECT_EQ(titles(), (QStringList{u"Show Overlay (⇧⌘V)"_s, u"Show Library"_s, u""_s,
                                     u"Preferences..."_s, u"Menu Bar Icon"_s,
                                     u"Check for Updates..."_s, u""_s, u"Quit Quillo"_s}));
    HotkeyManager manager({hotKeys, defaults, workspace}, nullptr);
    controller->setHotkeyManager(manager);
    ASSERT_EQ(manager.updateHotkey({49, 6144}), std::nullopt);
    EXPECT_EQ(titles().constFirst(), u"Show Overlay (⌃⌥Space)"_s);

    item.choose(u"Preferences..."_s);
    item.choose(u"Show Library"_s);
    item.choose(u"Check for Updates..."_s);
    item.choose(u"Quit Quillo"_s);
    ASSERT_NE(windows.preferencesWindow(), nullptr);
    ASSERT_NE(windows.mainWindow(), nullptr);
    EXPECT_TRUE(windows.preferencesWindow()->isVisible() && windows.mainWindow()->isVisible());
    EXPECT_EQ(std::tuple(overlayHidden, updateChecks, quits), std::tuple(2, 1, 1));

    // A manager that comes later is the one that is followed.
    MemoryUserDefaults others;
    HotkeyManager second({hotKeys, others, workspace}, nullptr);
    controller->setHotkeyManager(second);
    ASSERT_EQ(manager.updateHotkey({50, 6144}), std::nullopt);
    EXPECT_EQ(titles().constFirst(), u"Show Overlay (⇧⌘V)"_s);
}

TEST_F(StatusBar, StoredIconsAreDistrusted) {
    const struct {
        const char* name;
        QJsonValue stored;
        StatusBarIcon icon;
    } rows[] = {
        {"none", QJsonValue::Undefined, StatusBarIcon::Quillo},
        {"known", u"scissors"_s, StatusBarIcon::Scissors},
        {"another case", u"Scissors"_s, StatusBarIcon::Quillo},
        {"unknown", u"pencil"_s, StatusBarIcon::Quillo},
        {"no text", 7, StatusBarIcon::Quillo},
    };
    for (const auto& row : rows) {
        defaults.setObject(u"statusBarIcon"_s, row.stored);
        EXPECT_EQ(make()->currentIcon(), row.icon) << row.name;
        EXPECT_EQ(defaults.object(u"statusBarIcon"_s).value_or(QJsonValue::Undefined), row.stored);
    }
}

TEST_F(StatusBar, AnIconIsChosenInTheMenuOrByHandAndEveryOneIsDrawn) {
    const auto controller = make();
    EXPECT_EQ(checkedIcons(), QStringList{u"MenuBarIcon"_s});
    QList<QImage> drawings;
    for (const StatusMenuItem& entry : QList<StatusMenuItem>(item.menu.at(4).submenu)) {
        entry.action(entry);
        EXPECT_EQ(defaults.string(u"statusBarIcon"_s), entry.representedObject.toString());
        EXPECT_EQ(checkedIcons(), QStringList{entry.representedObject.toString()});
        EXPECT_FALSE(drawings.contains(item.images.constLast())) << entry.title.toStdString();
        drawings.append(item.images.constLast());
    }
    EXPECT_EQ(drawings.size(), 9);
    for (const QVariant& nonsense : {QVariant(), QVariant(3), QVariant(u"pencil"_s)}) {
        StatusMenuItem entry;
        entry.representedObject = nonsense;
        controller->iconMenuItemTapped(entry);
        EXPECT_EQ(controller->currentIcon(), StatusBarIcon::Tray);
    }
    defaults.setObject(u"statusBarIcon"_s, u"paperclip"_s);
    EXPECT_EQ(checkedIcons(), QStringList{u"paperclip"_s});
}

TEST_F(StatusBar, SymbolsCanBeSeenOnPanelsOfEitherColour) {
    const QColor unknown = statusInk(std::nullopt);
    EXPECT_GE(contrastRatio(unknown, QColor(0xf0, 0xf0, 0xf2)), 3.0);
    EXPECT_GE(contrastRatio(unknown, QColor(0x2c, 0x2c, 0x2e)), 3.0);
    defaults.setObject(u"statusBarIcon"_s, u"scissors"_s);
    const auto controller = make();
    const QImage before = item.images.constLast();
    appearance.state(ColorScheme::Dark);
    EXPECT_NE(item.images.constLast(), before);
}

TEST_F(StatusBar, TwoClipsSavedAtOnceBounceOnce) {
    const auto controller = make();
    const QImage atRest = item.images.constLast();
    item.images.clear();
    notifications.post(kClipSavedNotification);
    advance(milliseconds(100));
    notifications.post(kClipSavedNotification);
    advance(milliseconds(460));
    EXPECT_EQ(item.images.size(), 9) << "eight steps, and back";
    EXPECT_EQ(item.images.constLast(), atRest);
    const QImage check =
        image(
            StatusPicture{.symbol = u"checkmark.circle.fill"_s, .ink = statusInk({}), .frame = {}})
            .pixmap(22, 22)
            .toImage();
    EXPECT_EQ(item.images.at(7), check) << "at rest again, as a check mark";
    EXPECT_TRUE(controller->isAnimating());
    advance(milliseconds(40));
    EXPECT_FALSE(controller->isAnimating());
    notifications.post(kClipSavedNotification);
    EXPECT_TRUE(controller->isAnimating());

    item.isThere = false;
    advance(milliseconds(600));
    notifications.post(kClipSavedNotification);
    EXPECT_FALSE(controller->isAnimating()) << "nobody would see it";
}

TEST_F(StatusBar, AnIconChosenDuringTheBounceStays) {
    const auto controller = make();
    controller->handleClipSaved();
    advance(milliseconds(300));
    controller->setIcon(StatusBarIcon::Paperclip);
    const QImage chosen = item.images.constLast();
    advance(milliseconds(400));
    EXPECT_EQ(item.images.constLast(), chosen);
}

TEST_F(StatusBar, NothingIsTouchedOnceTheControllerIsGone) {
    make()->handleClipSaved();
    const qsizetype shown = item.images.size();
    advance(milliseconds(1000));
    EXPECT_EQ(item.images.size(), shown);
}

TEST_F(StatusBar, AWithheldPasteIsShownForSomeSeconds) {
    const auto controller = make();
    const QImage atRest = item.images.constLast();
    controller->handlePasteWithheld();
    advance(milliseconds(5000));
    controller->handlePasteWithheld();
    advance(milliseconds(5000));
    EXPECT_NE(item.images.constLast(), atRest) << "counted from the latest";
    EXPECT_TRUE(item.toolTip.contains(u"not pasted"_s));
    advance(milliseconds(3000));
    EXPECT_EQ(item.images.constLast(), atRest);
    EXPECT_EQ(item.toolTip, u"Quillo"_s);
}

TEST_F(StatusBar, AClickTogglesThePopover) {
    const auto controller = make();
    item.rect = QRect(700, 2, 22, 22);
    Q_EMIT item.activated();
    EXPECT_TRUE(popover.isShown());
    EXPECT_EQ(overlayHidden, 1);
    Q_EMIT item.activated();
    EXPECT_FALSE(popover.isShown());
}

TEST(DropBounce, PassesItsKeyFramesAndRestsAtBothEnds) {
    const struct {
        int at;
        BounceFrame frame;
    } rows[] = {{-5, {0, 1, 1}},
                {0, {0, 1, 1}},
                {250, {-3, 0.85, 1.2}},
                {500, {0, 1, 1}},
                {501, {0, 1, 1}}};
    for (const auto& row : rows) {
        const BounceFrame frame = dropBounceAt(milliseconds(row.at));
        EXPECT_NEAR(frame.dropPoints, row.frame.dropPoints, 0.02) << row.at;
        EXPECT_NEAR(frame.scaleX, row.frame.scaleX, 0.002) << row.at;
        EXPECT_NEAR(frame.scaleY, row.frame.scaleY, 0.002) << row.at;
    }
    double lowest = 0;
    for (int at = 0; at <= 500; ++at) {
        const BounceFrame frame = dropBounceAt(milliseconds(at));
        // Slowly at first: a quarter of the way needs more than a quarter of the time.
        EXPECT_TRUE(at > 125 || frame.dropPoints < 8) << at;
        lowest = std::max(lowest, frame.dropPoints);
    }
    EXPECT_NEAR(lowest, 8, 0.1);
}

TEST(Popover, IsPlacedBesideItsAnchorAndKeptOnTheScreen) {
    const QRect area(0, 28, 1440, 872);
    const struct {
        const char* name;
        QRect anchor;
        QPoint topLeft;
    } rows[] = {
        {"below an icon at the top", {700, 2, 22, 22}, {510, 28}},
        {"above an icon at the bottom", {700, 876, 22, 22}, {510, 372}},
        {"at the right edge", {1410, 2, 22, 22}, {1040, 28}},
        {"at a pointer in the middle", {300, 300, 1, 1}, {100, 305}},
        {"far outside", {-5000, 9000, 1, 1}, {0, 400}},
    };
    for (const auto& row : rows) {
        const QRect frame = popoverFrame(row.anchor, {400, 500}, area);
        EXPECT_EQ(frame.topLeft(), row.topLeft) << row.name;
        EXPECT_TRUE(area.contains(frame)) << row.name;
    }
}

}  // namespace
}  // namespace quillo::testing
