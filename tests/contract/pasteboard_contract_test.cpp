// SPDX-License-Identifier: MIT
// What every pasteboard does, the fake one as well as the real ones.
#include <gtest/gtest.h>

#include <atomic>

#include "contract/pasteboard_rig.h"
#include "platform/pasteboard_reading.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {

namespace {

using MakeRig = std::function<std::unique_ptr<PasteboardRig>()>;

struct NamedRig {
    const char* name;
    MakeRig make;
};

class PasteboardContract : public ::testing::TestWithParam<NamedRig> {
protected:
    Pasteboard& pasteboard() { return m_rig->pasteboard(); }
    PasteboardRig& rig() { return *m_rig; }

    /// Reads a text as the capture loop would and says that it is stored.
    KeptContents captureText() {
        PasteboardReading reading(pasteboard().open());
        EXPECT_TRUE(reading.string(PasteboardType::String));
        pasteboard().settle(reading.changeCount(), reading.kept());
        return reading.kept();
    }

private:
    std::unique_ptr<PasteboardRig> m_rig = GetParam().make();
};

TEST_P(PasteboardContract, ReadsWhatAnotherProgramCopied) {
    const qint64 before = pasteboard().changeCount();
    rig().copy({given("text/html", "<b>x</b>"), refused("image/png"),
                given("UTF8_STRING", "gr\xc3\xbc\xc3\x9f")});
    EXPECT_GT(pasteboard().changeCount(), before);
    const auto source = pasteboard().open();
    EXPECT_EQ(source->changeCount(), pasteboard().changeCount());
    const QList<QByteArray> targets = source->targets();
    EXPECT_TRUE(targets.contains("text/html") && targets.contains("UTF8_STRING"));
    EXPECT_LT(targets.indexOf("text/html"), targets.indexOf("UTF8_STRING"));
    EXPECT_EQ(source->fetch("UTF8_STRING")->bytes, "gr\xc3\xbc\xc3\x9f");
    EXPECT_EQ(source->fetch("text/html")->type, "text/html");
    EXPECT_FALSE(source->fetch("image/png")) << "a refused target is absent";
    EXPECT_FALSE(source->wasSuperseded());
}

TEST_P(PasteboardContract, OffersWhatIsWrittenUnderTheMarker) {
    const qint64 before = pasteboard().changeCount();
    pasteboard().write({.text = u"gr\u00fc\u00df"_s});
    ASSERT_TRUE(waitUntil([&] { return pasteboard().changeCount() > before; }));
    EXPECT_EQ(rig().offered(),
              (QList<QByteArray>{kMarkerTarget, "UTF8_STRING", "text/plain;charset=utf-8",
                                 "text/plain", "STRING", "TEXT"}));
    EXPECT_EQ(rig().paste("UTF8_STRING")->bytes, "gr\xc3\xbc\xc3\x9f");
    EXPECT_EQ(rig().paste("STRING")->bytes, "gr\xfc\xdf");
    EXPECT_EQ(rig().paste("STRING")->type, "STRING");
    EXPECT_EQ(rig().paste(kMarkerTarget)->bytes, kMarkerValue);
    EXPECT_FALSE(rig().paste("image/png"));
    PasteboardReading reading(pasteboard().open());
    EXPECT_EQ(reading.string(PasteboardType::Marker), QString::fromLatin1(kMarkerValue));
    EXPECT_EQ(reading.string(PasteboardType::String), u"gr\u00fc\u00df"_s);
}

TEST_P(PasteboardContract, EveryWriteMovesTheCountAndTheLastOneStands) {
    const qint64 before = pasteboard().changeCount();
    pasteboard().write({.text = u"one"_s});
    pasteboard().write({.text = u"two"_s});
    ASSERT_TRUE(waitUntil([&] { return pasteboard().changeCount() >= before + 2; }));
    EXPECT_EQ(rig().paste("UTF8_STRING")->bytes, "two");
    rig().copy(copiedText(u"three"_s));
    EXPECT_EQ(pasteboard().open()->fetch("UTF8_STRING")->bytes, "three");
}

TEST_P(PasteboardContract, KeptContentsStayWhenTheirProgramQuits) {
    const QByteArray html = "<p>a\xfe</p>" + QByteArray(3, '\0');
    rig().copy({given("text/html", html), given("UTF8_STRING", "a")});
    PasteboardReading reading(pasteboard().open());
    EXPECT_TRUE(reading.data(PasteboardType::Html));
    EXPECT_TRUE(reading.string(PasteboardType::String));
    pasteboard().settle(reading.changeCount(), reading.kept());
    const qint64 count = pasteboard().changeCount();
    rig().quit();
    ASSERT_TRUE(waitUntilPasted(rig(), "text/html", html)) << "byte for byte";
    EXPECT_EQ(rig().offered().value(0), kMarkerTarget);
    EXPECT_EQ(rig().paste("text/plain")->bytes, "a") << "an alias of the kept text";
    EXPECT_GT(pasteboard().changeCount(), count);
}

TEST_P(PasteboardContract, ContentsThatAreSettledAfterTheQuitStillStay) {
    rig().copy(copiedText(u"late"_s));
    PasteboardReading reading(pasteboard().open());
    EXPECT_TRUE(reading.string(PasteboardType::String));
    rig().quit();
    EXPECT_TRUE(pasteboard().open()->targets().isEmpty());
    pasteboard().settle(pasteboard().changeCount(), std::nullopt);
    pasteboard().settle(reading.changeCount(), reading.kept());
    EXPECT_TRUE(waitUntilPasted(rig(), "UTF8_STRING", "late"));
}

TEST_P(PasteboardContract, WhatIsNotKeptIsGoneWhenItsProgramQuits) {
    rig().copy(copiedText(u"secret"_s));
    pasteboard().settle(pasteboard().changeCount(), std::nullopt);
    rig().quit();
    EXPECT_FALSE(rig().paste("UTF8_STRING"));
    EXPECT_TRUE(pasteboard().open()->targets().isEmpty());
}

TEST_P(PasteboardContract, AClearedPasteboardStaysClear) {
    rig().copy(copiedText(u"password"_s));
    const KeptContents kept = captureText();
    const qint64 count = pasteboard().changeCount();
    rig().clear();
    EXPECT_TRUE(pasteboard().open()->targets().isEmpty());
    rig().quit();
    pasteboard().settle(count, kept);
    EXPECT_FALSE(rig().paste("UTF8_STRING"));
}

TEST_P(PasteboardContract, ANewerCopyDropsWhatWasKeptOfTheOlder) {
    rig().copy(copiedText(u"older"_s));
    const qint64 older = pasteboard().changeCount();
    const KeptContents kept = captureText();
    rig().copy(copiedText(u"newer"_s));
    pasteboard().settle(older, kept);
    rig().quit();
    EXPECT_FALSE(rig().paste("UTF8_STRING"));
}

TEST_P(PasteboardContract, ASourceOfAnOlderCopyIsAbsentAndSaysWhy) {
    rig().copy(copiedText(u"older"_s));
    const auto source = pasteboard().open();
    EXPECT_FALSE(source->targets().isEmpty());
    rig().copy(copiedText(u"newer"_s));
    EXPECT_FALSE(source->fetch("UTF8_STRING"));
    EXPECT_TRUE(source->wasSuperseded());
}

TEST_P(PasteboardContract, EndedReadsAreAbsentButNotSuperseded) {
    rig().copy(copiedText(u"here"_s));
    const auto source = pasteboard().open();
    pasteboard().endReads();
    EXPECT_FALSE(source->fetch("UTF8_STRING"));
    EXPECT_FALSE(source->wasSuperseded());
    EXPECT_TRUE(pasteboard().open()->fetch("UTF8_STRING")) << "later reads go on";
}

TEST_P(PasteboardContract, TellsItsListenerUntilItIsReplaced) {
    std::atomic<int> changes = 0;
    pasteboard().setListener(
        [&](PasteboardChange change) { changes += change == PasteboardChange::Changed ? 1 : 0; });
    rig().copy(copiedText(u"x"_s));
    EXPECT_TRUE(waitUntil([&] { return changes == 1; }));
    pasteboard().setListener({});
    rig().copy(copiedText(u"y"_s));
    EXPECT_EQ(changes, 1);
}

TEST_P(PasteboardContract, OffersATextAsPrimaryBesideTheClipboard) {
    rig().copy(copiedText(u"clip"_s));
    pasteboard().writePrimary({.text = u"for the terminal"_s});
    EXPECT_TRUE(waitUntil([&] { return rig().primary() == "for the terminal"; }));
    // A terminal must not paste the clip before in the place of a picture.
    pasteboard().writePrimary({.image = "no text"});
    EXPECT_TRUE(waitUntil([&] { return !rig().primary(); }));
    EXPECT_EQ(rig().paste("UTF8_STRING")->bytes, "clip");
}

INSTANTIATE_TEST_SUITE_P(
    All, PasteboardContract,
    ::testing::Values(NamedRig{"Fake", [] { return std::make_unique<FakePasteboardRig>(); }},
                      NamedRig{"X11", [] { return std::make_unique<X11PasteboardRig>(); }}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace

}  // namespace quillo::testing
