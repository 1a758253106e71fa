// SPDX-License-Identifier: MIT
// The window's General, Capture and Privacy pages: what they show, what they write, and that they
// follow their owners.
#include <gtest/gtest.h>

#include <QApplication>
#include <QJsonArray>
#include <QKeyEvent>
#include <QLabel>
#include <QRegularExpression>

#include "app/settings/choice_box.h"
#include "app/settings/segmented_control.h"
#include "app/settings/settings_view.h"
#include "app/settings/status_label.h"
#include "app/settings/toggle_switch.h"
#include "app/settings/value_slider.h"
#include "appearance/clip_type_color_manager.h"
#include "capture/capture_sound.h"
#include "capture/pasteboard_watcher.h"
#include "hotkey/hotkey_manager.h"
#include "library/groups/sheet.h"
#include "model/clip.h"
#include "platform/images/qt_image_codec.h"
#include "platform/text/document_reader.h"
#include "support/fake_hot_keys.h"
#include "support/fake_login_item.h"
#include "support/fake_pasteboard.h"
#include "support/fake_sound_player.h"
#include "support/fake_system_appearance.h"
#include "support/fake_workspace.h"
#include "support/in_memory_store.h"
#include "support/manual_clock.h"
#include "support/manual_tick_timer.h"
#include "support/memory_user_defaults.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

class SettingsViewTest : public ::testing::Test {
protected:
    ~SettingsViewTest() override {
        m_watcher.stop();
        m_store.waitUntilIdle();
    }

    SettingsView& open(SettingsTab tab = SettingsTab::General) {
        m_view = std::make_unique<SettingsView>(SettingsServices{
            m_defaults, m_store, m_watcher, m_hotkey, m_colors, m_theme, m_sounds, m_loginItem});
        m_view->selectTab(tab);
        show();
        return *m_view;
    }
    void show() {
        m_view->show();
        // Without a display nobody else makes it so.
        QApplication::setActiveWindow(m_view.get());
    }

    template <typename Control>
    [[nodiscard]] Control& named(const QString& name) {
        const QList<Control*> controls = m_view->findChildren<Control*>();
        for (Control* control : controls) {
            if (control->accessibleName() == name) {
                return *control;
            }
        }
        throw std::runtime_error("no control is called " + name.toStdString());
    }
    [[nodiscard]] QStringList texts() {
        QStringList result;
        const QList<QLabel*> labels = m_view->findChildren<QLabel*>();
        for (const QLabel* label : labels) {
            if (label->isVisible()) {
                result.append(label->text());
            }
        }
        return result;
    }
    void press(int key, Qt::KeyboardModifiers modifiers = {}, quint32 evdev = 0) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, evdev + 8, 0, 0);
        QApplication::sendEvent(QApplication::focusWidget(), &event);
    }
    void insertClips(int count) {
        ObjectContext& context = m_store.viewContext();
        QList<std::shared_ptr<Clip>> clips;
        for (int i = 0; i < count; ++i) {
            clips.append(Clip::create(context, m_clock.now()));
        }
        ASSERT_TRUE(context.save());
    }

    ManualClock m_clock;
    MemoryUserDefaults m_defaults;
    NotificationCenter m_notifications;
    FakePasteboard m_pasteboard;
    FakeWorkspace m_workspace;
    FakeHotKeys m_hotKeys;
    FakeSoundPlayer m_player;
    FakeLoginItem m_loginItem;
    FakeSystemAppearance m_desktop;
    DocumentReader m_reader;
    QtImageCodec m_images;
    ManualTickTimer m_timer;
    PersistenceController m_store{inMemory(m_clock)};
    ClipSaver m_saver{{m_store, m_defaults, m_notifications, m_reader, m_clock}};
    PasteboardWatcher m_watcher{
        {m_pasteboard, m_workspace, m_timer, m_saver, m_images, m_defaults}};
    ThemeManager m_theme{m_defaults, m_desktop};
    ClipTypeColorManager m_colors{m_defaults, m_theme};
    HotkeyManager m_hotkey{{m_hotKeys, m_defaults, m_workspace}, nullptr};
    CaptureSounds m_sounds{m_defaults, m_player, m_notifications};
    std::unique_ptr<SettingsView> m_view;
};

