// SPDX-License-Identifier: MIT
// What one look at the pasteboard makes of copies as real programs offer them.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "capture/image_normalizer.h"
#include "capture/pasteboard_snapshot.h"
#include "platform/images/qt_image_codec.h"
#include "support/fake_pasteboard.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

class Snapshot : public ::testing::Test {
protected:
    [[nodiscard]] PasteboardSnapshot read(const QList<CopiedTarget>& copied,
                                          CaptureSwitches switches = {}) {
        m_pasteboard.copyFrom(copied);
        PasteboardReading reading(m_pasteboard.open());
        return PasteboardSnapshotReader(reading, m_codec, switches).readSnapshot();
    }

    [[nodiscard]] QByteArray encoded(QSize size, const char* format) const {
        QImage image(size, QImage::Format_RGB32);
        image.fill(QColor(20, 120, 220));
        return (QLatin1StringView(format) == QLatin1StringView("png")
                    ? m_codec.encodePng(image)
                    : m_codec.encodeJpeg(image, 0.9))
            .value();
    }

    [[nodiscard]] QSize sizeOf(const std::optional<QByteArray>& bytes) const {
        return bytes ? m_codec.size(*bytes).value_or(QSize()) : QSize();
    }

    [[nodiscard]] PasteboardSnapshot readFile(const QString& name, const QByteArray& bytes,
                                              CaptureSwitches switches = {}) {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        const QByteArray uri = QUrl::fromLocalFile(file.fileName()).toEncoded();
        return read({{"text/uri-list", RawReply{"text/uri-list", uri + "\r\n"}},
                     {"UTF8_STRING", RawReply{"UTF8_STRING", file.fileName().toUtf8()}}},
                    switches);
    }

    QTemporaryDir m_folder;
    QtImageCodec m_codec;
    FakePasteboard m_pasteboard;
};

TEST_F(Snapshot, TheFirstRepresentationPresentDecidesTheKind) {
    const CopiedTarget text = given("UTF8_STRING", "words");
    const CopiedTarget link = given("UTF8_STRING", "https://host/a");
    const CopiedTarget html = given("text/html", "<b>words</b>");
    const CopiedTarget rtf = given("text/rtf", "{\\rtf1 words}");
    const CopiedTarget png = given("image/png", encoded({4, 4}, "png"));
    const struct {
        const char* name;
        QList<CopiedTarget> copied;
        CaptureKind kind;
    } rows[] = {
        {"text", {text}, CaptureKind::Text},
        {"link as text", {link}, CaptureKind::Url},
        {"html and link", {html, link}, CaptureKind::Html},
        {"rtf, html and text", {html, rtf, text}, CaptureKind::Rtf},
        {"image and text", {png, text}, CaptureKind::Image},
        {"image, rtf and text: the image is a rendering", {png, rtf, text}, CaptureKind::Rtf},
        {"broken image", {given("image/png", "not a picture"), text}, CaptureKind::Text},
        {"refused html and text", {refused("text/html"), text}, CaptureKind::Text},
        {"unknown type only", {given("application/x-own", "x")}, CaptureKind::Nothing},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(captureKind(read(row.copied)), row.kind) << row.name;
    }
}

TEST_F(Snapshot, WhatIsSwitchedOffIsNothingWhateverTextComesWithIt) {
    const CopiedTarget text{"UTF8_STRING", RawReply{"UTF8_STRING", "words"}};
    const CopiedTarget png{"image/png", RawReply{"image/png", encoded({4, 4}, "png")}};
    const CopiedTarget html{"text/html", RawReply{"text/html", "<img src=a.png>"}};
    const CopiedTarget rtf{"text/rtf", RawReply{"text/rtf", "{\\rtf1 words}"}};
    const struct {
        const char* name;
        QList<CopiedTarget> copied;
        CaptureKind withoutImages;
    } rows[] = {
        {"picture", {png}, CaptureKind::Unwanted},
        {"picture with its address", {html, png, text}, CaptureKind::Unwanted},
        {"text with its rendering", {png, rtf, text}, CaptureKind::Rtf},
        {"refused picture and text", {{"image/png", std::nullopt}, text}, CaptureKind::Text},
        {"no picture", {{"image/bmp", RawReply{"image/bmp", "x"}}, text}, CaptureKind::Text},
    };
    for (const auto& row : rows) {
        const PasteboardSnapshot snapshot = read(row.copied, {.images = false, .files = true});
        EXPECT_EQ(captureKind(snapshot), row.withoutImages) << row.name;
        EXPECT_FALSE(snapshot.imageData) << row.name;
        EXPECT_FALSE(snapshot.isUnwanted && snapshot.plainText) << row.name;
    }
    const struct {
        QString name;
        CaptureSwitches switches;
        CaptureKind kind;
    } files[] = {
        {u"a.png"_s, {.images = true, .files = false}, CaptureKind::Image},
        {u"a.png"_s, {.images = false, .files = true}, CaptureKind::Files},
        {u"a.png"_s, {.images = false, .files = false}, CaptureKind::Unwanted},
        {u"a.txt"_s, {.images = true, .files = false}, CaptureKind::Unwanted},
        {u"a.txt"_s, {.images = false, .files = true}, CaptureKind::Files},
    };
    for (const auto& row : files) {
        const auto snapshot = readFile(row.name, encoded({4, 4}, "png"), row.switches);
        EXPECT_EQ(captureKind(snapshot), row.kind) << row.name.toStdString();
    }
}

