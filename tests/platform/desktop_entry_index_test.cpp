// SPDX-License-Identifier: MIT
#include "platform/freedesktop/desktop_entry_index.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <thread>

#include "support/wait_until.h"

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;

class DesktopEntryIndexTest : public ::testing::Test {
protected:
    void write(const QString& file, const QByteArray& keys) const {
        const QString path = m_home.filePath(file);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile entry(path);
        ASSERT_TRUE(entry.open(QIODevice::WriteOnly));
        entry.write("[Desktop Entry]\nType=Application\n" + keys);
    }

    [[nodiscard]] QStringList folders() const {
        return {m_home.filePath(u"own"_s), m_home.filePath(u"missing"_s),
                m_home.filePath(u"system"_s)};
    }

    QTemporaryDir m_home;
};

QString idOf(const std::optional<InstalledApplication>& application) {
    return application ? application->bundleIdentifier : QString();
}

struct Mapping {
    const char* name;
    ProgramTraces traces;
    QString identifier;
};

TEST_F(DesktopEntryIndexTest, MapsWindowsToEntries) {
    write(u"system/debian-xterm.desktop"_s, "Name=XTerm\nStartupWMClass=XTerm\n");
    write(u"system/browser.desktop"_s, "Name=Browser\nStartupWMClass=Browser\nExec=browser %U\n");
    write(u"system/browser-app-1.desktop"_s, "Name=Mail\nStartupWMClass=crx_mail\nExec=browser\n");
    write(u"system/thunar.desktop"_s, "Name=Files\nExec=thunar\n");
    write(u"system/org.xfce.thunar.desktop"_s, "Name=Decoy\nNoDisplay=true\n");
    write(u"system/org.gnome.gedit.desktop"_s, "Name=Editor\nNoDisplay=true\n");
    write(u"system/kde/konsole.desktop"_s, "Name=Konsole\n");
    write(u"system/tool.desktop"_s, "Name=Tool\nExec=/opt/tool/test_platform_services\n");
    const DesktopEntryCatalogue catalogue = DesktopEntryCatalogue::scan(folders(), {});
    const Mapping rows[] = {
        {"StartupWMClass is the class", {u"xterm"_s, u"myterm"_s, {}, 0}, u"debian-xterm"_s},
        {"the instance is nearer", {u"Browser"_s, u"crx_mail"_s, {}, 0}, u"browser-app-1"_s},
        {"named after the class", {u"Thunar"_s, u"x"_s, u"org.xfce.thunar"_s, 0}, u"thunar"_s},
        {"last component", {u"Gedit"_s, u"gedit"_s, {}, 0}, u"org.gnome.gedit"_s},
        {"full id as class", {u"org.gnome.gedit"_s, {}, {}, 0}, u"org.gnome.gedit"_s},
        {"entry in a subfolder", {u"kde-konsole"_s, {}, {}, 0}, u"kde-konsole"_s},
        {"GTK's id at last", {u"Odd"_s, u"odd"_s, u"org.gnome.gedit"_s, 0}, u"org.gnome.gedit"_s},
        {"nothing fits", {u"Odd"_s, u"odd"_s, {}, 0}, QString()},
        {"no traces", {}, QString()},
    };
    for (const Mapping& row : rows) {
        EXPECT_EQ(idOf(catalogue.applicationOfWindow(row.traces)), row.identifier) << row.name;
    }
    EXPECT_EQ(idOf(catalogue.applicationOfProgram(u"browser"_s)), u"browser"_s)
        << "the browser itself before a page of it";
}

TEST_F(DesktopEntryIndexTest, TheNearerFolderWinsAndCanDelete) {
    write(u"own/editor.desktop"_s, "Name=Mine\nIcon=mine\nCategories=Utility;\n");
    write(u"system/editor.desktop"_s, "Name=Theirs\n");
    write(u"own/gone.desktop"_s, "Hidden=true\n");
    write(u"system/gone.desktop"_s, "Name=Gone\n");
    write(u"system/nameless.desktop"_s, "");
    write(u"system/huge.desktop"_s, "Name=Huge\n#" + QByteArray(300 * 1024, 'x'));
    ASSERT_TRUE(QDir().mkpath(m_home.filePath(u"system/folder.desktop"_s)));
    DesktopEntryIndex index(folders(), {});
    const auto editor = index.application(u"editor"_s);
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->name, u"Mine"_s);
    EXPECT_EQ(editor->iconName, u"mine"_s);
    EXPECT_EQ(editor->categories, QStringList{u"Utility"_s});
    EXPECT_EQ(index.application(u"nameless"_s)->name, u"nameless"_s);
    for (const QString& identifier : {u"gone"_s, u"huge"_s, u"folder"_s}) {
        EXPECT_FALSE(index.application(identifier)) << identifier.toStdString();
    }
}

TEST_F(DesktopEntryIndexTest, TheProgramOfTheProcessIsTheLastResort) {
    const QByteArray self = QFileInfo(QCoreApplication::applicationFilePath()).fileName().toUtf8();
    write(u"system/self.desktop"_s, "Name=Self\nExec=/somewhere/" + self + " %U\n");
    DesktopEntryIndex index(folders(), {});
    const ProgramTraces traces{u"Odd"_s, u"odd"_s, {}, QCoreApplication::applicationPid()};
    EXPECT_EQ(idOf(index.applicationOfWindow(traces)), u"self"_s);
    EXPECT_FALSE(index.applicationOfWindow({u"Odd"_s, u"odd"_s, {}, 0x7fffffff}));
}

TEST_F(DesktopEntryIndexTest, AProgramInstalledLaterIsFound) {
    write(u"system/first.desktop"_s, "Name=First\n");
    DesktopEntryIndex index(folders(), {});
    ASSERT_TRUE(index.application(u"first"_s));
    EXPECT_FALSE(index.application(u"own"_s));
    write(u"own/later.desktop"_s, "Name=Later\n");
    EXPECT_TRUE(waitUntil([&] { return index.application(u"later"_s).has_value(); }));
    EXPECT_TRUE(index.applicationOfWindow({u"First"_s, {}, {}, 0}));
}

TEST_F(DesktopEntryIndexTest, ThreadsMayAskWhileItWarmsUp) {
    for (int i = 0; i < 200; ++i) {
        write(u"system/program%1.desktop"_s.arg(i), "Name=Program\n");
    }
    DesktopEntryIndex index(folders(), {});
    index.warmUp();
    std::atomic<int> found = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&index, &found, i] {
                found += index.application(u"program%1"_s.arg(i)).has_value() ? 1 : 0;
            });
        }
    }
    EXPECT_EQ(found, 4);
}

}  // namespace
}  // namespace quillo::testing