// What is shown, by a short text for each control, for what the settings hold.
TEST_F(SettingsViewTest, ShowsWhatIsInForceWhateverTheSettingsHold) {
    const struct {
        const char* name;
        QJsonObject settings;
        const char* shown;
    } rows[] = {
        {"fresh", {}, "paste:1 images:1 files:1 links:1 limit:5 Unlimited sound:Frog 40% size:1"},
        {"all chosen",
         {{u"enableAutoPaste"_s, false},
          {u"captureImages"_s, false},
          {u"captureFiles"_s, false},
          {u"fetchLinkPreviews"_s, false},
          {u"maxHistoryItems"_s, 200},
          {u"captureSound"_s, u"none"_s},
          {u"captureSoundVolume"_s, 0.85},
          {u"imageBadgeSize"_s, u"large"_s}},
         "paste:0 images:0 files:0 links:0 limit:2 200 sound:Off 85% size:2"},
        {"between the offers",
         {{u"maxHistoryItems"_s, 1000}, {u"captureSound"_s, u"frog"_s}},
         "paste:1 images:1 files:1 links:1 limit:-1 1000 sound:Off 40% size:1"},
        {"absurd",
         {{u"maxHistoryItems"_s, -7},
          {u"captureSoundVolume"_s, 1e300},
          {u"imageBadgeSize"_s, u"huge"_s}},
         "paste:1 images:1 files:1 links:1 limit:5 Unlimited sound:Frog 100% size:1"},
        {"wrong types",
         {{u"enableAutoPaste"_s, 0},
          {u"captureImages"_s, u"no"_s},
          {u"captureFiles"_s, QJsonArray{false}},
          {u"fetchLinkPreviews"_s, QJsonValue::Null},
          {u"maxHistoryItems"_s, u"50"_s},
          {u"captureSound"_s, 3},
          {u"captureSoundVolume"_s, u"loud"_s},
          {u"imageBadgeSize"_s, 12}},
         "paste:1 images:1 files:1 links:1 limit:5 Unlimited sound:Frog 40% size:1"},
    };
    open();
    m_view->selectTab(SettingsTab::Capture);
    const auto shown = [this] {
        const QStringList labels = texts();
        const QString limit = labels.contains(u"Unlimited"_s) ? u"Unlimited"_s : [&labels] {
            for (const QString& text : labels) {
                if (text.toInt() > 0) {
                    return text;
                }
            }
            return QString();
        }();
        const QString percent = labels.filter(QRegularExpression(u"^\\d+%$"_s)).value(0);
        return u"paste:%1 images:%2 files:%3 links:%4 limit:%5 %6 sound:%7 %8 size:%9"_s
            .arg(named<ToggleSwitch>(u"Auto-Paste"_s).isChecked())
            .arg(named<ToggleSwitch>(u"Capture Images"_s).isChecked())
            .arg(named<ToggleSwitch>(u"Capture Files"_s).isChecked())
            .arg(named<ToggleSwitch>(u"Link Previews"_s).isChecked())
            .arg(named<SegmentedControl>(u"Maximum number of clips to keep"_s).currentIndex())
            .arg(limit, named<ChoiceBox>(u"Capture Sound"_s).currentText(), percent)
            .arg(named<SegmentedControl>(u"Image Info Size"_s).currentIndex());
    };
    for (const auto& row : rows) {
        const QStringList before = m_defaults.values().keys();
        for (const QString& key : before) {
            m_defaults.remove(key);
        }
        for (auto value = row.settings.begin(); value != row.settings.end(); ++value) {
            m_defaults.setObject(value.key(), value.value());
        }
        EXPECT_EQ(shown(), QString::fromLatin1(row.shown)) << row.name << ": the open window";
        open();
        m_view->selectTab(SettingsTab::Capture);
        EXPECT_EQ(shown(), QString::fromLatin1(row.shown)) << row.name << ": a new one";
        EXPECT_EQ(m_defaults.values(), row.settings) << row.name << ": showing writes nothing";
    }
}