TEST_F(Snapshot, BringsImagesToTheirStoredForm) {
    const QByteArray smallJpeg = encoded({800, 600}, "jpeg");
    const struct {
        const char* name;
        const char* target;
        QByteArray bytes;
        QSize size;
        const char* mimeType;
        bool isUnchanged;
    } rows[] = {
        {"wide png", "image/png", encoded({4000, 1000}, "png"), {1920, 480}, "image/png", false},
        {"square png", "image/png", encoded({1920, 1920}, "png"), {1920, 1920}, "image/png", false},
        {"small jpeg", "image/jpeg", smallJpeg, {800, 600}, "image/jpeg", true},
        {"jpeg", "image/jpeg", encoded({3000, 2000}, "jpeg"), {1920, 1280}, "image/jpeg", false},
    };
    for (const auto& row : rows) {
        const PasteboardSnapshot snapshot = read({given(row.target, row.bytes)});
        ASSERT_TRUE(snapshot.imageData) << row.name;
        EXPECT_EQ(sizeOf(snapshot.imageData), row.size) << row.name;
        EXPECT_EQ(m_codec.mimeType(*snapshot.imageData), QLatin1StringView(row.mimeType))
            << row.name;
        if (row.isUnchanged) {
            EXPECT_EQ(*snapshot.imageData, row.bytes) << row.name;
        }
    }
}

TEST_F(Snapshot, TheSamePictureFromTwoProgramsHasTheSameBytes) {
    // Two encoders of one picture, as two programs would copy it.
    QImage image({64, 48}, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    image.setText(u"Software"_s, u"some program"_s);
    const QByteArray first = m_codec.encodePng(image).value();
    QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    argb.setText(u"Software"_s, u"another"_s);
    const QByteArray second = m_codec.encodePng(argb).value();
    EXPECT_EQ(read({given("image/png", first)}).imageData,
              read({given("image/png", second)}).imageData);
}

TEST_F(Snapshot, TakesTheImageFromACopiedImageFileAndNotFromOthers) {
    const QByteArray jpeg = encoded({1000, 800}, "jpeg");
    const PasteboardSnapshot photo = readFile(u"photo.JPG"_s, jpeg);
    EXPECT_EQ(photo.imageData, jpeg);
    EXPECT_EQ(photo.imageFileName, u"photo.JPG"_s);

    const PasteboardSnapshot bigPhoto = readFile(u"big.jpeg"_s, encoded({5000, 4000}, "jpeg"));
    EXPECT_EQ(sizeOf(bigPhoto.imageData), QSize(1920, 1536));

    const PasteboardSnapshot diagram = readFile(u"diagram.png"_s, encoded({2000, 100}, "png"));
    EXPECT_EQ(sizeOf(diagram.imageData), QSize(1920, 96));

    for (const auto& [name, bytes] :
         {std::pair{u"notes.txt"_s, QByteArray("words")},
          std::pair{u"broken.png"_s, QByteArray("no picture")}, std::pair{u"Makefile"_s, jpeg}}) {
        const PasteboardSnapshot file = readFile(name, bytes);
        EXPECT_FALSE(file.imageData) << name.toStdString();
        EXPECT_FALSE(file.imageFileName) << name.toStdString();
        EXPECT_EQ(captureKind(file), CaptureKind::Files) << name.toStdString();
    }
}

TEST_F(Snapshot, AsksAProgramThatCopiedAShortTextForNoMoreThanItsTextAndItsTypes) {
    (void)read({{"TARGETS", RawReply{"ATOM", {}}},
                given("UTF8_STRING", "words"),
                given("STRING", "words"),
                {"TEXT", RawReply{"UTF8_STRING", "words"}}});
    EXPECT_EQ(m_pasteboard.fetchCount("TARGETS"), 1);
    EXPECT_EQ(m_pasteboard.fetchCount("UTF8_STRING"), 1);
    EXPECT_EQ(m_pasteboard.fetchCount("STRING") + m_pasteboard.fetchCount("TEXT"), 0);
}

}  // namespace
}  // namespace quillo::testing
