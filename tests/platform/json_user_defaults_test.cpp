// SPDX-License-Identifier: MIT
#include "platform/freedesktop/json_user_defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <atomic>
#include <limits>

#include "support/wait_until.h"

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

class JsonUserDefaultsTest : public ::testing::Test {
protected:
    void writeByHand(const QByteArray& bytes) const {
        QDir().mkpath(QFileInfo(m_path).path());
        QFile file(m_path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    [[nodiscard]] static QByteArray bytesOf(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    [[nodiscard]] QJsonObject stored() const {
        return QJsonDocument::fromJson(bytesOf(m_path)).object();
    }

    [[nodiscard]] QStringList filesInFolder() const {
        return QFileInfo(m_path).dir().entryList(QDir::Files);
    }

    QTemporaryDir m_home;
    QString m_path = m_home.filePath(u"config/Quillo/settings.json"_s);
};

TEST_F(JsonUserDefaultsTest, WritesForItsOwnerAloneAndReadsAgain) {
    {
        JsonUserDefaults defaults(m_path);
        defaults.setObject(u"panelOpacity"_s, 0.85);
        EXPECT_EQ(defaults.real(u"panelOpacity"_s), 0.85);
        EXPECT_FALSE(QFileInfo::exists(m_path)) << "writes wait for the end of the turn";
    }
    constexpr auto ownerFile =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    EXPECT_EQ(QFileInfo(m_path).permissions(), ownerFile);
    EXPECT_EQ(QFileInfo(QFileInfo(m_path).path()).permissions(),
              ownerFile | QFile::ExeOwner | QFile::ExeUser);
    EXPECT_EQ(JsonUserDefaults(m_path).real(u"panelOpacity"_s), 0.85);
}

TEST_F(JsonUserDefaultsTest, KeepsKeysItDoesNotKnowAndValuesOfAWrongType) {
    writeByHand(R"({"future":{"a":[1]},"maxHistoryItems":"many","old":1})");
    {
        JsonUserDefaults defaults(m_path);
        EXPECT_FALSE(defaults.integer(u"maxHistoryItems"_s));
        defaults.setObject(u"appTheme"_s, u"dark"_s);
        defaults.remove(u"old"_s);
    }
    EXPECT_EQ(QJsonDocument(stored()).toJson(QJsonDocument::Compact),
              R"({"appTheme":"dark","future":{"a":[1]},"maxHistoryItems":"many"})");
}

TEST_F(JsonUserDefaultsTest, AForeignFileIsLeftAloneAndPutAsideBeforeTheFirstWrite) {
    const std::pair<const char*, QByteArray> rows[] = {
        {"cut off", R"({"appTheme":"da)"},
        {"an array", R"(["appTheme"])"},
        {"empty", ""},
        {"no UTF-8", QByteArray("\xff\xfe{\0}\0", 6)},
        {"a key with a mark", "{\"\xef\xbb\xbfkey\":1}"},
        {"too large", R"({"appTheme":"dark"})" + QByteArray(1024 * 1024, ' ')},
    };
    for (const auto& [name, bytes] : rows) {
        SCOPED_TRACE(name);
        QFileInfo(m_path).dir().removeRecursively();
        writeByHand(bytes);
        JsonUserDefaults defaults(m_path);
        EXPECT_FALSE(defaults.object(u"appTheme"_s));
        ASSERT_TRUE(defaults.flush());
        EXPECT_EQ(bytesOf(m_path), bytes) << "nothing was set, so nothing may be written";
        defaults.setObject(u"captureImages"_s, false);
        ASSERT_TRUE(defaults.flush());
        EXPECT_EQ(stored(), (QJsonObject{{u"captureImages"_s, false}}));
        QStringList others = filesInFolder();
        others.removeOne(u"settings.json"_s);
        ASSERT_EQ(others.size(), 1);
        EXPECT_EQ(bytesOf(QFileInfo(m_path).dir().filePath(others.constFirst())), bytes);
    }
}

TEST_F(JsonUserDefaultsTest, TellsOfEachKeyEditedByHandAndNotOfItsOwnWrites) {
    JsonUserDefaults defaults(m_path);
    QStringList changes;
    QObject::connect(&defaults, &UserDefaults::changed, &defaults,
                     [&changes](const QString& key) { changes.append(key); });
    defaults.setObject(u"appTheme"_s, u"dark"_s);
    defaults.setObject(u"captureSound"_s, u"Frog"_s);
    ASSERT_TRUE(defaults.flush());
    EXPECT_THAT(changes, ElementsAre(u"appTheme"_s, u"captureSound"_s));

    changes.clear();
    // Like an editor: a new file takes the place of the old one.
    QFile edited(m_path + u".new"_s);
    ASSERT_TRUE(edited.open(QIODevice::WriteOnly));
    edited.write(R"({"appTheme":"dark","maxHistoryItems":50})");
    edited.close();
    ASSERT_EQ(std::rename(edited.fileName().toUtf8(), m_path.toUtf8()), 0);
    ASSERT_TRUE(waitUntil([&] { return changes.size() >= 2; }));
    EXPECT_THAT(changes, UnorderedElementsAre(u"captureSound"_s, u"maxHistoryItems"_s));
    EXPECT_EQ(defaults.integer(u"maxHistoryItems"_s), 50);

    // And an edit in place afterwards, of the file that replaced the first.
    changes.clear();
    writeByHand(R"({"appTheme":"light","maxHistoryItems":50})");
    ASSERT_TRUE(waitUntil([&] { return !changes.isEmpty(); }));
    EXPECT_THAT(changes, ElementsAre(u"appTheme"_s));
}

TEST_F(JsonUserDefaultsTest, AnEditThatBreaksTheFileLeavesTheValuesInForce) {
    writeByHand(R"({"appTheme":"dark"})");
    JsonUserDefaults defaults(m_path);
    writeByHand(R"({"appTheme":"dark",})");
    defaults.setObject(u"captureImages"_s, true);
    ASSERT_TRUE(defaults.flush());
    EXPECT_EQ(stored(), (QJsonObject{{u"appTheme"_s, u"dark"_s}, {u"captureImages"_s, true}}));
    EXPECT_EQ(filesInFolder().size(), 2);
}

TEST_F(JsonUserDefaultsTest, AnEditAndAWaitingWriteAreBothKept) {
    writeByHand(R"({"a":1,"b":1})");
    JsonUserDefaults defaults(m_path);
    defaults.setObject(u"a"_s, 2);
    writeByHand(R"({"a":3,"b":3})");
    ASSERT_TRUE(defaults.flush());
    EXPECT_EQ(stored(), (QJsonObject{{u"a"_s, 2}, {u"b"_s, 3}}));
    EXPECT_EQ(defaults.integer(u"b"_s), 3);
}

TEST_F(JsonUserDefaultsTest, AnEditBetweenReadingAndWritingIsNotReplaced) {
    writeByHand(R"({"a":1})");
    const SettingsFileState read = settingsFileState(m_path);
    writeByHand(R"({"a":2})");
    const Result<void> late = writeSettingsFile(m_path, {{u"b"_s, 1}}, read);
    ASSERT_FALSE(late);
    EXPECT_EQ(late.error().kind, ErrorKind::Busy);
    EXPECT_EQ(bytesOf(m_path), R"({"a":2})");
    EXPECT_EQ(filesInFolder().size(), 1) << "no half-written file stays behind";
    ASSERT_TRUE(writeSettingsFile(m_path, {{u"b"_s, 1}}, settingsFileState(m_path)));
    EXPECT_EQ(stored(), (QJsonObject{{u"b"_s, 1}}));
}

TEST_F(JsonUserDefaultsTest, BigIntegersAndFractionsOfUnknownKeysSurviveAWrite) {
    writeByHand(R"({"big":9223372036854775807,"small":-9007199254740993,"part":0.1})");
    {
        JsonUserDefaults defaults(m_path);
        defaults.setObject(u"panelWidth"_s, 1.0);
    }
    EXPECT_EQ(QJsonDocument(stored()).toJson(QJsonDocument::Compact),
              R"({"big":9223372036854775807,"panelWidth":1,"part":0.1,"small":-9007199254740993})");
}

TEST_F(JsonUserDefaultsTest, ASymbolicLinkStays) {
    const QString target = m_home.filePath(u"dotfiles.json"_s);
    ASSERT_TRUE(QDir().mkpath(QFileInfo(m_path).path()));
    QFile file(target);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{}");
    file.close();
    ASSERT_TRUE(QFile::link(target, m_path));
    {
        JsonUserDefaults defaults(m_path);
        defaults.setObject(u"appTheme"_s, u"dark"_s);
    }
    EXPECT_TRUE(QFileInfo(m_path).isSymLink());
    EXPECT_EQ(QJsonDocument::fromJson(bytesOf(target)).object(),
              (QJsonObject{{u"appTheme"_s, u"dark"_s}}));
}

TEST_F(JsonUserDefaultsTest, RefusesWhatJsonCannotHold) {
    JsonUserDefaults defaults(m_path);
    defaults.setObject(u"panelCustomX"_s, 12.5);
    defaults.setObject(u"panelCustomX"_s, std::numeric_limits<double>::infinity());
    EXPECT_EQ(defaults.real(u"panelCustomX"_s), 12.5);
}

TEST_F(JsonUserDefaultsTest, AFolderThatCannotBeWrittenCostsNoValueAndIsTriedAgain) {
    static std::atomic<int> errors;
    errors = 0;
    const auto previous =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString&) {
            errors += type == QtCriticalMsg ? 1 : 0;
        });
    JsonUserDefaults defaults(m_home.filePath(u"file/settings.json"_s));
    QDir(m_home.filePath(u"file"_s)).removeRecursively();
    QFile inTheWay(m_home.filePath(u"file"_s));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    defaults.setObject(u"appTheme"_s, u"dark"_s);
    EXPECT_FALSE(defaults.flush());
    EXPECT_FALSE(defaults.flush());
    qInstallMessageHandler(previous);
    EXPECT_EQ(errors, 1) << "said once";
    EXPECT_EQ(defaults.string(u"appTheme"_s), u"dark"_s);
    ASSERT_TRUE(inTheWay.remove());
    m_path = m_home.filePath(u"file/settings.json"_s);
    EXPECT_TRUE(waitUntil([this] { return stored().size() == 1; })) << "written by itself";
}

TEST_F(JsonUserDefaultsTest, AValueSetDuringAWriteIsWrittenNext) {
    {
        JsonUserDefaults defaults(m_path);
        defaults.setObject(u"a"_s, 1);
        QCoreApplication::processEvents();  // Begins the write and does not wait for it.
        defaults.setObject(u"a"_s, 2);
        defaults.setObject(u"b"_s, 1);
    }
    EXPECT_EQ(stored(), (QJsonObject{{u"a"_s, 2}, {u"b"_s, 1}}));
}

}  // namespace
}  // namespace quillo::testing
