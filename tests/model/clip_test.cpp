// SPDX-License-Identifier: MIT
#include "model/clip.h"

#include "model/clip_file_kind.h"
#include "store/store_fixture.h"

using namespace Qt::StringLiterals;
using namespace quillo;
using namespace quillo::testing;

namespace {

using Text = std::optional<QString>;

class ClipTest : public StoreTest {
protected:
    void SetUp() override {
        auto inMemory = options();
        inMemory.kind = StoreKind::InMemory;
        controller = std::make_unique<PersistenceController>(inMemory);
        clip = Clip::create(controller->viewContext(), clock.now());
    }
    void TearDown() override { clip.reset(); }

    std::shared_ptr<Clip> clip;
};

TEST_F(ClipTest, IsShownByTheFirstThingItHas) {
    struct Row {
        Text text, url, name;
        qint64 type;
        QString shown;
    };
    const Row rows[] = {
        {u"text"_s, u"url"_s, u"name"_s, 0, u"text"_s},
        {u""_s, u"url"_s, u"name"_s, 0, u"url"_s},
        {u""_s, u""_s, u"name"_s, 0, u""_s},
        {{}, {}, u"name"_s, 3, u"name"_s},
        {{}, {}, {}, 0, u"[Text]"_s},
        {{}, {}, {}, 1, u"[Rich Text]"_s},
        {u""_s, {}, {}, 2, u"[HTML]"_s},
        {{}, {}, {}, 3, u"[Image]"_s},
        {{}, {}, {}, 4, u"[File]"_s},
        {{}, {}, {}, 7, u"[Text]"_s},
        {{}, {}, {}, -1, u"[Text]"_s},
    };
    for (const Row& row : rows) {
        clip->setPlaintext(row.text);
        clip->setUrlString(row.url);
        clip->setFileName(row.name);
        clip->setRawType(row.type);
        EXPECT_EQ(clip->displayText(), row.shown);
    }
}

TEST(ColorOfATextTest, IsReadFromThreeSixOrEightDigits) {
    struct Row {
        QString text;
        std::optional<QColor> color;
    };
    const Row rows[] = {
        {u"123"_s, QColor(0x11, 0x22, 0x33)},
        {u"abc"_s, QColor(0xaa, 0xbb, 0xcc)},
        {u"  #FF8800\n"_s, QColor(0xff, 0x88, 0)},
        {u"#FF8800AA"_s, QColor(0xff, 0x88, 0, 170)},
        {u"fF8800aA"_s, QColor(0xff, 0x88, 0, 170)},
        {u"#12345"_s, {}},
        {u"beef"_s, {}},
        {u"1234567"_s, {}},
        {u"123456789"_s, {}},
        {u"##123"_s, {}},
        {u"# 123"_s, {}},
        {u"12g"_s, {}},
        {u"１２３"_s, {}},
        {u"#"_s, {}},
        {u""_s, {}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(detectColor(row.text), row.color) << row.text.toStdString();
    }
}

TEST_F(ClipTest, OnlyATextOrAnUnknownKindNamesAColor) {
    for (const qint64 type : {0, 1, 2, 3, 4, 7, -1}) {
        clip->setPlaintext(u"#123456"_s);
        clip->setRawType(type);
        EXPECT_EQ(clip->detectedColor().has_value(), type == 0 || type == 7 || type == -1) << type;
    }
    clip->setType(ClipType::Text);
    clip->setPlaintext({});
    clip->setUrlString(u"#123456"_s);
    EXPECT_FALSE(clip->detectedColor().has_value());
}

TEST(FileKindTest, ComesFromTheTypeThenFromTheName) {
    struct Row {
        Text type, name;
        QString kind, label;
    };
    const Row rows[] = {
        {u"public.folder"_s, u"Folder.app"_s, u"Folder"_s, u"Folder"_s},
        {u"com.adobe.PDF"_s, u"a.docx"_s, u"PDF"_s, u"PDF"_s},
        {u"org.openxmlformats.spreadsheetml.sheet"_s, u"a.xlsx"_s, u"Excel"_s, u"Excel .xlsx"_s},
        {u"org.openxmlformats.wordprocessingml.document"_s, {}, u"Word"_s, u"Word"_s},
        {u"org.openxmlformats.presentationml.presentation"_s, {}, u"PowerPoint"_s, u"PowerPoint"_s},
        {u"public.comma-separated-values-text"_s, u"a.csv"_s, u"CSV"_s, u"CSV"_s},
        {u"org.gnu.gnu-zip-archive"_s, u"archive.tar.gz"_s, u"Archive"_s, u"Archive .gz"_s},
        {u"public.plain-text"_s, u"a.md"_s, u"Text"_s, u"Text .md"_s},
        {u"public.shell-script"_s, u"run.sh"_s, u"Code"_s, u"Code .sh"_s},
        {u"public.mp3.audio"_s, u"a.mp3"_s, u"Audio"_s, u"Audio .mp3"_s},
        {u"public.png"_s, u"a.PNG"_s, u"Image"_s, u"Image .png"_s},
        {{}, u"Report.DOCX"_s, u"Word"_s, u"Word .docx"_s},
        {{}, u"Makefile"_s, u"File"_s, u"File .makefile"_s},
        {{}, u"key"_s, u"Keynote"_s, u"Keynote"_s},
        {{}, u"run.sh."_s, u"Script"_s, u"Script .sh"_s},
        {{}, u"..."_s, u"File"_s, u"File"_s},
        {u""_s, {}, u"File"_s, u"File"_s},
        {{}, {}, u"File"_s, u"File"_s},
    };
    for (const Row& row : rows) {
        const QString kind = fileKindName(row.type, row.name);
        EXPECT_EQ(kind, row.kind) << row.name.value_or(*row.type).toStdString();
        EXPECT_EQ(fileTypeLabel(kind, row.name), row.label);
    }
}

TEST_F(ClipTest, SizesAreWrittenInDecimalUnits) {
    const std::pair<qint64, QString> rows[] = {
        {1, u"1 byte"_s},
        {999, u"999 bytes"_s},
        {1'000, u"1 KB"_s},
        {842'400, u"842 KB"_s},
        {999'499, u"999 KB"_s},
        {999'500, u"1 MB"_s},
        {1'230'000, u"1.2 MB"_s},
        {2'000'000, u"2 MB"_s},
        {999'960'000, u"1 GB"_s},
        {3'450'000'000, u"3.45 GB"_s},
        {10'000'000'000, u"10 GB"_s},
    };
    clip->setType(ClipType::Image);
    for (const auto& [bytes, text] : rows) {
        clip->setFileSize(bytes);
        EXPECT_EQ(clip->formattedFileSize(), text) << bytes;
    }
    clip->setFileSize(0);
    EXPECT_FALSE(clip->formattedFileSize().has_value());
    clip->setFileSize(5);
    clip->setType(ClipType::Text);
    EXPECT_FALSE(clip->formattedFileSize().has_value());
    clip->setType(ClipType::FileUrl);
    EXPECT_EQ(clip->formattedFileSize(), u"5 bytes"_s);
}

}  // namespace
