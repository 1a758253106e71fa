// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "platform/freedesktop/autostart_login_item.h"
#include "platform/freedesktop/desktop_entry.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

TEST(ExecValue, QuotesAndEscapesByTheRulesOfDesktopEntries) {
    const struct {
        QString program;
        QByteArray value;
    } rows[] = {
        {u"/usr/bin/quillo"_s, "/usr/bin/quillo"},
        {u"/home/ü/quillo"_s, "/home/ü/quillo"},
        {u"/opt/my programs/quillo"_s, R"("/opt/my programs/quillo")"},
        {u"/a/100%/quillo"_s, "/a/100%%/quillo"},
        {u"/a/it's/quillo"_s, R"("/a/it's/quillo")"},
        {u"/a\\b\"c`d$e"_s, R"("/a\\\\b\\"c\\`d\\$e")"},
        {u"/a\nb"_s, R"("/a\nb")"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(execValue(row.program), row.value) << row.program.toStdString();
        const auto entry = parseDesktopEntry(
            "[Desktop Entry]\nType=Application\nExec=" + execValue(row.program), {});
        ASSERT_TRUE(entry);
        EXPECT_TRUE(QString(row.program).replace(u"%"_s, u"%%"_s).endsWith(entry->program));
    }
}

class LoginItemTest : public ::testing::Test {
protected:
    void write(const QByteArray& bytes) {
        QDir().mkpath(m_folder.filePath(u"autostart"_s));
        QFile file(m_path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    [[nodiscard]] QByteArray read() const {
        QFile file(m_path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath(u"autostart/com.quillohq.Quillo.desktop"_s);
    AutostartLoginItem m_item{m_path, u"/opt/quillo 2/quillo"_s};
};

TEST_F(LoginItemTest, WhatTheDesktopWouldStartIsRegistered) {
    const QByteArray entry = "[Desktop Entry]\nType=Application\nExec=/elsewhere/quillo\n";
    const struct {
        QByteArray bytes;
        bool isRegistered;
    } rows[] = {
        {entry, true},
        {entry + "X-GNOME-Autostart-enabled=true\nHidden=false\n", true},
        {entry + "Hidden=true\n", false},
        {entry + "X-GNOME-Autostart-enabled=false\n", false},
        {"[Desktop Entry]\nType=Link\nURL=x\n", false},
        {"", false},
    };
    EXPECT_FALSE(m_item.isRegistered());
    for (const auto& row : rows) {
        write(row.bytes);
        EXPECT_EQ(m_item.isRegistered(), row.isRegistered) << row.bytes.toStdString();
        ASSERT_TRUE(m_item.registerItem().has_value());
        EXPECT_TRUE(m_item.isRegistered());
        EXPECT_TRUE(read().contains("\nExec=\"/opt/quillo 2/quillo\"\n")) << read().toStdString();
    }
    ASSERT_TRUE(m_item.unregisterItem().has_value());
    ASSERT_TRUE(m_item.unregisterItem().has_value()) << "what is not there needs no removing";
    EXPECT_FALSE(QFile::exists(m_path));
}

TEST_F(LoginItemTest, WhatIsInTheWayIsSaid) {
    ASSERT_TRUE(QDir().mkpath(m_path));
    EXPECT_FALSE(m_item.isRegistered());
    for (const Result<void>& result : {m_item.registerItem(), m_item.unregisterItem()}) {
        ASSERT_FALSE(result.has_value());
        EXPECT_TRUE(result.error().text.contains(m_path)) << result.error().text.toStdString();
    }
    ASSERT_TRUE(QDir(m_folder.filePath(u"autostart"_s)).removeRecursively());
    QFile file(m_folder.filePath(u"autostart"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const Result<void> result = m_item.registerItem();
    ASSERT_FALSE(result.has_value());
    EXPECT_TRUE(result.error().text.contains(u"cannot be made"_s));
}

}  // namespace
}  // namespace quillo
