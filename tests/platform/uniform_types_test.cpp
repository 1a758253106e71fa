// SPDX-License-Identifier: MIT
#include "platform/uniform_types.h"

#include <gtest/gtest.h>

#include <QMimeDatabase>

#include "model/clip_file_kind.h"
#include "platform/uniform_type_table.h"

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;

QString kindOf(const QString& identifier) {
    return fileKindName(identifier, std::nullopt);
}

struct Expectation {
    const char* kind;  ///< What all these extensions are, where the identifier tells a kind.
    QString extensions;
    bool isImage = false;
};

TEST(UniformTypes, NoIdentifierCarriesAWordOfAnotherKind) {
    const Expectation rows[] = {
        {"Image", u"png JPG jpeg tif gif heic heif webp bmp svg svgz avif ico psd"_s, true},
        {"PDF", u"pdf"_s},
        {"Word", u"doc docx"_s},
        {"Excel", u"xls xlsx ods"_s},
        {"PowerPoint", u"ppt pptx odp"_s},
        {"CSV", u"csv"_s},
        {"TSV", u"tsv"_s},
        {"JSON", u"json"_s},
        {"XML", u"xml"_s},
        {"YAML", u"yaml yml"_s},
        {"Text", u"txt log rtf"_s},
        {"Archive", u"zip gz tar tgz rar 7z xz dmg"_s},
        {"Code", u"c h cpp cc py sh rb swift js ts java go rs kt"_s},
        {"Audio", u"mp3 wav m4a flac ogg opus"_s},
        {"Video", u"mp4 mov avi mkv webm"_s},
        {"Font", u"ttf otf woff woff2"_s},
        {"Database", u"sqlite db sql"_s},
        // What has no kind by identifier, and must not be taken for another.
        {"", u"odt html css md epub iso ps"_s},
    };
    for (const Expectation& row : rows) {
        for (const QString& extension : row.extensions.split(u' ')) {
            const std::optional<UniformType> type = uniformTypeForExtension(extension);
            ASSERT_TRUE(type) << extension.toStdString();
            const QString kind = kindOf(type->identifier);
            EXPECT_TRUE(kind == u"File"_s || kind == QLatin1StringView(row.kind))
                << extension.toStdString() << " is " << type->identifier.toStdString();
            EXPECT_EQ(type->conformsToImage, row.isImage) << extension.toStdString();
        }
    }
}

// A disk image, an electronic book and others whose MIME names hold a misleading word.
TEST(UniformTypes, WhatTheSharedDatabaseAddsIsNoImageUnlessItIsOne) {
    int count = 0;
    for (const QMimeType& mime : QMimeDatabase().allMimeTypes()) {
        for (const QString& suffix : mime.suffixes()) {
            const std::optional<UniformType> type = uniformTypeForExtension(suffix);
            if (!type) {
                continue;
            }
            ++count;
            EXPECT_TRUE(type->conformsToImage || kindOf(type->identifier) != u"Image"_s)
                << suffix.toStdString() << " is " << type->identifier.toStdString();
            EXPECT_FALSE(mimeTypeForUniformType(type->identifier).isEmpty())
                << type->identifier.toStdString();
        }
    }
    EXPECT_GT(count, 500) << "the shared MIME database is missing";
}

TEST(UniformTypes, UnknownExtensionsHaveNone) {
    for (const QString& extension :
         {u""_s, u"makefile"_s, u"no such"_s, u"a/b"_s, u"*"_s, QString(100'000, u'x'),
          QString(u"ep.zic]mmp"_s + QString(36, QChar(u'\0')) + u".zip"_s)}) {
        EXPECT_FALSE(uniformTypeForExtension(extension)) << extension.left(20).toStdString();
    }
}

TEST(UniformTypes, MimeTypesForIcons) {
    const std::pair<QString, QString> rows[] = {
        {u"public.png"_s, u"image/png"_s},
        {QString(kFolderType), u"inode/directory"_s},
        {QString(kDataType), u"application/octet-stream"_s},
        {uniformTypeForExtension(u"blend"_s)->identifier, u"application/x-blender"_s},
        {u"public.nothing"_s, QString()},
        {u"public."_s, QString()},
        {u""_s, QString()},
    };
    for (const auto& [identifier, mimeType] : rows) {
        EXPECT_EQ(mimeTypeForUniformType(identifier), mimeType) << identifier.toStdString();
    }
}

}  // namespace
}  // namespace quillo::testing
