// SPDX-License-Identifier: MIT
// What each copy of each kind of clip consists of, broken clips included.
#include <gtest/gtest.h>

#include "model/persistence_controller.h"
#include "paste/clip_contents.h"
#include "paste/paste_target.h"
#include "platform/images/qt_image_codec.h"
#include "platform/text/document_reader.h"
#include "support/in_memory_store.h"
#include "support/manual_clock.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

// The parts of a contents in one comparable text: which are there, and what they hold.
QByteArray summary(const PasteboardContents& contents) {
    QByteArrayList parts;
    if (contents.text) {
        parts += "text:" + contents.text->toUtf8();
    }
    if (contents.rtf) {
        parts += "rtf:" + *contents.rtf;
    }
    if (contents.html) {
        parts += "html:" + *contents.html;
    }
    if (contents.image) {
        parts += "image:" + QByteArray::number(contents.image->size());
    }
    for (const QUrl& file : contents.fileUrls) {
        parts += "file:" + file.toEncoded();
    }
    return parts.join(' ');
}

class ClipContents : public ::testing::Test {
protected:
    [[nodiscard]] QByteArray pngBytes() const {
        QImage image({2, 2}, QImage::Format_RGB32);
        image.fill(Qt::green);
        return m_images.encodePng(image).value();
    }

    DocumentReader m_richText;
    QtImageCodec m_images;
    ManualClock m_clock;
    PersistenceController m_persistence{inMemory(m_clock)};
};

TEST_F(ClipContents, EachVariantCopiesWhatTheClipHasAndNothingBroken) {
    const QByteArray rtf = "{\\rtf1 words}";
    const QByteArray html = "<b>words</b>";
    const QString words = u"words"_s;
    const QString file = u"file:///tmp/a%20b"_s;
    const QByteArray uri = file.toUtf8();
    const QByteArray png = pngBytes();
    const QByteArray image = "image:" + QByteArray::number(png.size());
    struct Row {
        const char* name;
        qint64 type;
        std::optional<QString> plaintext;
        std::optional<QByteArray> bytes;
        std::optional<QString> url;
        QByteArray byKind;
        QByteArray quick;
        QByteArray inDetail;
    };
    const Row rows[] = {
        {"text", 0, u"a"_s, {}, {}, "text:a", "text:a", "text:a"},
        {"link without text", 0, {}, {}, u"http://h"_s, "text:http://h", "text:http://h", ""},
        {"empty clip", 0, {}, {}, {}, "", "", ""},
        {"unknown kind", 7, u"a"_s, {}, {}, "text:a", "text:a", "text:a"},
        {"rtf", 1, words, rtf, {}, "rtf:" + rtf, "text:words", "text:words rtf:" + rtf},
        {"rtf without text", 1, {}, rtf, {}, "rtf:" + rtf, "", "rtf:" + rtf},
        {"broken rtf", 1, words, "?", {}, "text:words", "text:words", "text:words rtf:?"},
        {"html", 2, words, html, {}, "html:" + html, "text:words", "text:words html:" + html},
        {"no UTF-8", 2, words, "\xff", {}, "text:words", "text:words", "text:words html:\xff"},
        {"image", 3, {}, png, {}, image, image, image},
        {"broken image", 3, {}, "no image", {}, "", "image:8", "image:8"},
        {"missing image", 3, {}, {}, {}, "", "", ""},
        {"file", 4, {}, {}, file, "file:" + uri, "text:" + uri, "file:" + uri},
        {"broken file", 4, {}, {}, u"no address"_s, "", "text:no address", ""},
    };
    const ContentReaders readers{m_richText, m_images};
    for (const Row& row : rows) {
        const auto clip = Clip::create(m_persistence.viewContext(), m_clock.now());
        clip->setRawType(row.type);
        clip->setPlaintext(row.plaintext);
        clip->setUrlString(row.url);
        if (row.type == 3) {
            clip->setImageData(row.bytes);
        } else {
            clip->setAttributed(row.bytes);
        }
        EXPECT_EQ(summary(contentsByKind(*clip, readers)), row.byKind) << row.name;
        EXPECT_EQ(summary(contentsForQuickCopy(*clip)), row.quick) << row.name;
        EXPECT_EQ(summary(contentsForDetailCopy(*clip)), row.inDetail) << row.name;
    }
}

TEST_F(ClipContents, SeveralAreFilesOnlyWhereAllAreFiles) {
    ObjectContext& context = m_persistence.viewContext();
    const auto words = Clip::create(context, m_clock.now());
    words->setPlaintext(u"words"_s);
    QList<std::shared_ptr<Clip>> clips;
    for (const QString& address : {u"file:///tmp/a"_s, u"file:///tmp/b"_s}) {
        clips.append(Clip::create(context, m_clock.now()));
        clips.constLast()->setType(ClipType::FileUrl);
        clips.constLast()->setUrlString(address);
    }
    EXPECT_EQ(summary(contentsTogether(clips, m_richText).contents),
              "file:file:///tmp/a file:file:///tmp/b");
    clips.append(words);
    EXPECT_EQ(summary(contentsTogether(clips, m_richText).contents),
              "text:file:///tmp/a\nfile:///tmp/b\nwords");
}

TEST(PasteTarget, TheKeysFollowTheProgram) {
    const struct {
        const char* name;
        QString windowClass;
        QString windowInstance;
        QStringList categories;
        PasteKeys keys;
    } rows[] = {
        {"an editor", u"Mousepad"_s, u"mousepad"_s, {u"Utility"_s}, PasteKeys::ControlV},
        {"nothing known", {}, {}, {}, PasteKeys::ControlV},
        {"xterm", u"XTerm"_s, u"xterm"_s, {u"TerminalEmulator"_s}, PasteKeys::ShiftInsert},
        {"xterm under another name", u"UXTerm"_s, u"login"_s, {}, PasteKeys::ShiftInsert},
        {"by category", u"New"_s, u"new"_s, {u"TerminalEmulator"_s}, PasteKeys::ControlShiftV},
        {"without a desktop entry", u"kitty"_s, u"kitty"_s, {}, PasteKeys::ControlShiftV},
    };
    for (const auto& row : rows) {
        RunningApplication application;
        application.windowClass = row.windowClass;
        application.windowInstance = row.windowInstance;
        EXPECT_EQ(pasteKeysFor(application, row.categories), row.keys) << row.name;
    }
}

}  // namespace
}  // namespace quillo::testing
