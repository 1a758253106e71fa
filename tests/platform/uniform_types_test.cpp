// SPDX-License-Identifier: MIT
#include "platform/uniform_types.h"

#include <gtest/gtest.h>

#include <QMimeDatabase>

#include "platform/uniform_type_table.h"

namespace quillo::testing {
namespace {

using namespace Qt::StringLiterals;

struct WordOfKind {
    QLatin1StringView word;
    QLatin1StringView kind;
};

// How a file's kind is read from an identifier: the first word that it contains.
constexpr WordOfKind kWords[] = {
    {"folder"_L1, "Folder"_L1},
    {"directory"_L1, "Folder"_L1},
    {"pdf"_L1, "PDF"_L1},
    {"spreadsheet"_L1, "Excel"_L1},
    {"excel"_L1, "Excel"_L1},
    {"word"_L1, "Word"_L1},
    {"presentation"_L1, "PowerPoint"_L1},
    {"powerpoint"_L1, "PowerPoint"_L1},
    {"comma-separated"_L1, "CSV"_L1},
    {"tab-separated"_L1, "TSV"_L1},
    {"zip"_L1, "Archive"_L1},
    {"archive"_L1, "Archive"_L1},
    {"compressed"_L1, "Archive"_L1},
    {"json"_L1, "JSON"_L1},
    {"xml"_L1, "XML"_L1},
    {"yaml"_L1, "YAML"_L1},
    {"plain-text"_L1, "Text"_L1},
    {"source-code"_L1, "Code"_L1},
    {"script"_L1, "Code"_L1},
    {"audio"_L1, "Audio"_L1},
    {"movie"_L1, "Video"_L1},
    {"video"_L1, "Video"_L1},
    {"image"_L1, "Image"_L1},
    {"font"_L1, "Font"_L1},
    {"database"_L1, "Database"_L1},
    {"sqlite"_L1, "Database"_L1},
};

/// Empty when the identifier tells no kind, so that the extension decides.
QString kindOf(const QString& identifier) {
    for (const WordOfKind& row : kWords) {
        if (identifier.contains(row.word)) {
            return row.kind;
        }
    }
    return {};
}

struct Expectation {
    const char* kind;  ///< What all these extensions are, where the identifier tells a kind.
    QStringList extensions;
    bool isImage = false;
};

TEST(UniformTypes, NoIdentifierCarriesAWordOfAnotherKind) {
    const Expectation rows[] = {
        {"Image",
         {u"png"_s, u"JPG"_s, u"jpeg"_s, u"tif"_s, u"gif"_s, u"heic"_s, u"heif"_s, u"webp"_s,
          u"bmp"_s, u"svg"_s, u"svgz"_s, u"avif"_s, u"ico"_s, u"psd"_s},
         true},
        {"PDF", {u"pdf"_s}},
        {"Word", {u"doc"_s, u"docx"_s}},
        {"Excel", {u"xls"_s, u"xlsx"_s, u"ods"_s}},
        {"PowerPoint", {u"ppt"_s, u"pptx"_s, u"odp"_s}},
        {"CSV", {u"csv"_s}},
        {"TSV", {u"tsv"_s}},
        {"JSON", {u"json"_s}},
        {"XML", {u"xml"_s}},
        {"YAML", {u"yaml"_s, u"yml"_s}},
        {"Text", {u"txt"_s, u"log"_s, u"rtf"_s}},
        {"Archive", {u"zip"_s, u"gz"_s, u"tar"_s, u"tgz"_s, u"rar"_s, u"7z"_s, u"xz"_s, u"dmg"_s}},
        {"Code",
         {u"c"_s, u"h"_s, u"cpp"_s, u"cc"_s, u"py"_s, u"sh"_s, u"rb"_s, u"swift"_s, u"js"_s,
          u"ts"_s, u"java"_s, u"go"_s, u"rs"_s, u"kt"_s}},
        {"Audio", {u"mp3"_s, u"wav"_s, u"m4a"_s, u"flac"_s, u"ogg"_s, u"opus"_s}},
        {"Video", {u"mp4"_s, u"mov"_s, u"avi"_s, u"mkv"_s, u"webm"_s}},
        {"Font", {u"ttf"_s, u"otf"_s, u"woff"_s, u"woff2"_s}},
        {"Database", {u"sqlite"_s, u"db"_s, u"sql"_s}},
        // What has no kind by identifier, and must not be taken for another.
        {"", {u"odt"_s, u"html"_s, u"css"_s, u"md"_s, u"epub"_s, u"iso"_s, u"ps"_s}},
    };
    for (const Expectation& row : rows) {
        for (const QString& extension : row.extensions) {
            const std::optional<UniformType> type = uniformTypeForExtension(extension);
            ASSERT_TRUE(type) << extension.toStdString();
            const QString kind = kindOf(type->identifier);
            EXPECT_TRUE(kind.isEmpty() || kind == QLatin1StringView(row.kind))
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
