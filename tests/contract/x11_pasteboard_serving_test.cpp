// SPDX-License-Identifier: MIT
// Offering to programs on a real X server, and standing in for those that quit.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>

#include "contract/pasteboard_rig.h"
#include "platform/pasteboard_reading.h"
#include "platform/x11/xcb_support.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillo::testing {

namespace {

bool isOwned(const QString& selection) {
    const auto owner = runTool(u"read_selection"_s, {u"--selection="_s + selection, u"--owner"_s});
    return owner && owner->trimmed() != "0";
}

void writeHtml(X11PasteboardRig& rig, const QByteArray& html) {
    const qint64 count = rig.pasteboard().changeCount();
    rig.pasteboard().write({.html = html});
    ASSERT_TRUE(rig.waitForChangeAfter(count));
}

TEST(X11PasteboardServing, GivesLargeContentsToManyAtOnceThoughOneIsStalled) {
    X11PasteboardRig rig;
    const QByteArray html = patternOf(8 * 1024 * 1024 + 1);
    writeHtml(rig, html);
    Tool stalled(u"read_selection"_s, {u"--stall"_s, u"text/html"_s});
    ASSERT_EQ(stalled.line(), "stalled");
    std::vector<std::future<std::optional<QByteArray>>> readers;
    for (int i = 0; i < 4; ++i) {
        readers.push_back(std::async(
            std::launch::async, [] { return runTool(u"read_selection"_s, {u"text/html"_s}); }));
    }
    for (auto& reader : readers) {
        const auto bytes = reader.get();
        ASSERT_TRUE(bytes);
        EXPECT_TRUE(*bytes == html);
    }
    stalled.kill();
    EXPECT_TRUE(rig.paste("text/html")) << "a requestor that vanished harms nobody";
}

// Guards against a window that stopped hearing of its own properties, so that no later write was
// ever made: a read that was on its way when a write took effect asked the pasteboard itself.
TEST(X11PasteboardServing, WritesOnAfterARequestInItsOwnName) {
    X11PasteboardRig rig;
    writeHtml(rig, patternOf(1'000'000));
    auto connection = x11::connectToServer();
    ASSERT_TRUE(connection);
    x11::AtomTable atoms(connection->get());
    const xcb_atom_t clipboard = atoms.atom("CLIPBOARD");
    const x11::XcbPtr<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection->get(), xcb_get_selection_owner(connection->get(), clipboard), nullptr));
    ASSERT_TRUE(owner);
    for (const char* target : {"text/html", kMarkerTarget}) {
        xcb_convert_selection(connection->get(), owner->owner, clipboard, atoms.atom(target),
                              atoms.atom("ANSWER"), XCB_CURRENT_TIME);
    }
    // A whole paste through the same queue says that both requests were handled.
    xcb_flush(connection->get());
    ASSERT_TRUE(rig.paste(kMarkerTarget));
    writeHtml(rig, "later");
    EXPECT_EQ(rig.paste("text/html")->bytes, "later");
}

TEST(X11PasteboardServing, GivesToXclip) {
    X11PasteboardRig rig;
    const QString text = u"for xclip \u00fc"_s.repeated(40'000);
    rig.pasteboard().write({.text = text});
    ASSERT_TRUE(waitUntilPasted(rig, "UTF8_STRING", text.toUtf8()));
    EXPECT_EQ(runTool(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"clipboard"_s}), text.toUtf8());
    EXPECT_EQ(runTool(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"clipboard"_s, u"-t"_s,
                                   QString::fromLatin1(kMarkerTarget)}),
              kMarkerValue);
}

TEST(X11PasteboardServing, AProgramThatIsAboutToQuitIsAnsweredWhenItsCopyIsSettled) {
    struct Case {
        const char* name;
        bool isSettledBefore;
        bool isKept;
        const char* answer;
    };
    for (const Case& row : {Case{"kept before it asks", true, true, "saved"},
                            Case{"filtered before it asks", true, false, "refused"},
                            Case{"kept after it asks", false, true, "saved"},
                            Case{"filtered after it asks", false, false, "refused"}}) {
        SCOPED_TRACE(row.name);
        X11PasteboardRig rig;
        ASSERT_TRUE(waitUntil([] { return isOwned(u"CLIPBOARD_MANAGER"_s); }));
        rig.copy(copiedText(u"last words"_s));
        PasteboardReading reading(rig.pasteboard().open());
        const auto settle = [&] {
            EXPECT_TRUE(reading.string(PasteboardType::String));
            rig.pasteboard().settle(reading.changeCount(),
                                    row.isKept ? std::optional(reading.kept()) : std::nullopt);
        };
        std::atomic<bool> isAsked = false;
        rig.pasteboard().setListener([&](PasteboardChange change) {
            isAsked = isAsked || change == PasteboardChange::LeavingSoon;
        });
        if (row.isSettledBefore) {
            settle();
        }
        rig.owner().signal(SIGUSR2);
        if (!row.isSettledBefore) {
            ASSERT_TRUE(waitUntil([&] { return isAsked.load(); }));
            settle();
        }
        EXPECT_EQ(rig.owner().line(), row.answer);
        EXPECT_EQ(isAsked, !row.isSettledBefore);
        rig.pasteboard().setListener({});
    }
}

