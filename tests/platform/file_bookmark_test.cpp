// SPDX-License-Identifier: MIT
#include "platform/file_bookmark.h"

#include <gtest/gtest.h>

#include <QCborMap>
#include <QCborValue>
#include <QDir>
#include <QFile>
#include <QSysInfo>
#include <QTemporaryDir>

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;

class FileBookmarkTest : public ::testing::Test {
protected:
    QString makeFile(const QString& name) const {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return file.fileName();
    }

    [[nodiscard]] static QByteArray bookmarkOf(const QString& path) {
        return makeFileBookmark(QUrl::fromLocalFile(path)).value_or(QByteArray());
    }

    [[nodiscard]] static QString resolved(const QByteArray& bookmark) {
        const Result<QUrl> url = resolveFileBookmark(bookmark);
        return url ? url->toLocalFile() : QString();
    }

    /// The bookmark with one of its values changed.
    [[nodiscard]] static QByteArray changed(const QByteArray& bookmark, const QString& key,
                                            const QCborValue& value) {
        QCborMap map = QCborValue::fromCbor(bookmark).toMap();
        EXPECT_TRUE(map.contains(key));
        map[key] = value;
        return QCborValue(map).toCbor();
    }

    QTemporaryDir m_folder;
};

TEST_F(FileBookmarkTest, FollowsAFileThatIsRenamedInItsFolder) {
    const QString before = makeFile(u"Report & #1 100%.pdf"_s);
    makeFile(u"another"_s);
    const QByteArray bookmark = bookmarkOf(before);
    EXPECT_EQ(resolved(bookmark), before);
    const QString after = m_folder.filePath(u"Grüße.pdf"_s);
    ASSERT_TRUE(QFile::rename(before, after));
    EXPECT_EQ(resolved(bookmark), after);
}

TEST_F(FileBookmarkTest, KeepsAFileThatItsEditorWroteAnew) {
    const QString path = makeFile(u"notes.txt"_s);
    const QByteArray bookmark = bookmarkOf(path);
    const QString backup = m_folder.filePath(u"notes.txt~"_s);
    ASSERT_TRUE(QFile::rename(path, backup));
    makeFile(u"notes.txt"_s);
    EXPECT_EQ(resolved(bookmark), path);
}

TEST_F(FileBookmarkTest, AFileThatIsGoneIsNotFound) {
    const QString path = makeFile(u"notes.txt"_s);
    const QByteArray bookmark = bookmarkOf(path);
    ASSERT_TRUE(QFile::rename(path, m_folder.filePath(u"other.txt"_s)));
    // A file number is used again after a deletion; a later birth shows another file.
    EXPECT_EQ(resolveFileBookmark(changed(bookmark, u"born"_s, 1)).error().kind,
              ErrorKind::NotFound);
    ASSERT_TRUE(QFile::remove(m_folder.filePath(u"other.txt"_s)));
    EXPECT_EQ(resolveFileBookmark(bookmark).error().kind, ErrorKind::NotFound);
    EXPECT_EQ(makeFileBookmark(QUrl::fromLocalFile(path)).error().kind, ErrorKind::NotFound);
}

TEST_F(FileBookmarkTest, FollowsAFolderAndAFileWhoseNameIsNoUtf8) {
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"folder"_s));
    const QByteArray folder = bookmarkOf(m_folder.filePath(u"folder/"_s));
    ASSERT_TRUE(QDir(m_folder.path()).rename(u"folder"_s, u"renamed"_s));
    EXPECT_EQ(resolved(folder), m_folder.filePath(u"renamed"_s));

    const QByteArray name = m_folder.path().toUtf8() + "/caf\xe9";
    std::fclose(std::fopen(name.constData(), "w"));
    const QUrl url = QUrl::fromEncoded("file://" + m_folder.path().toUtf8() + "/caf%E9");
    const Result<QByteArray> bookmark = makeFileBookmark(url);
    ASSERT_TRUE(bookmark);
    ASSERT_EQ(std::rename(name, m_folder.path().toUtf8() + "/th\xe9"), 0);
    EXPECT_TRUE(resolveFileBookmark(*bookmark)->toEncoded().endsWith("/th%E9"));
    std::remove(m_folder.path().toUtf8() + "/th\xe9");
}