TEST_F(SettingsViewTest, EachControlWritesItsSettingAtOnce) {
    open();
    m_view->selectTab(SettingsTab::Capture);
    const auto turn = [this](const char* name) {
        named<ToggleSwitch>(QString::fromLatin1(name)).click();
    };
    const auto segment = [this](const char* control, int index) {
        named<SegmentedControl>(QString::fromLatin1(control))
            .findChildren<PanelButton*>()
            .at(index)
            ->click();
    };
    const struct {
        const char* key;
        std::function<void()> use;
        QJsonValue value;
    } rows[] = {
        {"enableAutoPaste", [&] { turn("Auto-Paste"); }, false},
        {"captureImages", [&] { turn("Capture Images"); }, false},
        {"captureFiles", [&] { turn("Capture Files"); }, false},
        {"fetchLinkPreviews", [&] { turn("Link Previews"); }, false},
        {"fetchLinkPreviews", [&] { turn("Link Previews"); }, true},
        {"maxHistoryItems", [&] { segment("Maximum number of clips to keep", 4); }, 500},
        {"maxHistoryItems", [&] { segment("Maximum number of clips to keep", 5); }, 0},
        {"imageBadgeSize", [&] { segment("Image Info Size", 0); }, u"small"_s},
        {"captureSoundVolume",
         [&] {
             named<ValueSlider>(u"Volume"_s).setFocus();
             press(Qt::Key_Right);
         },
         0.45},
        {"captureSound",
         [&] {
             named<ChoiceBox>(u"Capture Sound"_s).setFocus();
             press(Qt::Key_Down);
         },
         u"Basso"_s},
    };
    for (const auto& row : rows) {
        row.use();
        EXPECT_EQ(m_defaults.values().value(QString::fromLatin1(row.key)), row.value) << row.key;
    }
    EXPECT_TRUE(m_player.played().isEmpty()) << "choosing a sound plays nothing";
    named<QAbstractButton>(u"Preview"_s).click();
    ASSERT_EQ(m_player.played().size(), 1);
    EXPECT_EQ(m_player.played().first().first, u"Basso"_s);
    EXPECT_FLOAT_EQ(m_player.played().first().second, 0.45F);
}

// A limit deletes with the next copy: walking past one on the way to another must not set it.
TEST_F(SettingsViewTest, TheArrowKeysPassOverLimitsWithoutChoosingThem) {
    open(SettingsTab::Capture);
    auto& limits = named<SegmentedControl>(u"Maximum number of clips to keep"_s);
    limits.findChildren<PanelButton*>().last()->setFocus();
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    EXPECT_FALSE(m_defaults.object(u"maxHistoryItems"_s));
    press(Qt::Key_Return);
    EXPECT_EQ(m_defaults.integer(u"maxHistoryItems"_s), 300);
}

TEST_F(SettingsViewTest, TheLaunchSwitchShowsWhatIsRegisteredAndSaysWhyAChangeFailed) {
    open();
    auto& launch = named<ToggleSwitch>(u"Launch at Login"_s);
    EXPECT_FALSE(launch.isChecked());
    launch.click();
    EXPECT_TRUE(launch.isChecked());
    EXPECT_TRUE(m_loginItem.isRegistered());
    m_loginItem.setError(Error{ErrorKind::NotPermitted, u"the folder is read-only"_s});
    ::testing::internal::CaptureStdout();
    launch.click();
    const std::string line = "Failed to disable launch at login: the folder is read-only";
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), line + "\n");
    EXPECT_TRUE(texts().contains(QString::fromStdString(line)));
    EXPECT_TRUE(launch.isChecked()) << "it is registered still";
    m_loginItem.setError({});
    launch.click();
    EXPECT_FALSE(launch.isChecked());
    EXPECT_FALSE(texts().contains(QString::fromStdString(line)));
    EXPECT_EQ(m_defaults.boolean(u"launchAtLogin"_s), false);
}

