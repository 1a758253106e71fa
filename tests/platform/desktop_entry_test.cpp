// SPDX-License-Identifier: MIT
#include "platform/freedesktop/desktop_entry.h"

#include <gtest/gtest.h>

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;

TEST(LocaleCandidates, GoFromExactToGeneral) {
    const std::pair<QByteArray, QList<QByteArray>> rows[] = {
        {"sr_YU.UTF-8@Latn", {"sr_YU@Latn", "sr_YU", "sr@Latn", "sr"}},
        {"de_AT.UTF-8", {"de_AT", "de"}},
        {"fr", {"fr"}},
        {"C.UTF-8", {}},
        {"POSIX", {}},
        {"", {}},
    };
    for (const auto& [locale, candidates] : rows) {
        EXPECT_EQ(localeCandidates(locale), candidates) << locale.constData();
    }
}

TEST(DesktopEntry, IsReadWithItsLocale) {
    const QByteArray bytes =
        "# a comment\n[Desktop Entry]\r\nType=Application\nName = Text "
        "Editor\nName[de]=Texteditor\n"
        "Name[de_AT]=Schreiber\\s2\nIcon=text\\\\editor\nStartupWMClass=Ed\nNoDisplay=true\n"
        "Categories=Utility;Text\\;Tools;;\nExec=/usr/bin/ed %U\nName=Later\n"
        "[Desktop Action new]\nName=New\nExec=other\n";
    const auto entry = parseDesktopEntry(bytes, {"de_AT", "de"});
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, u"Schreiber 2"_s);
    EXPECT_EQ(entry->iconName, u"text\\editor"_s);
    EXPECT_EQ(entry->startupWmClass, u"Ed"_s);
    EXPECT_EQ(entry->categories, (QStringList{u"Utility"_s, u"Text;Tools"_s}));
    EXPECT_EQ(entry->program, u"ed"_s);
    EXPECT_FALSE(entry->isVisible);
    EXPECT_FALSE(entry->isHidden);
    EXPECT_EQ(parseDesktopEntry(bytes, {"fr"})->name, u"Text Editor"_s);
}

TEST(DesktopEntry, HostileFilesAreNoEntriesOrPoorOnes) {
    const std::pair<const char*, QByteArray> none[] = {
        {"empty", ""},
        {"a link", "[Desktop Entry]\nType=Link\nName=a\n"},
        {"no group", "Type=Application\nName=a\n"},
        {"another group", "[Other]\nType=Application\n"},
        {"binary", QByteArray(100'000, '\0')},
        {"type after too many lines",
         "[Desktop Entry]\n" + QByteArray(20'000, '\n') + "Type=Application\n"},
    };
    for (const auto& [name, bytes] : none) {
        EXPECT_FALSE(parseDesktopEntry(bytes, {})) << name;
    }
    const auto poor = parseDesktopEntry(
        "[Desktop Entry]\nType=Application\nName=" + QByteArray(50'000, 'n') +
            "\nExec=\"unclosed\nCategories=;;\n=x\nName[=x\nIcon[de=x\nIcon=ends\\",
        {"de"});
    ASSERT_TRUE(poor);
    EXPECT_TRUE(poor->name.isEmpty());
    EXPECT_TRUE(poor->categories.isEmpty());
    EXPECT_EQ(poor->iconName, u"ends\\"_s);
}

struct Command {
    const char* exec;
    const char* program;
};

TEST(DesktopEntry, TheProgramOfACommand) {
    const Command rows[] = {
        {"/usr/bin/thunar %F", "thunar"},
        {"\"/opt/My Editor/bin/my editor\" --new", "my editor"},
        {"env GDK_BACKEND=x11 LANG=C /opt/app/app %u", "app"},
        {"python3 /usr/share/tool/tool.py", "tool.py"},
        {"python3 -m tool", ""},
        {"sh -c \"exec tool\"", ""},
        {"flatpak run org.example.Tool", ""},
        {"env", ""},
        {"", ""},
    };
    for (const Command& row : rows) {
        const QByteArray bytes = QByteArray("[Desktop Entry]\nType=Application\nExec=") + row.exec;
        const auto entry = parseDesktopEntry(bytes, {});
        ASSERT_TRUE(entry) << row.exec;
        EXPECT_EQ(entry->program.toStdString(), row.program) << row.exec;
    }
}

}  // namespace
}  // namespace quillo::testing
