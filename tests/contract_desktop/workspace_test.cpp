// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>

#include "contract_desktop/desktop_probe.h"
#include "platform/freedesktop/desktop_entry_index.h"
#include "platform/x11/desktop/x11_workspace.h"
#include "support/wait_until.h"

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class X11WorkspaceTest : public ::testing::Test {
protected:
    void SetUp() override {
        const QString folder =
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
            u"/applications"_s;
        ASSERT_TRUE(QDir().mkpath(folder));
        QFile entry(folder + u"/com.example.Term.desktop"_s);
        ASSERT_TRUE(entry.open(QIODevice::WriteOnly));
        entry.write(
            "[Desktop Entry]\nType=Application\nName=Example Terminal\n"
            "StartupWMClass=QuilloTerm\n");
        ASSERT_TRUE(m_workspace);
    }

    /// 0: whether no program is in front.
    [[nodiscard]] bool isInFront(xcb_window_t window) {
        const auto front = m_workspace->frontmostApplication();
        return (front ? front->windowId : 0) == window;
    }

    /// As the window manager would on a click; also where there is none. It is seldom asked again:
    /// what it has not served yet it would serve when the test has gone on.
    [[nodiscard]] bool bringToFront(xcb_window_t window) {
        RunningApplication application;
        application.windowId = window;
        QElapsedTimer asked;
        return waitUntil([&] {
            if (!asked.isValid() || asked.hasExpired(200)) {
                m_workspace->activate(application);
                asked.start();
            }
            return focusIsIn(window) && isInFront(window);
        });
    }

    [[nodiscard]] bool focusIsIn(xcb_window_t window) {
        auto connection = x11::connectToServer();
        return connection && x11::WindowQueries(*connection).hasFocus(window);
    }

    DesktopEntryIndex m_index;
    std::unique_ptr<x11::X11Workspace> m_workspace =
        x11::X11Workspace::create(m_index).value_or(nullptr);
};

TEST_F(X11WorkspaceTest, TheProgramInFrontIsItsDesktopEntry) {
    Terminal terminal(u"QuilloTerm"_s);
    ASSERT_TRUE(bringToFront(terminal.id()));
    const auto front = m_workspace->frontmostApplication();
    ASSERT_TRUE(front);
    EXPECT_EQ(front->windowClass, u"QuilloTerm"_s);
    EXPECT_EQ(front->windowInstance, u"quilloterm"_s);
    EXPECT_EQ(front->processId, terminal.processId());
    EXPECT_EQ(front->bundleIdentifier, u"com.example.Term"_s);
    EXPECT_EQ(front->localizedName, u"Example Terminal"_s);
    EXPECT_EQ(m_workspace->installedApplication(u"com.example.Term"_s)->name,
              u"Example Terminal"_s);
    EXPECT_FALSE(m_workspace->installedApplication(u"com.example.None"_s));

    const auto frame = m_workspace->frame(*front);
    ASSERT_TRUE(frame);
    EXPECT_TRUE(QRect(0, 0, 1440, 900).contains(frame->center()));
    EXPECT_GT(frame->width(), 100);

    terminal.quit();
    EXPECT_TRUE(waitUntil([&] { return isInFront(0); }))
        << "a window that is gone is no program in front";
    EXPECT_FALSE(m_workspace->frame(*front));
    m_workspace->activate(*front);
}

TEST_F(X11WorkspaceTest, AnIgnoredWindowLeavesTheProgramBeforeItInFront) {
    const Terminal program(u"QuilloTerm"_s);
    ASSERT_TRUE(bringToFront(program.id()));
    const Terminal panel(u"QuilloPanel"_s);
    ASSERT_TRUE(bringToFront(program.id()));
    m_workspace->ignoreWindow(panel.id());
    RunningApplication application;
    application.windowId = panel.id();
    m_workspace->activate(application);
    ASSERT_TRUE(waitUntil([&] { return focusIsIn(panel.id()); }));
    EXPECT_EQ(m_workspace->frontmostApplication()->windowId, program.id());

    if (qEnvironmentVariable("WM") != u"none"_s) {
        // One that never saw another window takes the next one below.
        auto other = x11::X11Workspace::create(m_index);
        ASSERT_TRUE(other);
        (*other)->ignoreWindow(panel.id());
        EXPECT_EQ((*other)->frontmostApplication()->windowId, program.id());
    }
}

TEST_F(X11WorkspaceTest, TellsWhenAnActivatedWindowHasTheFocus) {
    const Terminal first(u"QuilloTerm"_s);
    const Terminal second(u"QuilloTerm"_s);
    ASSERT_TRUE(bringToFront(first.id()));
    ASSERT_TRUE(bringToFront(second.id()));
    RunningApplication target;
    for (int round = 0; round < 10; ++round) {
        target.windowId = round % 2 == 0 ? first.id() : second.id();
        std::optional<bool> answer;
        m_workspace->activate(target);
        m_workspace->whenFocused(target, 5s, [&](bool hasFocus) { answer = hasFocus; });
        EXPECT_FALSE(answer) << "it may not answer from inside the call";
        ASSERT_TRUE(waitUntil([&] { return answer.has_value(); }));
        EXPECT_TRUE(*answer);
        EXPECT_TRUE(focusIsIn(target.windowId));
    }
}

TEST_F(X11WorkspaceTest, TellsOfEachChangeOfTheActiveWindowWhileItIsWatched) {
    if (qEnvironmentVariable("WM") == u"none"_s) {
        GTEST_SKIP() << "a window manager says which window is active";
    }
    const Terminal first(u"QuilloTerm"_s);
    const Terminal second(u"QuilloTerm"_s);
    ASSERT_TRUE(bringToFront(first.id()));
    int changes = 0;
    auto watch = m_workspace->watchActivation([&] { ++changes; });
    ASSERT_TRUE(watch);
    ASSERT_TRUE(bringToFront(second.id()));
    EXPECT_TRUE(waitUntil([&] { return changes > 0; }));
    watch.reset();
    changes = 0;
    ASSERT_TRUE(bringToFront(first.id()));
    QCoreApplication::processEvents();
    EXPECT_EQ(changes, 0);
}

TEST_F(X11WorkspaceTest, AWaitForTheFocusEndsAtItsDeadlineAndANewOneReplacesIt) {
    const Terminal first(u"QuilloTerm"_s);
    const Terminal second(u"QuilloTerm"_s);
    ASSERT_TRUE(bringToFront(second.id()));
    RunningApplication behind;
    behind.windowId = first.id();
    RunningApplication gone;
    gone.windowId = 0x1fffffff;

    QStringList answers;
    const auto noting = [&answers](const QString& name) {
        return [&answers, name](bool hasFocus) {
            answers.append(name + (hasFocus ? u" yes"_s : u" no"_s));
        };
    };
    m_workspace->whenFocused(behind, 10ms, noting(u"replaced"_s));
    m_workspace->whenFocused(behind, 50ms, noting(u"behind"_s));
    ASSERT_TRUE(waitUntil([&] { return answers.size() == 1; }));
    m_workspace->whenFocused(gone, 10ms, noting(u"gone"_s));
    ASSERT_TRUE(waitUntil([&] { return answers.size() == 2; }));
    // The connection survived the question about a window that is gone.
    m_workspace->activate(behind);
    m_workspace->whenFocused(behind, 5s, noting(u"activated"_s));
    ASSERT_TRUE(waitUntil([&] { return answers.size() == 3; }));
    EXPECT_EQ(answers, (QStringList{u"behind no"_s, u"gone no"_s, u"activated yes"_s}));
}

}  // namespace
}  // namespace quillo::testing
