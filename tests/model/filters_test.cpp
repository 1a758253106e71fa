// SPDX-License-Identifier: MIT
#include "model/filter_mask.h"
#include "model/filter_type.h"
#include "store/store_fixture.h"

using namespace Qt::StringLiterals;
using namespace quillo;
using namespace quillo::testing;

namespace {

using enum FilterType;

QList<FilterType> filtersOf(quint32 mask) {
    QList<FilterType> filters;
    for (const FilterType filter : allCases<FilterType>()) {
        if ((mask & filterBit(filter)) != 0) {
            filters += filter;
        }
    }
    return filters;
}

TEST(FilterMaskTest, FollowsFromAClipsValues) {
    struct Row {
        FilterInputs clip;
        QList<FilterType> filters;
        FilterType best;
    };
    const Row rows[] = {
        {{}, {Text}, Text},
        {{0, u"https://e.com"_s, u"https://e.com"_s, {}, {}}, {Link}, Link},
        {{0, u" #FF8800\n"_s, {}, {}, {}}, {Color}, Color},
        {{0, u"123"_s, u"https://e.com"_s, {}, {}}, {Link, Color}, Link},
        {{-1, u"x"_s, u"https://e.com"_s, {}, {}}, {Link}, Link},
        {{1, u"#123"_s, u"https://e.com"_s, {}, {}}, {RichText}, RichText},
        {{2, u"https://e.com"_s, u"https://e.com"_s, {}, {}}, {Html}, Html},
        {{3, {}, u"file:///a.pdf"_s, u"com.adobe.pdf"_s, u"a.pdf"_s}, {Image}, Image},
        {{4, {}, {}, u"public.folder"_s, u"a.pdf"_s}, {AllFiles, Folder}, Folder},
        {{4, {}, {}, u"a.directory"_s, {}}, {AllFiles, Folder}, Folder},
        {{4, {}, {}, u"com.Folder.x"_s, u"a.pdf"_s}, {AllFiles}, AllFiles},
        {{4, {}, {}, u"com.adobe.PDF"_s, {}}, {AllFiles, Pdf}, Pdf},
        {{4, {}, {}, {}, u"Report.DOCX"_s}, {AllFiles, Word}, Word},
        {{4, {}, {}, {}, u"a.numbers"_s}, {AllFiles, Excel}, Excel},
        {{4, {}, {}, {}, u"a.key"_s}, {AllFiles, Powerpoint}, Powerpoint},
        {{4, {}, {}, {}, u"a.tsv"_s}, {AllFiles, Csv}, Csv},
        {{4, {}, {}, {}, u"a.tar.gz"_s}, {AllFiles, Archive}, Archive},
        {{4, {}, {}, {}, u"a.ogg"_s}, {AllFiles, Audio}, Audio},
        {{4, {}, {}, u"public.movie"_s, u"a.x"_s}, {AllFiles, Video}, Video},
        {{4, u"#123"_s, u"file:///a.md"_s, {}, u"a.md"_s}, {AllFiles}, AllFiles},
    };
    for (const Row& row : rows) {
        const quint32 mask = filterMaskOf(row.clip);
        EXPECT_EQ(filtersOf(mask), row.filters) << (&row - rows);
        EXPECT_EQ(filterTypeOfMask(mask), row.best) << (&row - rows);
    }
}

class StoredFilterTest : public StoreTest {
protected:
    void SetUp() override {
        StoreTest::SetUp();
        open();
        key = addText(u"words"_s);
        clip = view().object<Clip>(key);
    }
    void TearDown() override { clip.reset(); }
    ObjectContext& view() { return controller->viewContext(); }
    [[nodiscard]] QList<FilterType> stored() {
        const auto database = SqliteDatabase::open(filePath().toUtf8());
        return filtersOf(quint32((*database)->queryInteger("SELECT filterMask FROM Clip").value()));
    }

