// SPDX-License-Identifier: MIT
// The ordinary windows: when one is built, where it is put, what its settings may hold.
#include "app/windows/shell_windows.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QPointer>
#include <QScreen>

#include "support/memory_user_defaults.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

TEST(WindowFrames, AbsurdStoredFramesAreBroughtOnAScreen) {
    const QList<QRect> screens = {QRect(0, 32, 1440, 868), QRect(1440, 32, 1024, 736)};
    const QSize least(900, 600);
    const struct {
        const char* name;
        QString stored;
        std::optional<QRect> frame;
    } rows[] = {
        {"as it was", u"100 120 1000 700"_s, QRect(100, 120, 1000, 700)},
        {"on the second screen", u"1500 40 900 600"_s, QRect(1500, 40, 900, 600)},
        {"off every screen", u"-9000 -9000 1000 700"_s, QRect(0, 32, 1000, 700)},
        {"nearer the second screen", u"9000 9000 900 600"_s, QRect(1564, 168, 900, 600)},
        {"a screen that is gone", u"3000 100 900 600"_s, QRect(1564, 100, 900, 600)},
        {"too large", u"0 0 30000 30000"_s, QRect(0, 32, 1440, 868)},
        {"too small", u"100 120 2 2"_s, QRect(100, 120, 900, 600)},
        {"title bar above the edge", u"100 -300 1000 700"_s, QRect(100, 32, 1000, 700)},
        {"beyond all numbers", u"99999999999 0 1000 700"_s, std::nullopt},
        {"larger than any screen", u"0 0 40000 700"_s, std::nullopt},
        {"inside out", u"100 100 -1000 700"_s, std::nullopt},
        {"three numbers", u"100 100 1000"_s, std::nullopt},
        {"words", u"left top 10 10"_s, std::nullopt},
        {"empty", u""_s, std::nullopt},
    };
    for (const auto& row : rows) {
        MemoryUserDefaults defaults({{u"windowFrame_MainWindow"_s, row.stored}});
        const auto stored = WindowFrames(defaults).stored(u"MainWindow"_s);
        ASSERT_EQ(stored.has_value(), row.frame.has_value()) << row.name;
        if (stored) {
            EXPECT_EQ(visibleFrame(*stored, least, screens), *row.frame) << row.name;
        }
    }
    MemoryUserDefaults wrongType({{u"windowFrame_MainWindow"_s, 12}});
    EXPECT_EQ(WindowFrames(wrongType).stored(u"MainWindow"_s), std::nullopt);
}

class Shell : public ::testing::Test {
protected:
    ShellWindows::MakeContent content() {
        return [this] {
            ++built;
            return std::make_unique<QLabel>();
        };
    }

    static void close(QWidget* window) {
        window->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    int built = 0;
    int raised = 0;
    MemoryUserDefaults defaults;
    ShellWindows windows{defaults, {content(), content(), [this](QWindow&) { ++raised; }}};
};

TEST_F(Shell, AVisibleWindowIsRaisedAndAClosedOneBuiltAnew) {
    windows.showPreferences();
    const QPointer<QWidget> first = windows.preferencesWindow();
    windows.showPreferences();
    QCoreApplication::processEvents();
    EXPECT_EQ(windows.preferencesWindow(), first);
    EXPECT_EQ(std::tuple(built, raised), std::tuple(1, 2));
    close(first);
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(windows.preferencesWindow(), nullptr);
    windows.showPreferences();
    EXPECT_EQ(built, 2);
    EXPECT_TRUE(windows.preferencesWindow()->isVisible());
}

TEST_F(Shell, WindowsHaveTheirShapesAndComeBackWhereTheyWere) {
    windows.showPreferences();
    windows.showMainWindow();
    QWidget* const preferences = windows.preferencesWindow();
    QWidget* const library = windows.mainWindow();
    EXPECT_EQ(preferences->windowTitle(), u"Preferences"_s);
    EXPECT_EQ(preferences->minimumSize(), QSize(500, 450));
    EXPECT_EQ(preferences->maximumSize(), QSize(500, 450));
    EXPECT_EQ(library->windowTitle(), u"Quillo"_s);
    EXPECT_EQ(library->minimumSize(), QSize(900, 600));
    EXPECT_FALSE(library->windowIcon().isNull());
    const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
    EXPECT_LE((preferences->geometry().center() - middle).manhattanLength(), 2);

    preferences->move(40, 60);
    const QRect moved = preferences->geometry();
    close(preferences);
    windows.showPreferences();
    EXPECT_EQ(windows.preferencesWindow()->geometry(), moved);
    EXPECT_FALSE(defaults.string(u"windowFrame_MainWindow"_s)) << "it was not closed yet";
}

}  // namespace
}  // namespace quillo::testing