TEST(X11PasteboardServing, WithoutAListenerOrAnAnswerAProgramThatQuitsIsRefused) {
    x11::PasteboardLimits limits;
    limits.saveTargets = 100ms;
    X11PasteboardRig rig(limits);
    ASSERT_TRUE(waitUntil([] { return isOwned(u"CLIPBOARD_MANAGER"_s); }));
    rig.copy(copiedText(u"x"_s));
    rig.owner().signal(SIGUSR2);
    EXPECT_EQ(rig.owner().line(), "refused");
    rig.pasteboard().setListener([](PasteboardChange) {});
    rig.owner().signal(SIGUSR2);
    EXPECT_EQ(rig.owner().line(), "refused");
}

TEST(X11PasteboardServing, TheClipboardManagerIsTakenOverWhenItQuits) {
    auto first = std::make_unique<X11PasteboardRig>();
    ASSERT_TRUE(waitUntil([] { return isOwned(u"CLIPBOARD_MANAGER"_s); }));
    X11PasteboardRig second;
    first.reset();
    ASSERT_TRUE(waitUntil([] { return isOwned(u"CLIPBOARD_MANAGER"_s); }));
    second.copy(copiedText(u"x"_s));
    second.pasteboard().settle(second.pasteboard().changeCount(), KeptContents{});
    second.owner().signal(SIGUSR2);
    EXPECT_EQ(second.owner().line(), "saved");
}

TEST(X11PasteboardServing, HandsItsContentsToAnotherManagerWhenItEnds) {
    X11PasteboardRig manager;
    ASSERT_TRUE(waitUntil([] { return isOwned(u"CLIPBOARD_MANAGER"_s); }));
    std::atomic<bool> isAsked = false;
    manager.pasteboard().setListener([&](PasteboardChange change) {
        if (change == PasteboardChange::LeavingSoon) {
            isAsked = true;
        }
    });
    {
        X11PasteboardRig leaving;
        const qint64 count = manager.pasteboard().changeCount();
        leaving.pasteboard().write({.text = u"legacy"_s});
        ASSERT_TRUE(manager.waitForChangeAfter(count));
        auto saving = std::async(std::launch::async, [&] {
            while (!isAsked) {
                std::this_thread::yield();
            }
            PasteboardReading reading(manager.pasteboard().open());
            EXPECT_EQ(reading.string(PasteboardType::String), u"legacy"_s);
            manager.pasteboard().settle(reading.changeCount(), reading.kept());
        });
        leaving.endPasteboard();
        isAsked = true;
        saving.get();
    }
    EXPECT_TRUE(waitUntilPasted(manager, "UTF8_STRING", "legacy"));
}

TEST(X11PasteboardServing, ASlowConversionKeepsNobodyElseWaiting) {
    struct Slow final : RichTextReader {
        explicit Slow(std::shared_future<void> gate) : m_gate(std::move(gate)) {}
        Result<StyledText> readRtf(const QByteArray&) const override {
            m_gate.wait();
            return StyledText{u"slow"_s, {}};
        }
        Result<StyledText> readHtml(const QByteArray& html) const override { return readRtf(html); }
        std::shared_future<void> m_gate;
    };
    std::promise<void> gate;
    const Slow slow(gate.get_future().share());
    struct NoImages final : ImageCodec {
        Result<QImage> decode(const QByteArray&) const override { return none(); }
        Result<QSize> size(const QByteArray&) const override { return none(); }
        Result<QImage> decodeScaled(const QByteArray&, QSize) const override { return none(); }
        Result<QByteArray> encodePng(const QImage&) const override { return none(); }
        Result<QByteArray> encodeJpeg(const QImage&, double) const override { return none(); }
        QString mimeType(const QByteArray&) const override { return {}; }
        static std::unexpected<Error> none() { return failure(ErrorKind::Unsupported, {}); }
    } const noImages;
    auto pasteboard = x11::X11Pasteboard::create({slow, noImages});
    ASSERT_TRUE(pasteboard);
    const qint64 count = (*pasteboard)->changeCount();
    (*pasteboard)->write({.rtf = QByteArray("{\\rtf1 x}")});
    ASSERT_TRUE(waitUntil([&] { return (*pasteboard)->changeCount() > count; }));
    auto waiting = std::async(std::launch::async,
                              [] { return runTool(u"read_selection"_s, {u"UTF8_STRING"_s}); });
    EXPECT_EQ(runTool(u"read_selection"_s, {u"text/rtf"_s}), "{\\rtf1 x}");
    EXPECT_EQ(waiting.wait_for(0s), std::future_status::timeout);
    gate.set_value();
    EXPECT_EQ(waiting.get(), "slow");
}

}  // namespace

}  // namespace quillo::testing
