// SPDX-License-Identifier: MIT
// The search beside its plain definition: every clip read, folded and looked through.
#include "model/search/clip_search.h"

#include <gtest/gtest.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <random>

#include "model/clip.h"
#include "model/pinboard.h"
#include "support/in_memory_store.h"
#include "support/manual_clock.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

icu::UnicodeString plainKey(const QString& text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* nfc = icu::Normalizer2::getNFCInstance(status);
    icu::UnicodeString key(text.utf16(), int32_t(text.size()));
    key = nfc->normalize(key, status);
    key = nfc->normalize(key.foldCase(), status);
    EXPECT_TRUE(U_SUCCESS(status));
    return key;
}

QString sourceNameOf(const QString& identifier) {
    return identifier.isEmpty() ? QString() : u"Program "_s + identifier.section(u'.', -1);
}

bool contains(const Clip& clip, const icu::UnicodeString& query,
              SearchRule rule = SearchRule::AnyText) {
    if (rule == SearchRule::FirstText) {
        for (const auto& field : {clip.plaintext(), clip.urlString(), clip.fileName()}) {
            if (field && !field->isEmpty()) {
                return plainKey(*field).indexOf(query) >= 0;
            }
        }
        return false;
    }
    for (const auto& field :
         {clip.plaintext(), clip.urlString(), clip.fileName(),
          rule == SearchRule::AnyText ? clip.sourceBundleId().transform(sourceNameOf)
                                      : std::nullopt}) {
        if (field && plainKey(*field).indexOf(query) >= 0) {
            return true;
        }
    }
    return false;
}

const QStringList kScraps =
    QString(
        u"Straße |STRASSE|Ærøskøbing |cafe\u0301 |CAFÉ |İstanbul |ışık |ΟΔΥΣΣΕΥΣ |όδός |"
        u"Ёлка |漢字 |かな|👩‍👩‍👧 |q\u0323\u0307|lorem |Ipsum |dolor\n|x|  |"
        u"oﬃce |a|1.5 €|\u01f0|https://|ｆｕｌｌ "_s)
        .split(u'|');

class Search : public ::testing::Test {
protected:
    void SetUp() override {
        for (ClipSearch* search : {&m_search, &m_sharing}) {
            QObject::connect(search, &ClipSearch::firstFound, search,
                             [this](const SearchPage& page) { m_page = page; });
            QObject::connect(search, &ClipSearch::finished, search,
                             [this](const SearchResult& result) { m_result = result; });
        }
        QObject::connect(&m_search, &ClipSearch::contentsChanged, &m_search,
                         [this] { ++m_changes; });
        ASSERT_TRUE(waitUntil([&] { return m_changes == 1; }));
    }

    int number(int least, int most) { return std::uniform_int_distribution(least, most)(m_random); }

    QString scraps(int most) {
        QString text;
        for (int i = number(1, most); i > 0; --i) {
            text += kScraps[number(0, int(kScraps.size()) - 1)];
        }
        return text;
    }

    void fill(Clip& clip) {
        clip.setRawType(number(0, 6) == 0 ? 9 : number(0, 4));
        // Some are longer than what the index keeps.
        clip.setPlaintext(number(0, 9) == 0   ? QString()
                          : number(0, 9) == 0 ? scraps(6).repeated(400) + scraps(3)
                                              : scraps(8));
        if (number(0, 3) == 0) {
            clip.setUrlString(u"https://"_s + scraps(2).simplified());
        }
        if (number(0, 3) == 0) {
            clip.setFileName(scraps(2) + u".pdf"_s);
        }
        if (number(0, 1) == 0) {
            clip.setSourceBundleId(u"org.example."_s + QChar(u'a' + number(0, 4)));
        }
        clip.setPinned(number(0, 9) == 0);
    }

    /// Insertions, edits, bumps, pins and deletions, some in one save.
    void change() {
        ObjectContext& view = m_persistence.viewContext();
        for (int i = number(1, 5); i > 0; --i) {
            const int what = number(0, 9);
            // Ties in time are common, and clocks go back.
            m_clock.advance(std::chrono::seconds(number(-2, 3)));
            // The last one is always an insertion, so that something is left to be told.
            if (what < 5 || m_clips.size() < 10 || i == 1) {
                m_clips.append(Clip::create(view, m_clock.now()));
                fill(*m_clips.last());
                continue;
            }
            const std::shared_ptr<Clip> clip = m_clips[number(0, int(m_clips.size()) - 1)];
            if (what == 5) {
                fill(*clip);
            } else if (what == 6) {
                clip->setCreatedAt(m_clock.now());
            } else if (what == 7) {
                clip->setPinned(!clip->isPinned());
            } else {
                view.remove(*clip);
                m_clips.removeOne(clip);
            }
        }
        ASSERT_TRUE(view.save());
    }

    QString query() {
        if (number(0, 9) == 0 || m_clips.isEmpty()) {
            return u" nothing of the kind "_s;
        }
        const auto clip = m_clips[number(0, int(m_clips.size()) - 1)];
        const QString text = number(0, 5) == 0
                                 ? sourceNameOf(clip->sourceBundleId().value_or(u"x.y"_s))
                                 : clip->plaintext().value_or(u""_s) + u'x';
        const QString part = text.mid(number(0, int(text.size()) - 1), number(1, 7));
        return number(0, 1) == 0 ? part.toUpper() : part;
    }

