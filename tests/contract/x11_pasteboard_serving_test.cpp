// SPDX-License-Identifier: MIT
// Offering to programs on a real X server, and standing in for those that quit.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>

#include "contract/pasteboard_rig.h"
#include "platform/pasteboard_reading.h"
#include "support/plain_converters.h"
#include "support/wait_until.h"
#include "tools/x_client.h"

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

/// Another program that talks to the server itself.
class RawClient final : public XClient {
public:
    RawClient() : XClient(x11::connectToServer().value()), m_window(makeWindow()) {}

    void ask(xcb_window_t requestor, const QByteArray& target) {
        xcb_convert_selection(server(), requestor, atom("CLIPBOARD"), atom(target), atom("ANSWER"),
                              XCB_CURRENT_TIME);
        xcb_flush(server());
    }
    void setProperty(xcb_window_t window, const QByteArray& name, std::uint32_t value) {
        xcb_change_property(server(), XCB_PROP_MODE_REPLACE, window, atom(name), XCB_ATOM_CARDINAL,
                            32, 1, &value);
        x11::waitForServer(server());
    }
    /// The type of the answer, which is then taken; empty when there is none.
    [[nodiscard]] QByteArray takeAnswer() {
        const auto answer = take(m_window, atom("ANSWER"));
        return answer && answer->type != XCB_ATOM_NONE ? nameOf(answer->type) : QByteArray();
    }
    /// Whether another program wants to know when a part was taken.
    [[nodiscard]] bool isWatched() {
        const x11::XcbPtr<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(server(), xcb_get_window_attributes(server(), m_window),
                                            nullptr));
        return attributes && (attributes->all_event_masks & XCB_EVENT_MASK_PROPERTY_CHANGE) != 0;
    }
    [[nodiscard]] xcb_window_t window() const { return m_window; }

private:
    xcb_window_t m_window;
};

// Guards against a window that stopped hearing of its own properties, so that no later write was
// ever made: a read that was on its way when a write took effect asked the pasteboard itself.
TEST(X11PasteboardServing, WritesOnAfterARequestInItsOwnName) {
    X11PasteboardRig rig;
    writeHtml(rig, patternOf(1'000'000));
    RawClient client;
    const xcb_window_t owner = client.ownerOf("CLIPBOARD");
    for (const char* target : {"text/html", kMarkerTarget}) {
        client.ask(owner, target);
    }
    // A whole paste through the same queue says that both requests were handled.
    ASSERT_TRUE(rig.paste(kMarkerTarget));
    writeHtml(rig, "later");
    EXPECT_EQ(rig.paste("text/html")->bytes, "later");
}

// Guards against an append that failed for ever, and every later write with it: any program can
// give a property of our window another type.
TEST(X11PasteboardServing, WritesOnAfterAnotherProgramWroteItsProperties) {
    X11PasteboardRig rig;
    writeHtml(rig, "earlier");
    RawClient client;
    client.setProperty(client.ownerOf("CLIPBOARD"), "QUILLO_TIME", 1);
    writeHtml(rig, "later");
    EXPECT_EQ(rig.paste("text/html")->bytes, "later");
}

TEST(X11PasteboardServing, DropsATransferWhosePartsNobodyTakes) {
    x11::PasteboardLimits limits;
    limits.idleTransfer = 100ms;
    X11PasteboardRig rig(limits);
    writeHtml(rig, patternOf(1'000'000));
    RawClient client;
    client.ask(client.window(), "text/html");
    ASSERT_TRUE(waitUntil([&] { return client.takeAnswer() == "INCR"; }));
    ASSERT_TRUE(waitUntil([&] { return !client.isWatched(); }));
    EXPECT_EQ(client.takeAnswer(), "text/html") << "the part that was under way stays";
    // A whole paste through the same queue says that the taking was handled.
    ASSERT_TRUE(rig.paste(kMarkerTarget));
    EXPECT_EQ(client.takeAnswer(), "") << "no further part comes";
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
    struct Slow final : PlainConverters {
        explicit Slow(std::shared_future<void> gate) : m_gate(std::move(gate)) {}
        Result<StyledText> readRtf(const QByteArray&) const override {
            m_gate.wait();
            return StyledText{u"slow"_s, {}};
        }
        std::shared_future<void> m_gate;
    };
    std::promise<void> gate;
    const Slow slow(gate.get_future().share());
    auto pasteboard = x11::X11Pasteboard::create({slow, slow});
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
