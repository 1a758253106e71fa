// SPDX-License-Identifier: MIT
#include "platform/pasteboard_formats.h"
#include "platform/pasteboard_decoding.h"

#include <gtest/gtest.h>

#include <QUrl>
#include <atomic>

#include "platform/pasteboard_reading.h"
#include "support/plain_converters.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {

namespace {

/// Converts in a way that shows in the result, and counts how often.
class CountingConverters final : public PlainConverters {
public:
    Result<StyledText> readRtf(const QByteArray& rtf) const override {
        ++conversions;
        return rtf.startsWith("{\\rtf") ? Result<StyledText>(StyledText{u"of rtf"_s, {}}) : none();
    }
    Result<StyledText> readHtml(const QByteArray&) const override {
        return StyledText{u"• of html"_s, {}};
    }
    Result<QImage> decode(const QByteArray&) const override {
        return QImage(1, 1, QImage::Format_RGB32);
    }
    Result<QByteArray> encodePng(const QImage&) const override { return QByteArray("as png"); }
    PasteboardConverters both() const { return {*this, *this}; }

    mutable std::atomic<int> conversions = 0;
};

QList<QByteArray> targetsOf(const PasteboardOffers& offers) {
    QList<QByteArray> targets;
    for (const PasteboardOffer& offer : offers) {
        targets.append(offer.target);
    }
    return targets;
}

std::optional<RawReply> replyOf(const PasteboardOffers& offers, const QByteArray& target) {
    for (const PasteboardOffer& offer : offers) {
        if (offer.target == target) {
            return offer.reply->get();
        }
    }
    return std::nullopt;
}

const QList<QByteArray> kTexts{"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "STRING",
                               "TEXT"};
const QList<QByteArray> kRtfs{"text/rtf", "application/rtf", "text/richtext"};

TEST(PasteboardFormats, OffersEachKindUnderItsNamesTheMarkerFirst) {
    struct Row {
        const char* name;
        PasteboardContents contents;
        QList<QByteArray> targets;
        QByteArray text;  ///< Under UTF8_STRING.
    };
    const QUrl file(u"file:///tmp/a%20b"_s);
    const std::vector<Row> table{
        {"text", {.text = u"t"_s}, kTexts, "t"},
        {"rich text",
         {.rtf = "{\\rtf1}"},
         kRtfs + QList<QByteArray>{"text/html"} + kTexts,
         "of rtf"},
        {"rich text with a text",
         {.text = u"t"_s, .rtf = "{\\rtf1}"},
         kRtfs + QList<QByteArray>{"text/html"} + kTexts,
         "t"},
        {"HTML", {.html = "<li>"}, QList<QByteArray>{"text/html"} + kTexts, "\xe2\x80\xa2 of html"},
        {"PNG", {.image = "\x89PNG"}, {"image/png"}, {}},
        {"JPEG", {.image = "\xff\xd8 jpeg"}, {"image/jpeg", "image/png"}, {}},
        {"an image that is none", {.image = "?"}, {}, {}},
        {"a file",
         {.fileUrls = {file}},
         QList<QByteArray>{"text/uri-list", "x-special/gnome-copied-files"} + kTexts,
         "/tmp/a b"},
        {"nothing", {}, {}, {}},
    };
    const CountingConverters converters;
    for (const Row& row : table) {
        SCOPED_TRACE(row.name);
        const PasteboardOffers offers = offersFor(row.contents, converters.both());
        EXPECT_EQ(targetsOf(offers), QList<QByteArray>{kMarkerTarget} + row.targets);
        EXPECT_EQ(replyOf(offers, kMarkerTarget)->bytes, kMarkerValue);
        EXPECT_EQ(replyOf(offers, "UTF8_STRING").value_or(RawReply{}).bytes, row.text);
    }
}

TEST(PasteboardFormats, ConvertsOnlyWhatIsAskedForAndOnce) {
    const CountingConverters converters;
    const auto offers = offersFor({.rtf = "{\\rtf1}", .image = "\xff\xd8 jpeg"}, converters.both());
    EXPECT_EQ(replyOf(offers, "text/rtf")->bytes, "{\\rtf1}");
    EXPECT_EQ(replyOf(offers, "image/jpeg")->bytes, "\xff\xd8 jpeg");
    EXPECT_EQ(converters.conversions, 0);
    EXPECT_EQ(replyOf(offers, "STRING")->bytes, "of rtf");
    EXPECT_TRUE(replyOf(offers, "text/html")->bytes.contains("of rtf"));
    EXPECT_EQ(converters.conversions, 1) << "the document is read once for all that need it";
    EXPECT_EQ(replyOf(offers, "image/png")->bytes, "as png");
    EXPECT_FALSE(replyOf(offersFor({.rtf = "no rtf"}, converters.both()), "STRING"));
}

TEST(PasteboardFormats, GivesFilesAndStringsAsOtherProgramsExpectThem) {
    const CountingConverters converters;
    const QList<QUrl> two{QUrl(u"file:///tmp/%C3%BC"_s), QUrl(u"file:///b"_s)};
    const auto files = offersFor({.fileUrls = two}, converters.both());
    EXPECT_EQ(replyOf(files, "text/uri-list")->bytes, "file:///tmp/%C3%BC\r\nfile:///b\r\n");
    EXPECT_EQ(replyOf(files, "x-special/gnome-copied-files")->bytes,
              "copy\nfile:///tmp/%C3%BC\nfile:///b");
    EXPECT_EQ(replyOf(files, "UTF8_STRING")->bytes, "/tmp/\xc3\xbc\n/b");
    const auto latin = offersFor({.text = u"ü"_s}, converters.both());
    EXPECT_EQ(replyOf(latin, "STRING")->type, "STRING");
    EXPECT_EQ(replyOf(latin, "STRING")->bytes, "\xfc");
    const auto other = offersFor({.text = u"日"_s}, converters.both());
    EXPECT_EQ(replyOf(other, "STRING")->type, "UTF8_STRING");
    EXPECT_EQ(replyOf(other, "TEXT")->bytes, "\xe6\x97\xa5");
}

TEST(PasteboardFormats, OffersKeptContentsByteForByteWithTheirOtherNames) {
    const CountingConverters converters;
    const QByteArray latin = "gr\xfc\xdf";
    const KeptContents kept{{{"STRING", {"STRING", latin + '\0'}},
                             {"text/richtext", {"text/richtext", "{\\rtf1}"}},
                             {"image/bmp", {"image/bmp", "bmp"}},
                             {"x/other", {"x/its-own-type", "o"}},
                             {kMarkerTarget, {kMarkerTarget, "somebody's"}}}};
    const auto offers = offersForKept(kept, converters.both());
    EXPECT_EQ(targetsOf(offers).value(0), kMarkerTarget);
    EXPECT_EQ(targetsOf(offers).count(kMarkerTarget), 1);
    EXPECT_EQ(replyOf(offers, kMarkerTarget)->bytes, kMarkerValue);
    EXPECT_EQ(replyOf(offers, "STRING")->bytes, latin + '\0');
    EXPECT_EQ(replyOf(offers, "x/other")->type, "x/its-own-type");
    EXPECT_EQ(replyOf(offers, "UTF8_STRING")->bytes, "gr\xc3\xbc\xc3\x9f");
    EXPECT_EQ(replyOf(offers, "text/rtf")->bytes, "{\\rtf1}");
    EXPECT_EQ(replyOf(offers, "image/bmp")->bytes, "bmp");
    EXPECT_EQ(replyOf(offers, "image/png")->bytes, "as png");
    EXPECT_FALSE(replyOf(offersForKept({{{"x/y", {"x/y", "z"}}}}, converters.both()), "STRING"));
}

}  // namespace

}  // namespace quillo::testing
