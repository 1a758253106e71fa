// SPDX-License-Identifier: MIT
// Reading from programs on a real X server, well-behaved ones and others.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>

#include "contract/pasteboard_rig.h"
#include "platform/pasteboard_reading.h"
#include "support/pasteboard_fixture.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillo::testing {

namespace {

x11::PasteboardLimits shortLimits() {
    x11::PasteboardLimits limits;
    limits.firstByte = 150ms;
    limits.progress = 150ms;
    limits.wholeRead = 400ms;
    return limits;
}

std::future<std::optional<RawReply>> fetchElsewhere(PasteboardSource& source,
                                                    const QByteArray& target) {
    return std::async(std::launch::async, [&source, target] { return source.fetch(target); });
}

bool isAnswered(std::future<std::optional<RawReply>>& answer, std::chrono::milliseconds within) {
    return answer.wait_for(within) == std::future_status::ready;
}

QString targetOption(X11PasteboardRig& rig, const QByteArray& bytes) {
    return u"text/html:text/html:"_s + rig.file(u"payload"_s, bytes);
}

TEST(X11PasteboardReading, TakesLargeRepliesInPartsWhateverSizeIsAnnounced) {
    const QByteArray bytes = patternOf(8 * 1024 * 1024 + 17);
    for (const QStringList& options : {QStringList{}, QStringList{u"--announce"_s, u"0"_s},
                                       QStringList{u"--chunk"_s, u"1000000"_s}}) {
        X11PasteboardRig rig;
        rig.copyWith(options + QStringList{u"--target"_s, targetOption(rig, bytes)});
        const auto reply = rig.pasteboard().open()->fetch("text/html");
        ASSERT_TRUE(reply);
        EXPECT_TRUE(reply->bytes == bytes);
        EXPECT_EQ(reply->type, "text/html");
    }
}

TEST(X11PasteboardReading, BoundsWhatArrivesAndReadsOnAfterwards) {
    x11::PasteboardLimits limits;
    limits.maxBytes = 300'000;
    X11PasteboardRig rig(limits);
    for (const QStringList& options : {QStringList{}, QStringList{u"--chunk"_s, u"4000000"_s}}) {
        rig.copyWith(options + QStringList{u"--target"_s, targetOption(rig, patternOf(1'000'000)),
                                           u"--target"_s,
                                           u"STRING:STRING:"_s + rig.file(u"s"_s, "small")});
        const auto source = rig.pasteboard().open();
        EXPECT_FALSE(source->fetch("text/html"));
        EXPECT_EQ(source->fetch("STRING")->bytes, "small");
        EXPECT_FALSE(source->wasSuperseded());
    }
}

TEST(X11PasteboardReading, GivesUpAnOwnerThatDoesNotAnswer) {
    X11PasteboardRig rig(shortLimits());
    rig.copyWith({u"--never-answer"_s, u"--target"_s, targetOption(rig, "x")});
    const auto source = rig.pasteboard().open();
    EXPECT_TRUE(source->targets().contains("text/html"));
    EXPECT_FALSE(source->fetch("text/html"));
    EXPECT_FALSE(source->wasSuperseded());
}

TEST(X11PasteboardReading, AnOwnerThatDoesNotAnswerBlocksNoWrite) {
    X11PasteboardRig rig;
    rig.copyWith({u"--never-answer"_s, u"--target"_s, targetOption(rig, "x")});
    const auto source = rig.pasteboard().open();
    auto answer = fetchElsewhere(*source, "text/html");
    ASSERT_TRUE(waitUntil([&] { return rig.log().contains("text/html"); }));
    rig.pasteboard().write({.text = u"mine"_s});
    EXPECT_TRUE(waitUntilPasted(rig, "UTF8_STRING", "mine"));
    EXPECT_TRUE(isAnswered(answer, 2s)) << "the write ends the read, not the deadline";
    EXPECT_FALSE(answer.get());
    EXPECT_TRUE(source->wasSuperseded());
}

TEST(X11PasteboardReading, WhateverEndsTheOwnerEndsARunningRead) {
    const std::vector<std::pair<const char*, std::function<void(X11PasteboardRig&)>>> ends{
        {"a newer copy", [](auto& rig) { rig.copy(copiedText(u"newer"_s)); }},
        {"a quit", [](auto& rig) { rig.owner().kill(); }},
        {"a clearing", [](auto& rig) { rig.clear(); }},
        {"endReads", [](auto& rig) { rig.pasteboard().endReads(); }},
        {"our own end", [](auto& rig) { rig.endPasteboard(); }},
    };
    for (const auto& [name, end] : ends) {
        SCOPED_TRACE(name);
        X11PasteboardRig rig;
        rig.copyWith({u"--never-answer"_s, u"--target"_s, targetOption(rig, "x")});
        const auto source = rig.pasteboard().open();
        auto answer = fetchElsewhere(*source, "text/html");
        ASSERT_TRUE(waitUntil([&] { return rig.log().contains("text/html"); }));
        end(rig);
        ASSERT_TRUE(isAnswered(answer, 2s));
        EXPECT_FALSE(answer.get());
    }
}

TEST(X11PasteboardReading, SwallowsTheLateAnswerOfAnOwnerThatWasStopped) {
    X11PasteboardRig rig(shortLimits());
    rig.copyWith({u"--target"_s, targetOption(rig, patternOf(500'000))});
    rig.owner().signal(SIGSTOP);
    const auto source = rig.pasteboard().open();
    EXPECT_FALSE(source->fetch("text/html"));
    rig.owner().signal(SIGCONT);
    EXPECT_TRUE(waitUntil([&] { return source->fetch("text/html").has_value(); }));
    EXPECT_TRUE(rig.owner().isRunning());
}

TEST(X11PasteboardReading, ReadsEveryRecordedClipboardAsTheFakeDoes) {
    X11PasteboardRig rig;
    for (const QString& name : recordedClipboardNames()) {
        SCOPED_TRACE(qPrintable(name));
        FakePasteboard fake;
        fake.copyFrom(recordedClipboard(name));
        rig.copyWith(
            {u"--manifest"_s, QString::fromUtf8(QUILLO_TEST_DATA) + u"/clipboard/"_s + name});
        PasteboardReading real(rig.pasteboard().open());
        PasteboardReading expected(fake.open());
        EXPECT_EQ(real.types(), expected.types());
        EXPECT_EQ(real.string(PasteboardType::String), expected.string(PasteboardType::String));
        for (const auto type : {PasteboardType::Rtf, PasteboardType::Html, PasteboardType::Png}) {
            EXPECT_EQ(real.data(type), expected.data(type));
        }
        EXPECT_EQ(real.fileUrls(), expected.fileUrls());
    }
}

}  // namespace

}  // namespace quillo::testing
