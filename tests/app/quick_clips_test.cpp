// SPDX-License-Identifier: MIT
// The lists of clips: which rows there are, what they say, and what the keys do.
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>

#include "app/status/quick_clip_view.h"
#include "support/in_memory_store.h"
#include "support/manual_clock.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

TEST(RelativeTime, SaysHowLongAgo) {
    using namespace std::chrono;
    const Timestamp now{days(20'000)};
    const struct {
        std::optional<microseconds> age;
        QString text;
    } rows[] = {
        {seconds(0), u"now"_s},       {seconds(59), u"now"_s},        {-hours(3), u"now"_s},
        {minutes(2), u"2 min ago"_s}, {minutes(59), u"59 min ago"_s}, {hours(1), u"1 hr ago"_s},
        {hours(23), u"23 hr ago"_s},  {hours(24), u"1 day ago"_s},    {days(3), u"3 days ago"_s},
        {days(7), u"1 wk ago"_s},     {days(70), u"2 mo ago"_s},      {days(800), u"2 yr ago"_s},
        {std::nullopt, u"Unknown"_s},
    };
    for (const auto& row : rows) {
        const auto moment = row.age ? std::optional<Timestamp>(now - *row.age) : std::nullopt;
        EXPECT_EQ(relativeTime(moment, now), row.text);
    }
}

class QuickClips : public ::testing::Test {
protected:
    std::shared_ptr<Clip> add(const QString& text) {
        m_clock.advance(std::chrono::seconds(1));
        auto clip = Clip::create(m_persistence.viewContext(), m_clock.now());
        clip->setType(ClipType::Text);
        if (!text.isEmpty()) {
            clip->setPlaintext(text);
        }
        return clip;
    }
    void save() { ASSERT_TRUE(m_persistence.viewContext().save()); }

    [[nodiscard]] ClipListServices services() {
        return {m_persistence, m_search, m_clock, [](ClipType) { return QColor(Qt::blue); },
                [this](const Clip& clip) { copied.append(clip.displayText()); }};
    }

    [[nodiscard]] static QStringList rows(const QWidget& view) {
        const QAbstractItemModel* model = view.findChild<QListView*>()->model();
        QStringList texts;
        for (int i = 0; i < model->rowCount(); ++i) {
            texts.append(model->index(i, 0).data().toString());
        }
        return texts;
    }

    static void press(const QWidget& view, int key) {
        QKeyEvent event(QEvent::KeyPress, key, {});
        QApplication::sendEvent(view.findChild<QLineEdit*>(), &event);
    }

    QStringList copied;
    ManualClock m_clock;
    PersistenceController m_persistence{inMemory(m_clock)};
    ClipSearch m_search{m_persistence, {}};
};

TEST_F(QuickClips, ListsTheNewestTwentyAndFollowsTheStore) {
    for (int i = 0; i < 25; ++i) {
        add(u"clip %1"_s.arg(i))->setPinned(i == 0);
    }
    save();
    const QuickClipView view(services());
    EXPECT_EQ(rows(view).size(), 20);
    EXPECT_EQ(rows(view).constFirst(), u"clip 24"_s);
    EXPECT_EQ(rows(view).constLast(), u"clip 5"_s) << "a pinned clip has no place of its own";
    const auto newest = add(u"two\nlines"_s);
    save();
    EXPECT_EQ(rows(view).constFirst(), u"two lines"_s);
    newest->setPlaintext(u"changed"_s);
    save();
    EXPECT_EQ(rows(view).constFirst(), u"changed"_s);
    m_persistence.viewContext().remove(*newest);
    save();
    EXPECT_EQ(rows(view).constFirst(), u"clip 24"_s);
}

TEST_F(QuickClips, FindsEveryMatchInTheFirstTextOnly) {
    for (int i = 0; i < 30; ++i) {
        add(u"Needle %1"_s.arg(i));
    }
    add(u"some text"_s)->setUrlString(u"https://needle.example"_s);
    const auto address = add({});
    address->setUrlString(u"https://needle.example"_s);
    address->setFileName(u"needle.txt"_s);
    add({})->setFileName(u"my NEEDLE.txt"_s);
    add({})->setSourceBundleId(u"org.needle"_s);
    save();
    m_persistence.waitUntilIdle();
    const QuickClipView view(services());
    view.findChild<QLineEdit*>()->setText(u" needle \n"_s);
    ASSERT_TRUE(waitUntil([&] { return rows(view).size() == 32; }));
    EXPECT_EQ(rows(view).first(3),
              (QStringList{u"my NEEDLE.txt"_s, u"https://needle.example"_s, u"Needle 29"_s}));
    add(u"one more needle"_s);
    save();
    ASSERT_TRUE(waitUntil([&] { return rows(view).size() == 33; }));
    view.findChild<QLineEdit*>()->setText(u"no such thing"_s);
    ASSERT_TRUE(waitUntil([&] { return rows(view).isEmpty(); }));
    press(view, Qt::Key_Return);
    EXPECT_TRUE(copied.isEmpty());
}

TEST_F(QuickClips, KeysSelectAndCopy) {
    for (int i = 0; i < 12; ++i) {
        add(u"clip %1"_s.arg(i));
    }
    save();
    const QuickClipView view(services());
    int closed = 0;
    QObject::connect(&view, &QuickClipView::closeRequested, &view, [&] { ++closed; });
    press(view, Qt::Key_Up);
    press(view, Qt::Key_Down);
    press(view, Qt::Key_Down);
    press(view, Qt::Key_Return);
    EXPECT_EQ(copied, QStringList{u"clip 9"_s});
    EXPECT_EQ(closed, 1);
    // What is selected stays selected when a row comes before it.
    add(u"newer"_s);
    save();
    press(view, Qt::Key_Return);
    EXPECT_EQ(copied.constLast(), u"clip 9"_s);
}

}  // namespace
}  // namespace quillo::testing
