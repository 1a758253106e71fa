// SPDX-License-Identifier: MIT
// The shared thumbnail cache: what is taken from it, and what is not.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/freedesktop/png_texts.h"
#include "platform/images/qt_image_codec.h"
#include "thumbnail_files.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

using testing::ThumbnailFiles;

TEST(ThumbnailCache, NamesAFileAsTheFileManagersDo) {
    const struct {
        QString path;
        QByteArray uri;
    } rows[] = {
        {u"/home/jens/photos/me.png"_s, "file:///home/jens/photos/me.png"},
        {u"/a b/ä.txt"_s, "file:///a%20b/%C3%A4.txt"},
        {u"/x;y#z?%[1]{2}.png"_s, "file:///x%3By%23z%3F%25%5B1%5D%7B2%7D.png"},
        {u"/a!$&'()*+,-.:=@_~b"_s, "file:///a!$&'()*+,-.:=@_~b"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ThumbnailCache::uriOf(row.path), row.uri);
    }
    // The example of the standard.
    EXPECT_EQ(QCryptographicHash::hash(ThumbnailCache::uriOf(rows[0].path), QCryptographicHash::Md5)
                  .toHex(),
              "c6ee772d9e49320e97ec29a7eb5b1697");
}

TEST(ThumbnailCache, TakesTheWantedSizeElseALargerOne) {
    const struct {
        const char* name;
        QStringList sizes;
        int wanted;
        int found;    ///< 0 for none.
        int smaller;  ///< For want of better.
    } rows[] = {
        {"the same", {u"normal"_s, u"large"_s, u"x-large"_s}, 250, 256, 128},
        {"a larger one", {u"normal"_s, u"xx-large"_s}, 250, 1024, 128},
        {"only a smaller one", {u"normal"_s}, 250, 0, 128},
        {"beyond all", {u"xx-large"_s}, 5000, 1024, 0},
        {"nothing", {}, 250, 0, 0},
    };
    const QHash<QString, int> sides = {
        {u"normal"_s, 128}, {u"large"_s, 256}, {u"x-large"_s, 512}, {u"xx-large"_s, 1024}};
    const QtImageCodec codec;
    for (const auto& row : rows) {
        const ThumbnailFiles files;
        for (const QString& size : row.sizes) {
            files.put(size, QSize(sides.value(size), 50));
        }
        const ThumbnailCache cache(files.cacheFolder(), codec);
        EXPECT_EQ(cache.find(files.path(), row.wanted).value_or(QImage()).width(), row.found)
            << row.name;
        EXPECT_EQ(cache.findSmaller(files.path(), row.wanted).value_or(QImage()).width(),
                  row.smaller)
            << row.name;
    }
}

TEST(ThumbnailCache, BelievesNothingThatIsNotOfThisFileAsItIsNow) {
    const QtImageCodec codec;
    const ThumbnailFiles files;
    const ThumbnailCache cache(files.cacheFolder(), codec);
    const QByteArray uri = ThumbnailCache::uriOf(files.path());
    const QString time = QString::number(files.modified());
    const struct {
        const char* name;
        QByteArray uri;
        QString time;
        bool isTaken;
    } rows[] = {
        {"right", uri, time, true},
        {"older", uri, QString::number(files.modified() - 1), false},
        {"another file's", "file:///etc/passwd", time, false},
        {"no time", uri, {}, false},
        {"no number", uri, time + u"x"_s, false},
        {"no address", {}, time, false},
    };
    for (const auto& row : rows) {
        files.put(u"large"_s, QSize(256, 100), row.uri, row.time);
        EXPECT_EQ(cache.find(files.path(), 256).has_value(), row.isTaken) << row.name;
        files.put(u"fail/some-program"_s, QSize(1, 1), row.uri, row.time);
        EXPECT_EQ(cache.isKnownToFail(files.path()), row.isTaken) << row.name;
    }
}

// Every cut and every flipped byte of a right entry: no crash, no endless loop, no huge picture.
TEST(ThumbnailCache, StandsGarbage) {
    const QtImageCodec codec;
    const ThumbnailFiles files;
    const ThumbnailCache cache(files.cacheFolder(), codec);
    files.put(u"large"_s, QSize(256, 100));
    QFile entry(files.entry(u"large"_s));
    ASSERT_TRUE(entry.open(QIODevice::ReadOnly));
    const QByteArray right = entry.readAll();
    entry.close();
    const auto write = [&](const QByteArray& bytes) {
        ASSERT_TRUE(entry.open(QIODevice::WriteOnly));
        entry.write(bytes);
        entry.close();
    };
    for (qsizetype at = 0; at < right.size(); at += 3) {
        write(right.left(at));
        EXPECT_FALSE(pngTexts(right.left(at)).contains("Thumb::Nothing"));
        const auto cut = cache.find(files.path(), 256);
        EXPECT_TRUE(!cut || cut->width() <= 256);
        QByteArray flipped = right;
        flipped[at] = char(flipped[at] ^ 0x55);
        write(flipped);
        const auto image = cache.find(files.path(), 256);
        EXPECT_TRUE(!image || image->width() <= 256) << at;
    }
}

TEST(ThumbnailCache, APipeInAnEntrysPlaceBlocksNobody) {
    const QtImageCodec codec;
    const ThumbnailFiles files;
    ASSERT_EQ(mkfifo(QFile::encodeName(files.entry(u"large"_s)).constData(), 0600), 0);
    EXPECT_FALSE(ThumbnailCache(files.cacheFolder(), codec).find(files.path(), 256));
}

}  // namespace
}  // namespace quillo