TEST_F(SettingsViewTest, CaptureStartsWhenThePageIsShownAndFollowsItsButton) {
    open();
    EXPECT_TRUE(m_watcher.isRunning());
    named<QAbstractButton>(u"Stop Clipboard Monitoring"_s).click();
    EXPECT_FALSE(m_watcher.isRunning());
    EXPECT_TRUE(texts().contains(u"Stopped"_s));
    m_watcher.start();
    EXPECT_TRUE(texts().contains(u"Running"_s)) << "started by somebody else";
    m_watcher.stop();
    m_view->selectTab(SettingsTab::Privacy);
    EXPECT_FALSE(m_watcher.isRunning());
    m_view->selectTab(SettingsTab::General);
    EXPECT_TRUE(m_watcher.isRunning());
}

TEST_F(SettingsViewTest, TheShortcutIsRecordedRefusedAndGivenBack) {
    m_hotKeys.takeByAnother({9, 768});
    m_hotkey.resetToDefault();
    open();
    EXPECT_TRUE(texts().contains(u"Disabled"_s));
    m_hotKeys.giveBack({9, 768});
    m_view->hide();
    show();
    EXPECT_TRUE(texts().contains(u"Enabled"_s)) << "tried again as the window is shown";

    auto& shortcut = named<QAbstractButton>(u"Shortcut: Shift-Super-V"_s);
    shortcut.click();
    EXPECT_EQ(shortcut.text(), u"Press keys..."_s);
    EXPECT_TRUE(texts().contains(u"Press your desired key combination, or Esc to cancel."_s));
    press(Qt::Key_Escape, {}, 1);
    EXPECT_EQ(shortcut.text(), u"⇧⌘V"_s);
    EXPECT_TRUE(m_view->isVisible()) << "Escape ended the recording only";

    shortcut.click();
    press(Qt::Key_C, Qt::ControlModifier, 46);
    ASSERT_NE(Sheet::openIn(m_view.get()), nullptr);
    EXPECT_TRUE(texts().contains(
        u"This shortcut conflicts with \"Copy\". Please choose a different combination."_s));
    press(Qt::Key_Escape);
    EXPECT_EQ(Sheet::openIn(m_view.get()), nullptr);
    EXPECT_EQ(m_hotkey.currentConfig(), HotkeyConfig());

    shortcut.click();
    m_view->close();
    EXPECT_FALSE(m_hotKeys.isSuspended()) << "a window closed while it records";
    open();
    named<QAbstractButton>(u"Shortcut: Shift-Super-V"_s).click();
    m_view.reset();
    EXPECT_FALSE(m_hotKeys.isSuspended());
}

TEST_F(SettingsViewTest, DeleteAllAsksAndEmptiesTheHistory) {
    insertClips(3);
    open();
    const auto count = [this] { return m_store.viewContext().count({}).value(); };
    named<QAbstractButton>(u"Delete All"_s).click();
    EXPECT_TRUE(texts().contains(u"Delete All Clips?"_s));
    press(Qt::Key_Return);
    EXPECT_EQ(Sheet::openIn(m_view.get()), nullptr);
    EXPECT_EQ(count(), 3) << "what Return answers first deletes nothing";

    named<QAbstractButton>(u"Delete All"_s).click();
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    EXPECT_TRUE(waitUntil([&] { return count() == 0; }));
    EXPECT_TRUE(waitUntil([&] { return texts().contains(u"All clips are deleted"_s); }));
}

TEST_F(SettingsViewTest, KeysChangeTheTabAndCloseTheWindow) {
    open();
    const struct {
        int key;
        Qt::KeyboardModifiers modifiers;
        SettingsTab tab;
    } rows[] = {
        {Qt::Key_Right, {}, SettingsTab::Capture},
        {Qt::Key_4, Qt::ControlModifier, SettingsTab::Privacy},
        {Qt::Key_Tab, Qt::ControlModifier, SettingsTab::General},
        {Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier, SettingsTab::Privacy},
        {Qt::Key_Left, {}, SettingsTab::Appearance},
    };
    for (const auto& row : rows) {
        press(row.key, row.modifiers);
        EXPECT_EQ(m_view->selectedTab(), row.tab) << row.key;
    }
    press(Qt::Key_Escape);
    EXPECT_FALSE(m_view->isVisible());
}

}  // namespace
}  // namespace quillo::testing