    [[nodiscard]] QList<QUuid> expected(const ClipCriteria& criteria) {
        FetchRequest request;
        request.sort = {{int(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
        auto clips = m_persistence.viewContext().fetch<Clip>(request).value();
        if (criteria.group) {
            clips.removeIf([&](const auto& clip) { return !criteria.group->contains(clip->id()); });
            std::ranges::sort(
                clips, {}, [&](const auto& clip) { return criteria.group->indexOf(clip->id()); });
        } else if (criteria.isOnlyPinned) {
            clips.removeIf([](const auto& clip) { return !clip->isPinned(); });
        } else if (criteria.rule == SearchRule::AnyText) {
            std::ranges::stable_partition(clips, [](const auto& clip) { return clip->isPinned(); });
        }
        const icu::UnicodeString text = plainKey(criteria.searchText.trimmed());
        QList<QUuid> ids;
        for (const auto& clip : std::as_const(clips)) {
            if ((!criteria.typeFilter || matches(*clip, *criteria.typeFilter)) &&
                (text.isEmpty() || contains(*clip, text, criteria.rule))) {
                ids.append(clip->id());
            }
        }
        return ids;
    }

    void ask(const ClipCriteria& criteria) {
        // What was changed has then been handed to the search, in front of the request.
        m_persistence.waitUntilIdle();
        ClipSearch& search = criteria.rule == SearchRule::AnyText ? m_search : m_sharing;
        const quint64 number = search.request(criteria);
        ASSERT_TRUE(waitUntil([&] { return m_result.number == number; }));
    }

    std::mt19937 m_random{20'261'123};
    ManualClock m_clock;
    PersistenceController m_persistence{inMemory(m_clock)};
    ClipSearch m_search{m_persistence, {.folding = {}, .sourceName = sourceNameOf}};
    ClipSearch m_sharing{m_search};
    QList<std::shared_ptr<Clip>> m_clips;
    SearchPage m_page;
    SearchResult m_result;
    int m_changes = 0;
};

TEST_F(Search, AnswersAsThePlainDefinitionDoes) {
    for (int round = 0; round < 60; ++round) {
        const int before = m_changes;
        change();
        ASSERT_TRUE(waitUntil([&] { return m_changes > before; })) << "round " << round;
        ClipCriteria criteria;
        QString text = query();
        for (int step = 0; step < 4; ++step) {
            // Letter by letter, as a person types.
            criteria.searchText = text.left(step + 1);
            criteria.typeFilter =
                number(0, 2) == 0 ? std::optional(FilterType(number(0, 15))) : std::nullopt;
            criteria.group.reset();
            criteria.rule = SearchRule(number(0, 2));
            criteria.isOnlyPinned = number(0, 4) == 0;
            if (number(0, 3) == 0) {
                QList<QUuid> members;
                for (const auto& clip : std::as_const(m_clips)) {
                    if (number(0, 1) == 0) {
                        members.append(clip->id());
                    }
                }
                std::ranges::shuffle(members, m_random);
                criteria.group = members;
            }
            if (!criteria.isNarrow()) {
                continue;
            }
            ask(criteria);
            const QList<QUuid> wanted = expected(criteria);
            ASSERT_EQ(m_result.ids, wanted)
                << "round " << round << ", \"" << criteria.searchText.toStdString() << '"';
            ASSERT_EQ(m_page.ids, wanted.first(std::min(wanted.size(), kSearchPageSize)));
            ASSERT_EQ(m_page.number, m_result.number);
        }
    }
    EXPECT_GT(m_clips.size(), 60);
}

TEST_F(Search, OnlyTheNewestOfManyRequestsIsAnswered) {
    for (int i = 0; i < 40; ++i) {
        change();
    }
    m_persistence.waitUntilIdle();
    QList<quint64> answered;
    QObject::connect(&m_search, &ClipSearch::finished, &m_search,
                     [&](const SearchResult& result) { answered.append(result.number); });
    quint64 newest = 0;
    for (int i = 0; i < 200; ++i) {
        newest = m_search.request({.searchText = query(), .typeFilter = {}, .group = {}});
    }
    ASSERT_TRUE(waitUntil([&] { return m_result.number == newest; }));
    EXPECT_EQ(answered, QList<quint64>{newest});
    m_search.request({.searchText = u"a"_s, .typeFilter = {}, .group = {}});
    m_search.cancel();
    const quint64 last = m_search.request({});
    // Another one's request takes nothing away.
    m_sharing.request({.searchText = u"a"_s, .typeFilter = {}, .group = {}});
    ASSERT_TRUE(waitUntil([&] { return answered.size() == 2; }));
    EXPECT_EQ(answered, (QList<quint64>{newest, last}));
    ASSERT_TRUE(waitUntil([&] { return m_result.number == last + 1; }));
}

TEST_F(Search, CountsTheKindsOfWhatItFinds) {
    for (int i = 0; i < 30; ++i) {
        change();
    }
    for (const QString& text : {u"a"_s, QString()}) {
        ask({.searchText = text, .typeFilter = {}, .group = {}});
        std::array<qsizetype, 5> counts{};
        for (const auto& clip : std::as_const(m_clips)) {
            if (clip->type() && (text.isEmpty() || contains(*clip, plainKey(text)))) {
                ++counts[size_t(clip->rawType())];
            }
        }
        EXPECT_EQ(m_result.kindCounts, counts);
    }
}

}  // namespace
}  // namespace quillo::testing
