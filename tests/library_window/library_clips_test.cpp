// SPDX-License-Identifier: MIT
// The list of a section beside its plain definition, and how it follows the store.
#include "library/window/library_clips.h"

#include <gtest/gtest.h>

#include "library/window/library_sections.h"
#include "model/groups.h"
#include "support/in_memory_store.h"
#include "support/manual_clock.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillo::testing {
namespace {

/// Small enough for the store alone, and too large for it.
class LibraryClipsOf : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override {
        for (int i = 0; i < GetParam(); ++i) {
            m_newestFirst.prepend(add(u"clip %1"_s.arg(i), i % 7 == 0));
        }
        ASSERT_TRUE(view().save());
        m_board = createGroup(view(), {u"Work"_s, Qt::red, GroupPlace::AfterListed,
                                       m_newestFirst.mid(3, 12)})
                      .value();
        m_persistence.waitUntilIdle();
        m_clips = std::make_unique<LibraryClips>(m_persistence, m_search,
                                                 [](const QString& id) { return id; });
    }

    [[nodiscard]] ObjectContext& view() { return m_persistence.viewContext(); }

    QUuid add(const QString& text, bool isPinned = false) {
        m_clock.advance(1s);
        const auto clip = Clip::create(view(), m_clock.now());
        clip->setPlaintext(text);
        clip->setPinned(isPinned);
        return clip->id();
    }

    [[nodiscard]] QList<QUuid> pinned() {
        QList<QUuid> ids = m_newestFirst;
        ids.removeIf([&](const QUuid& id) { return !view().object<Clip>(id)->isPinned(); });
        return ids;
    }

    [[nodiscard]] bool becomes(const QList<QUuid>& ids) {
        return waitUntil([&] { return m_clips->ids() == ids && m_clips->isComplete(); });
    }

    ManualClock m_clock;
    PersistenceController m_persistence{inMemory(m_clock)};
    ClipSearch m_search{m_persistence, {}};
    QList<QUuid> m_newestFirst;
    std::shared_ptr<Pinboard> m_board;
    std::unique_ptr<LibraryClips> m_clips;
};

TEST_P(LibraryClipsOf, ASectionListsItsClipsInItsOrder) {
    EXPECT_EQ(m_clips->count(), GetParam()) << "known before the search has answered";
    EXPECT_EQ(m_clips->ids().first(100), m_newestFirst.first(100));
    EXPECT_TRUE(becomes(m_newestFirst));
    m_clips->setSection({.kind = LibrarySection::Kind::Favorites});
    EXPECT_EQ(m_clips->ids(), pinned()) << "shown at once, newest first";
    ASSERT_TRUE(m_board->move(0, 2));
    ASSERT_TRUE(view().save());
    m_clips->setSection(LibrarySection::ofPinboard(m_board->id()));
    EXPECT_EQ(m_clips->ids(), m_board->orderedClipIds().value());
    EXPECT_EQ(m_clips->ids()[2], m_newestFirst[3]);
}

TEST_P(LibraryClipsOf, SearchAndTypeNarrowWithinTheSection) {
    m_clips->setSearchText(u"  CLIP 1"_s);
    QList<QUuid> found = m_newestFirst;
    found.removeIf([&](const QUuid& id) {
        return !view().object<Clip>(id)->plaintext()->startsWith(u"clip 1");
    });
    EXPECT_TRUE(becomes(found));
    m_clips->setSection(LibrarySection::ofPinboard(m_board->id()));
    found.removeIf([&](const QUuid& id) { return !m_newestFirst.mid(3, 12).contains(id); });
    EXPECT_TRUE(becomes(found));
    m_clips->setSearchText(u" \n"_s);
    EXPECT_TRUE(becomes(m_newestFirst.mid(3, 12)));
    m_clips->setTypeFilter(FilterType::Image);
    EXPECT_TRUE(becomes({}));
    m_clips->clearFilters();
    m_clips->setSection({});
    EXPECT_TRUE(becomes(m_newestFirst));
}

