// SPDX-License-Identifier: MIT
// Pasting into the program that was in front: when, with which keys, and when not at all.
#include <gtest/gtest.h>

#include <QElapsedTimer>

#include "paste/paste_back.h"
#include "platform/images/qt_image_codec.h"
#include "platform/text/document_reader.h"
#include "support/fake_hot_keys.h"
#include "support/fake_key_event_poster.h"
#include "support/fake_pasteboard.h"
#include "support/fake_workspace.h"
#include "support/in_memory_store.h"
#include "support/manual_clock.h"
#include "support/memory_user_defaults.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillo::testing {
namespace {

class Pasting : public ::testing::Test {
protected:
    Pasting() {
        m_editor.windowId = 7;
        m_editor.windowClass = u"Editor"_s;
        m_clip = Clip::create(m_persistence.viewContext(), m_clock.now());
        m_clip->setPlaintext(u"words"_s);
        EXPECT_TRUE(m_persistence.viewContext().save());
        QObject::connect(&m_pasteBack, &PasteBack::pasteWithheld, [this] { ++m_withheld; });
        m_clock.advance(1s);
    }

    [[nodiscard]] bool wasTouched() {
        return waitUntil([this] { return m_clip->createdAt() == m_clock.now(); }) &&
               m_clip->modifiedAt() == m_clock.now();
    }

    ManualClock m_clock;
    MemoryUserDefaults m_defaults;
    PersistenceController m_persistence{inMemory(m_clock)};
    DocumentReader m_richText;
    QtImageCodec m_images;
    FakePasteboard m_pasteboard{PasteboardConverters{m_richText, m_images}};
    FakeWorkspace m_workspace;
    FakeKeyEventPoster m_keys;
    FakeHotKeys m_hotKeys;
    PasteBack m_pasteBack{{m_pasteboard, m_workspace, m_keys, m_hotKeys, m_persistence, m_defaults,
                           ContentReaders{m_richText, m_images}, m_clock}};
    RunningApplication m_editor;
    std::shared_ptr<Clip> m_clip;
    int m_withheld = 0;
};

TEST_F(Pasting, PostsOnceTheDelayIsOverAndTheFocusIsBackAndRenewsTheClip) {
    bool wasSuspended = false;
    m_keys.onPost = [&](PasteKeys) { wasSuspended = m_hotKeys.isSuspended(); };
    QElapsedTimer timer;
    timer.start();
    m_pasteBack.pasteAndTouch(m_clip->id(), m_editor);
    m_workspace.setActive(m_editor);
    ASSERT_TRUE(waitUntil([this] { return !m_keys.posted.isEmpty(); }));
    EXPECT_GE(timer.elapsed(), 30);
    EXPECT_TRUE(wasSuspended);
    EXPECT_FALSE(m_hotKeys.isSuspended());
    EXPECT_TRUE(wasTouched());
    EXPECT_EQ(m_keys.posted.size(), 1);
    EXPECT_EQ(m_withheld, 0);
}

TEST_F(Pasting, PostsNothingWhenTheFocusDoesNotComeBack) {
    RunningApplication other;
    other.windowId = 8;
    m_workspace.setActive(other);
    m_pasteBack.pasteAndTouch(m_clip->id(), m_editor);
    ASSERT_TRUE(waitUntil([this] { return m_withheld == 1; }));
    EXPECT_TRUE(m_keys.posted.isEmpty());
    EXPECT_TRUE(wasTouched());
    m_workspace.setActive(m_editor);
    EXPECT_FALSE(waitUntil([this] { return !m_keys.posted.isEmpty(); }, 60ms));
}

TEST_F(Pasting, TheSettingAndAMissingProgramSuppressOnlyTheKeys) {
    m_defaults.setObject(u"enableAutoPaste"_s, false);
    m_workspace.setActive(m_editor);
    m_pasteBack.pasteAndTouch(m_clip->id(), m_editor);
    EXPECT_TRUE(wasTouched());
    EXPECT_EQ(m_withheld, 0);
    // What is no boolean counts as absent, which is on.
    m_defaults.setObject(u"enableAutoPaste"_s, u"no"_s);
    m_clock.advance(1s);
    m_pasteBack.pasteAndTouch(m_clip->id(), std::nullopt);
    EXPECT_TRUE(wasTouched());
    EXPECT_EQ(m_withheld, 1);
    EXPECT_FALSE(waitUntil([this] { return !m_keys.posted.isEmpty(); }, 60ms));
}

TEST_F(Pasting, AFailureToPostIsSaidAndTheShortcutWorksAgain) {
    m_keys.setError(Error{ErrorKind::Unsupported, u"no way to post"_s});
    m_workspace.setActive(m_editor);
    m_pasteBack.pasteAndTouch(m_clip->id(), m_editor);
    ASSERT_TRUE(waitUntil([this] { return m_withheld == 1; }));
    EXPECT_FALSE(m_hotKeys.isSuspended());
}

TEST_F(Pasting, OnlyXtermAndItsKinAreOfferedTheTextAsPrimary) {
    m_pasteBack.copyToPasteboard(*m_clip, m_editor);
    EXPECT_EQ(m_pasteboard.primary(), std::nullopt);
    RunningApplication xterm;
    xterm.windowId = 9;
    xterm.windowClass = u"XTerm"_s;
    m_pasteBack.copyToPasteboard(*m_clip, xterm);
    EXPECT_EQ(m_pasteboard.primary(), u"words"_s);
    EXPECT_EQ(m_pasteboard.paste("UTF8_STRING").value_or(RawReply{}).bytes, "words");
}

TEST_F(Pasting, EveryCopyCarriesTheMarkerFirst) {
    const std::function<void()> ways[] = {
        [this] { m_pasteBack.copyToPasteboard(*m_clip, std::nullopt); },
        [this] { m_pasteBack.copyQuickly(*m_clip); },
        [this] { m_pasteBack.copyInDetail(*m_clip); },
        [this] { m_pasteBack.copyTransformed(*m_clip, TextTransformation::Uppercase); },
    };
    for (const auto& copy : ways) {
        m_pasteboard.clear();
        copy();
        EXPECT_EQ(m_pasteboard.offeredTargets().value(0), "com.quillohq.Quillo.marker");
    }
    EXPECT_EQ(m_pasteboard.paste("UTF8_STRING").value_or(RawReply{}).bytes, "WORDS");
    m_clip->setPlaintext({});
    m_pasteBack.copyTransformed(*m_clip, TextTransformation::Lowercase);
    EXPECT_EQ(m_pasteboard.paste("UTF8_STRING").value_or(RawReply{}).bytes, "WORDS")
        << "nothing to transform leaves the pasteboard as it is";
}

}  // namespace
}  // namespace quillo::testing