TEST_F(FileBookmarkTest, BytesThatAreNoBookmarkAreMalformed) {
    const QByteArray good = bookmarkOf(makeFile(u"a"_s));
    const std::pair<const char*, QByteArray> rows[] = {
        {"nothing", QByteArray()},
        {"text", "file:///tmp/a"},
        {"cut off", good.chopped(1)},
        {"nested", QByteArray(5000, '\x81')},
        {"a map that ends at a key", QByteArray("\xa7"
                                                "file:-+/.\0\0\0\x13\0\x02"
                                                "d/'t:\n"
                                                "fiE",
                                                25)},
        {"an array that claims to be huge", QByteArray("\x9b\x7f\xff\xff\xff\xff\xff\xff\xff", 9)},
        {"a newer version", changed(good, u"v"_s, 2)},
        {"a relative path", changed(good, u"path"_s, QByteArray("etc/passwd"))},
        {"a path as text", changed(good, u"path"_s, u"/tmp/a"_s)},
        {"a path with a zero byte", changed(good, u"path"_s, QByteArray("/tmp\0/a", 7))},
        {"a long path", changed(good, u"path"_s, QByteArray("/" + QByteArray(5000, 'a')))},
        {"a number as text", changed(good, u"ino"_s, u"7"_s)},
        {"too long", changed(good, u"born"_s, QByteArray(20'000, 'x'))},
    };
    for (const auto& [name, bytes] : rows) {
        const Result<QUrl> url = resolveFileBookmark(bytes);
        ASSERT_FALSE(url) << name;
        EXPECT_EQ(url.error().kind, ErrorKind::Malformed) << name;
    }
}

TEST(NormalizedFileUrl, SpellingsOfOneFileAreOneAddress) {
    const QString host = QSysInfo::machineHostName();
    const std::pair<QByteArray, const char*> rows[] = {
        {"file:///tmp/a%20b", "file:///tmp/a%20b"},
        {"file:///tmp/a b", "file:///tmp/a%20b"},
        {"FILE://LocalHost/tmp/a%20b", "file:///tmp/a%20b"},
        {"file://" + host.toUtf8() + "/tmp/a%20b", "file:///tmp/a%20b"},
        {"file:/tmp/a%20b", "file:///tmp/a%20b"},
        {"file:///tmp/x%26y%23z%25", "file:///tmp/x&y%23z%25"},
        {"file:///tmp/x&y%23z%25", "file:///tmp/x&y%23z%25"},
        {"file:///tmp/%c3%a9%3f%28%29%5B%7e", "file:///tmp/%C3%A9%3F()[~"},
        {"file:///tmp/\xc3\xa9%3F()%5b~", "file:///tmp/%C3%A9%3F()[~"},
        {"file:///tmp//folder/./x/../", "file:///tmp/folder"},
        {"file:////tmp/a", "file:///tmp/a"},
        {"file:///", "file:///"},
        {"file:///tmp/%E9/../%e9", "file:///tmp/%E9"},
        {"file:///tmp/%E9/../%5D", "file:///tmp/]"},
    };
    for (const auto& [spelling, normalized] : rows) {
        const std::optional<QUrl> url = normalizedFileUrl(QUrl::fromEncoded(spelling));
        ASSERT_TRUE(url) << spelling.constData();
        EXPECT_EQ(url->toEncoded().toStdString(), normalized) << spelling.constData();
        EXPECT_EQ(normalizedFileUrl(*url), url) << spelling.constData();
    }
}

TEST(NormalizedFileUrl, OnlyLocalFilesHaveOne) {
    for (const char* address : {"", "/tmp/a", "http://localhost/tmp/a", "file:tmp/a", "file://",
                                "file://server.example/tmp/a", "file:///tmp/%00a"}) {
        EXPECT_FALSE(normalizedFileUrl(QUrl::fromEncoded(address))) << address;
    }
}

}  // namespace
}  // namespace quillo::testing