TEST_P(LibraryClipsOf, FollowsTheStore) {
    ASSERT_TRUE(becomes(m_newestFirst));
    int replaced = 0;
    QObject::connect(m_clips.get(), &LibraryClips::replaced, [&] { ++replaced; });
    m_newestFirst.prepend(add(u"clip new"_s));
    ASSERT_TRUE(view().save());
    EXPECT_TRUE(becomes(m_newestFirst));
    m_clips->load(0, 5);
    EXPECT_EQ(m_clips->card(m_newestFirst[0])->body, u"clip new");

    view().object<Clip>(m_newestFirst[0])->setPlaintext(u"clip edited"_s);
    ASSERT_TRUE(view().save());
    EXPECT_EQ(m_clips->card(m_newestFirst[0]), nullptr);

    view().remove(*view().object<Clip>(m_newestFirst[1]));
    ASSERT_TRUE(view().save());
    m_newestFirst.removeAt(1);
    EXPECT_EQ(m_clips->ids(), m_newestFirst) << "what is deleted is gone at once";

    const QUuid hidden = m_newestFirst.takeAt(2);
    m_clips->setHidden({hidden});
    EXPECT_TRUE(becomes(m_newestFirst));
    m_newestFirst.insert(2, hidden);
    m_clips->setHidden({});
    EXPECT_TRUE(becomes(m_newestFirst));
    EXPECT_EQ(replaced, 0) << "a list that follows does not start anew";
}

TEST_P(LibraryClipsOf, APinboardFollowsItsMembersAndTheCountsDoToo) {
    const GroupList groups(view());
    LibrarySections sections(groups);
    m_clips->setSection(LibrarySection::ofPinboard(m_board->id()));
    ASSERT_TRUE(addClips(*m_board, {m_newestFirst[0]}));
    EXPECT_TRUE(becomes(m_board->orderedClipIds().value()));
    EXPECT_TRUE(m_clips->ids().contains(m_newestFirst[0]));
    EXPECT_EQ(sections.memberCount(groups.items()[0]), 13);
    sections.setHidden({m_newestFirst[0]});
    EXPECT_EQ(sections.memberCount(groups.items()[0]), 12);
    EXPECT_EQ(sections.clipCount(), GetParam() - 1);

    const qsizetype before = sections.favoriteCount();
    view().object<Clip>(m_newestFirst[5])->setPinned(true);
    add(u"another"_s, true);
    ASSERT_TRUE(view().save());
    EXPECT_TRUE(waitUntil([&] { return sections.favoriteCount() == before + 2; }));
    EXPECT_EQ(sections.clipCount(), GetParam());
    EXPECT_EQ(sections.title(m_clips->section()), u"Work");
    ASSERT_TRUE(deleteGroup(*m_board));
    EXPECT_FALSE(sections.contains(m_clips->section()));
    EXPECT_TRUE(becomes({}));
}

// It rests between two readings and must not miss the last change.
TEST(LibraryClips, ALongPinboardFollowsChangesThatComeTogether) {
    ManualClock clock;
    PersistenceController persistence(inMemory(clock));
    ObjectContext& view = persistence.viewContext();
    ClipSearch search(persistence, {});
    QList<QUuid> ids;
    for (int i = 0; i < 2'100; ++i) {
        ids.prepend(Clip::create(view, clock.now())->id());
        clock.advance(1s);
    }
    const auto board =
        createGroup(view, {u"Work"_s, Qt::red, GroupPlace::AfterListed, ids}).value();
    LibraryClips clips(persistence, search, [](const QString& id) { return id; });
    clips.setSection(LibrarySection::ofPinboard(board->id()));
    EXPECT_EQ(clips.ids(), ids);
    for (int i = 0; i < 5; ++i) {
        ASSERT_TRUE(removeClips(*board, {ids.takeAt(i)}));
    }
    EXPECT_TRUE(waitUntil([&] { return clips.ids() == ids; }));
    ASSERT_TRUE(removeClips(*board, {ids.takeLast()}));
    ASSERT_TRUE(board->move(0, 2));
    ASSERT_TRUE(view.save());
    ids.move(0, 2);
    EXPECT_EQ(clips.ids(), ids) << "who moves a clip sees it move";
}

INSTANTIATE_TEST_SUITE_P(Histories, LibraryClipsOf, ::testing::Values(150, 450));

}  // namespace
}  // namespace quillo::testing