    QUuid key;
    std::shared_ptr<Clip> clip;
};

TEST_F(StoredFilterTest, IsWrittenWithWhatItFollowsFrom) {
    EXPECT_EQ(stored(), QList{Text});
    EXPECT_TRUE(matches(*clip, Text));
    clip->setUrlString(u"https://e.com"_s);
    EXPECT_TRUE(matches(*clip, Link)) << "what is not saved yet counts";
    view().rollback();
    EXPECT_TRUE(matches(*clip, Text));
    clip->setValue(at(ClipAttribute::FilterMask), qint64{filterBit(Video)});
    EXPECT_FALSE(view().hasChanges()) << "nobody sets it";

    ChangeSet seen;
    QObject::connect(&view(), &ObjectContext::changed,
                     [&seen](const ChangeSet& changes) { seen = changes; });
    clip->setPlaintext(u"#123"_s);
    ASSERT_TRUE(view().save());
    EXPECT_EQ(stored(), QList{Color});
    EXPECT_EQ(filterTypeOf(*clip), Color);
    EXPECT_TRUE(seen.updated.value(0).attributes.contains(at(ClipAttribute::FilterMask)));
    clip->setPlaintext(u"#456"_s);
    ASSERT_TRUE(view().save());
    EXPECT_FALSE(seen.updated.value(0).attributes.contains(at(ClipAttribute::FilterMask)));
}

TEST_F(StoredFilterTest, AStoredMaskIsReadWithoutTheText) {
    {
        const auto database = SqliteDatabase::open(filePath().toUtf8());
        ASSERT_TRUE((*database)->execute("UPDATE Clip SET filterMask = 1024"));
    }
    view().refreshAllObjects();
    EXPECT_EQ(filterTypeOf(*clip), Excel);
}

TEST_F(StoredFilterTest, ChangesOfTwoContextsThatMeetGiveOneMask) {
    clip->setPlaintext(u"#123"_s);
    controller->perform([this](ObjectContext& context) {
        context.object<Clip>(key)->setUrlString(u"https://e.com"_s);
        EXPECT_TRUE(context.save());
    });
    controller->waitUntilIdle();
    ASSERT_FALSE(clip->urlString().has_value()) << "not merged yet";
    ASSERT_TRUE(view().save());
    EXPECT_EQ(stored(), (QList{Link, Color}));
    QCoreApplication::processEvents();
    EXPECT_EQ(filtersOf(clip->filterMask()), (QList{Link, Color}));
}

TEST_F(StoredFilterTest, AFailedSaveLeavesTheMaskAsItWas) {
    const auto done = view().transaction([this]() -> Result<void> {
        clip->setPlaintext(u"#123"_s);
        EXPECT_TRUE(view().save());
        return failure(ErrorKind::Failed, u"undone"_s);
    });
    EXPECT_FALSE(done);
    EXPECT_EQ(stored(), QList{Text});
    EXPECT_EQ(filterTypeOf(*clip), Text);
}

TEST_F(StoredFilterTest, AFetchFiltersInTheIndexAlone) {
    addText(u"#123"_s);
    addText(u"#456"_s);
    FetchRequest request;
    request.conditions = {filterCondition(Color)};
    EXPECT_EQ(view().count(request).value(), 2);
    request.sort = {{at(ClipAttribute::IsPinned), Qt::DescendingOrder},
                    {at(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
    request.limit = 50;
    EXPECT_EQ(view().fetchIds(request).value().size(), 2);
    EXPECT_EQ(view().fetch<Clip>(request).value().first()->plaintext(), u"#456"_s);

    const auto database = SqliteDatabase::open(filePath().toUtf8());
    for (const char* order : {"isPinned DESC, createdAt DESC, id", "createdAt DESC, id"}) {
        auto plan = (*database)->prepare(
            QByteArray("EXPLAIN QUERY PLAN SELECT id FROM Clip WHERE filterMask & 32 <> 0 "
                       "ORDER BY ") +
            order);
        ASSERT_TRUE(plan->step().value());
        const auto step = std::get<QString>(plan->value(3, AttributeType::Text));
        EXPECT_TRUE(step.contains(u"COVERING INDEX"_s)) << step.toStdString();
        EXPECT_FALSE(plan->step().value()) << "no sorting";
    }
}

}  // namespace
