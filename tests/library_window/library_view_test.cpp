// SPDX-License-Identifier: MIT
// The library's content with a store in memory, as a person uses it.
#include "library/window/library_view.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include "library/groups/form_controls.h"
#include "library/groups/sheet.h"
#include "library/groups/swatch.h"
#include "library/window/detail_text_view.h"
#include "model/groups.h"
#include "support/in_memory_store.h"
#include "support/library_rig.h"
#include "support/manual_clock.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillo::testing {
namespace {

class Library : public ::testing::Test {
protected:
    void open(int clips) {
        for (int i = 0; i < clips; ++i) {
            m_ids.prepend(add(u"clip %1"_s.arg(i)));
        }
        ASSERT_TRUE(context().save());
        m_view = m_rig.makeView();
        m_view->resize(1000, 700);
        m_view->show();
        // Without a display nobody else makes it so.
        QApplication::setActiveWindow(m_view.get());
        // A search that learnt of the store a moment ago may know of fewer.
        const LibraryClips& shown = m_view->clips();
        ASSERT_TRUE(waitUntil([&] { return shown.isComplete() && shown.count() == clips; }));
    }

    QUuid add(const QString& text) {
        m_clock.advance(1s);
        const auto clip = Clip::create(context(), m_clock.now());
        clip->setPlaintext(text);
        return clip->id();
    }

    std::shared_ptr<Pinboard> addBoard(const QString& title, const QList<QUuid>& clips = {}) {
        return createGroup(context(), {title, QColor(0xff6b6b), GroupPlace::AfterListed, clips})
            .value();
    }

    void press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = {}) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QCoreApplication::sendEvent(&widget, &event);
    }

    /// The one that is open; keys go to what has the focus in it.
    [[nodiscard]] Sheet* sheet() {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return Sheet::openIn(m_view.get());
    }
    void pressInSheet(int key) { press(*m_view->focusWidget(), key); }
    void typeInSheet(const QString& text) {
        QKeyEvent event(QEvent::KeyPress, 0, {}, text);
        QCoreApplication::sendEvent(m_view->focusWidget(), &event);
    }

    void point(QEvent::Type type, QPoint position, Qt::KeyboardModifiers modifiers = {}) {
        QWidget& ground = *grid().viewport();
        QMouseEvent event(type, position, ground.mapToGlobal(position), Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                          modifiers);
        QCoreApplication::sendEvent(&ground, &event);
    }

    [[nodiscard]] ObjectContext& context() { return m_rig.persistence.viewContext(); }
    [[nodiscard]] ClipGrid& grid() { return m_view->grid(); }
    [[nodiscard]] QStringList sidebarTexts() {
        QStringList texts;
        for (const SidebarRow* row : m_view->sidebar().rows()) {
            texts.append(u"%1 %2"_s.arg(row->content().title).arg(row->content().count));
        }
        return texts;
    }
    [[nodiscard]] bool lists(const QList<QUuid>& ids) {
        return waitUntil([&] { return m_view->clips().ids() == ids; });
    }
    template <typename Widget>
    [[nodiscard]] Widget* child(const QString& accessibleName) {
        for (Widget* widget : m_view->findChildren<Widget*>()) {
            if (widget->accessibleName() == accessibleName ||
                widget->property("text").toString() == accessibleName) {
                return widget;
            }
        }
        return nullptr;
    }

    ManualClock m_clock;
    LibraryRig m_rig{inMemory(m_clock), m_clock};
    QList<QUuid> m_ids;  ///< Newest first.
    std::unique_ptr<LibraryView> m_view;
};

TEST_F(Library, WhatAPersonLooksAtStaysWhereItIsWhileTheHistoryGrows) {
    open(300);
    ASSERT_TRUE(lists(m_ids));
    grid().choose(150);
    const ClipGridLayout::Range seen = grid().visibleCards();
    const QUuid chosen = m_ids[150];
    const int height = grid().cardRect(150).top();
    const QUuid gone = m_ids[seen.first - 5];
    m_ids.removeOne(gone);
    context().remove(*context().object<Clip>(gone));
    for (int i = 0; i < 5; ++i) {
        m_ids.prepend(add(u"new %1"_s.arg(i)));
    }
    ASSERT_TRUE(context().save());
    ASSERT_TRUE(lists(m_ids));
    EXPECT_EQ(grid().cardRect(m_view->clips().ids().indexOf(chosen)).top(), height);
    EXPECT_EQ(grid().selection().size(), 1);
    EXPECT_EQ(m_view->clips().ids()[grid().currentIndex()], grid().selectedClips()[0]);

    grid().verticalScrollBar()->setValue(0);
    m_ids.prepend(add(u"newest"_s));
    ASSERT_TRUE(context().save());
    EXPECT_TRUE(waitUntil([&] { return m_view->clips().ids()[0] == m_ids[0]; }));
    EXPECT_EQ(grid().verticalScrollBar()->value(), 0)
        << "at the start what is new comes into sight";
}

TEST_F(Library, SeveralClipsAreDeletedAndComeBackUntilTheTimeIsOver) {
    open(10);
    const auto board = addBoard(u"Work"_s, {m_ids[1], m_ids[5]});
    grid().choose(0);
    press(grid(), Qt::Key_Right, Qt::ShiftModifier);
    press(grid(), Qt::Key_Delete);
    EXPECT_TRUE(lists(m_ids.mid(2)));
    EXPECT_EQ(sidebarTexts(), (QStringList{u"All Clips 8"_s, u"Favorites 0"_s, u"Work 1"_s}));
    EXPECT_EQ(grid().selectedClips(), QList{m_ids[2]});
    EXPECT_EQ(context().count({}).value(), 10);
    child<PushButton>(u"Undo"_s)->click();
    EXPECT_TRUE(lists(m_ids));
    EXPECT_EQ(sidebarTexts()[2], u"Work 2");

    grid().choose(9);
    press(grid(), Qt::Key_Delete);
    m_view.reset();
    m_rig.persistence.waitUntilIdle();
    EXPECT_EQ(context().count({}).value(), 9);
    EXPECT_EQ(context().object<Clip>(m_ids[9]), nullptr);
}

TEST_F(Library, CopiesOneClipInFullAndTheTextsOfSeveral) {
    open(3);
    grid().choose(1);
    press(grid(), Qt::Key_Return);
    EXPECT_EQ(m_rig.pasteboardText(), "clip 1");
    press(grid(), Qt::Key_A, Qt::ControlModifier);
    press(grid(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(m_rig.pasteboardText(), "clip 2\nclip 1\nclip 0");
}

TEST_F(Library, ManyClipsArePinnedAndDeletedAtOnce) {
    open(450);
    grid().chooseAll();
    EXPECT_EQ(grid().selection().size(), 450);
    child<PushButton>(u"Pin"_s)->click();
    EXPECT_TRUE(waitUntil([&] { return sidebarTexts()[1] == u"Favorites 450"; }));
    EXPECT_EQ(grid().selection().size(), 450);
    const auto board = addBoard(u"Work"_s);
    child<MembershipChip>(u"Work"_s)->click();
    EXPECT_TRUE(waitUntil([&] { return sidebarTexts()[2] == u"Work 450"; }));
    Q_EMIT m_view->sidebar().deleteRequested(board->id());
    child<PushButton>(u"Undo"_s)->click();
    EXPECT_TRUE(waitUntil([&] { return sidebarTexts().value(2) == u"Work 450"; }));
    grid().chooseAll();
    child<PushButton>(u"Delete"_s)->click();
    EXPECT_TRUE(lists({}));
    EXPECT_EQ(sidebarTexts()[0], u"All Clips 0");
    EXPECT_TRUE(child<PushButton>(u"Undo"_s)->isVisible()) << "over an empty list too";
    m_view.reset();
    m_rig.persistence.waitUntilIdle();
    EXPECT_EQ(context().count({}).value(), 0);
}

TEST_F(Library, ClipsAreMovedByKeyInAPinboardsOwnOrderOnly) {
    open(6);
    const auto board = addBoard(u"Work"_s, m_ids.mid(1, 4));
    const auto push = [&](int key) { press(grid(), key, Qt::AltModifier | Qt::ShiftModifier); };
    grid().choose(0);
    push(Qt::Key_Right);
    EXPECT_EQ(m_view->clips().ids(), m_ids);
    m_view->showSection(LibrarySection::ofPinboard(board->id()));
    grid().choose(0);
    press(grid(), Qt::Key_Right, Qt::ShiftModifier);
    push(Qt::Key_Right);
    const QList<QUuid> moved{m_ids[3], m_ids[1], m_ids[2], m_ids[4]};
    EXPECT_EQ(m_view->clips().ids(), moved);
    EXPECT_EQ(board->orderedClipIds().value(), moved);
    EXPECT_FALSE(context().hasChanges()) << "saved at once";
    EXPECT_EQ(grid().selectedClips(), moved.mid(1, 2));
    push(Qt::Key_Left);
    push(Qt::Key_Left);
    EXPECT_EQ(m_view->clips().ids(), m_ids.mid(1, 4));
    m_view->clips().setSearchText(u"clip"_s);
    ASSERT_TRUE(waitUntil([&] { return m_view->clips().isComplete(); }));
    push(Qt::Key_Right);
    EXPECT_EQ(board->orderedClipIds().value(), m_ids.mid(1, 4)) << "not while it is searched";
}

TEST_F(Library, ABandSelectsCardsAndScrollsOn) {
    open(300);
    const QRect last = grid().cardRect(grid().visibleCards().last);
    grid().choose(0);
    point(QEvent::MouseButtonPress, {2, 60}, Qt::ControlModifier);
    point(QEvent::MouseMove, grid().cardRect(4).center());
    EXPECT_EQ(grid().selectedClips(), (m_ids.first(2) + m_ids.mid(3, 2)));
    point(QEvent::MouseMove, last.bottomRight() + QPoint(0, 400));
    EXPECT_TRUE(waitUntil([&] { return grid().visibleCards().first > 10; }));
    point(QEvent::MouseButtonRelease, last.center());
    const qsizetype selected = grid().selection().size();
    EXPECT_EQ(grid().selectedClips(), m_ids.first(selected)) << "those above the window, too";
    EXPECT_GT(selected, 20);
    const int scroll = grid().verticalScrollBar()->value();
    point(QEvent::MouseButtonPress, {2, 60});
    EXPECT_TRUE(grid().selection().isEmpty());
    point(QEvent::MouseMove, {200, 60});
    press(grid(), Qt::Key_Escape);
    EXPECT_TRUE(grid().selection().isEmpty());
    EXPECT_EQ(grid().verticalScrollBar()->value(), scroll);
}

// A client that asks for the children of the list must not make an item for each of a history.
TEST_F(Library, ScreenReadersAreToldOfTheCardsInSight) {
    open(300);
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&grid());
    const auto names = [list] {
        QStringList found;
        for (int i = 0; i < list->childCount(); ++i) {
            EXPECT_EQ(list->indexOfChild(list->child(i)), i);
            found.append(list->child(i)->text(QAccessible::Name));
        }
        return found;
    };
    grid().choose(1);
    const qsizetype seen = grid().visibleCards().last + 1;
    EXPECT_LT(seen, 30);
    EXPECT_EQ(names().size(), seen);
    EXPECT_EQ(names()[1], u"Text: clip 298");
    EXPECT_TRUE(list->child(1)->state().selected);
    grid().verticalScrollBar()->setValue(grid().verticalScrollBar()->maximum());
    EXPECT_EQ(names().first(), u"Text: clip 298") << "the current one";
    EXPECT_EQ(names().last(), u"Text: clip 0");
    list->child(list->childCount() - 1)->actionInterface()->doAction(u"Press"_s);
    EXPECT_EQ(grid().currentIndex(), 299);
    grid().verticalScrollBar()->setValue(0);
    EXPECT_EQ(names().last(), u"Text: clip 0");
    EXPECT_EQ(names().size(), seen + 1);
}

TEST_F(Library, ADeletedPinboardComesBackWithItsClipsInTheirOrder) {
    open(6);
    const auto first = addBoard(u"First"_s);
    auto board = addBoard(u"Work"_s, m_ids.mid(1, 3));
    ASSERT_TRUE(board->move(2, 0));
    ASSERT_TRUE(context().save());
    const QList<QUuid> order = board->orderedClipIds().value();
    m_view->showSection(LibrarySection::ofPinboard(board->id()));
    EXPECT_EQ(m_view->clips().ids(), order);
    Q_EMIT m_view->sidebar().deleteRequested(board->id());
    EXPECT_EQ(sidebarTexts(), (QStringList{u"All Clips 6"_s, u"Favorites 0"_s, u"First 0"_s}));
    EXPECT_EQ(m_view->sidebar().section(), LibrarySection()) << "back to what there is";
    EXPECT_TRUE(lists(m_ids));
    child<PushButton>(u"Undo"_s)->click();
    ASSERT_EQ(sidebarTexts().value(3), u"Work 3");
    m_view->showSection(m_view->sidebar().rows()[3]->content().section);
    EXPECT_EQ(m_view->clips().ids(), order);
}

TEST_F(Library, PinboardsAreRenamedRecolouredAndBroughtIntoAnotherOrder) {
    open(1);
    const auto a = addBoard(u"A"_s);
    const auto b = addBoard(u"B"_s);
    const auto c = addBoard(u"C"_s);
    m_view->showSection(LibrarySection::ofPinboard(c->id()));
    press(m_view->sidebar(), Qt::Key_Up, Qt::AltModifier);
    press(m_view->sidebar(), Qt::Key_Up, Qt::AltModifier);
    press(m_view->sidebar(), Qt::Key_Up, Qt::AltModifier);
    press(m_view->sidebar(), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(sidebarTexts().mid(2), (QStringList{u"A 0"_s, u"C 0"_s, u"B 0"_s}));
    EXPECT_EQ((QList{a->sortIndex(), c->sortIndex(), b->sortIndex()}), (QList<qint64>{0, 1, 2}));

    Q_EMIT m_view->sidebar().renameRequested(a->id());
    EXPECT_EQ(sheet()->accessibleName(), u"Rename Pinboard");
    pressInSheet(Qt::Key_Delete);
    pressInSheet(Qt::Key_Return);
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_EQ(sidebarTexts()[2], u"Untitled 0");

    const std::vector<MenuEntry> menu = m_view->sidebar().menuOf(a->id());
    const std::vector<MenuEntry>& colors = menu.at(2).submenu;
    ASSERT_EQ(colors.size(), 9U);
    EXPECT_EQ(std::ranges::count(colors, std::optional(true), &MenuEntry::check), 1);
    EXPECT_EQ(colors[0].check, true);
    colors[3].action();
    EXPECT_EQ(m_view->sidebar().menuOf(a->id()).at(2).submenu[3].check, true);
}

// By the keys alone, over the window, one at a time; the focus is where it was.
TEST_F(Library, PinboardsAreMadeAndEditedInSheets) {
    open(1);
    SidebarRow* const allClips = m_view->sidebar().rows()[0];
    m_view->sidebar().focusSection();
    child<PushButton>(u"New Pinboard"_s)->click();
    EXPECT_EQ(sheet()->accessibleName(), u"New Pinboard");
    EXPECT_EQ(sheet()->size(), m_view->window()->size());
    Q_EMIT m_view->sidebar().editorRequested(std::nullopt);
    EXPECT_EQ(m_view->findChildren<Sheet*>().size(), 1);
    typeInSheet(u"  \t"_s);
    pressInSheet(Qt::Key_Return);
    ASSERT_NE(sheet(), nullptr) << "a blank name does nothing";
    typeInSheet(u"Recipes "_s);
    pressInSheet(Qt::Key_Tab);
    pressInSheet(Qt::Key_Left);
    pressInSheet(Qt::Key_Backtab);
    EXPECT_EQ(sheet()->findChild<Swatch*>()->height() - 2 * Swatch::kRing, 28);
    pressInSheet(Qt::Key_Return);
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_TRUE(allClips->hasFocus()) << "the rows are other ones, this one stays";
    EXPECT_EQ(sidebarTexts().value(2), u"Recipes 0");
    const auto board = groupsInOrder(context()).value()[0];
    EXPECT_EQ(board->sortIndex(), 1);
    EXPECT_EQ(board->colorHex(), u"#6BCB77");

    m_view->sidebar().menuOf(board->id()).at(1).action();
    EXPECT_EQ(sheet()->accessibleName(), u"Edit Pinboard");
    EXPECT_EQ(sheet()->findChild<FormField*>()->text(), u"Recipes");
    EXPECT_TRUE(sheet()->findChildren<Swatch*>()[3]->isChecked());
    typeInSheet(u"!"_s);
    pressInSheet(Qt::Key_Escape);
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_EQ(sidebarTexts()[2], u"Recipes 0");

    m_view->sidebar().rows()[2]->setFocus();
    press(*m_view->sidebar().rows()[2], Qt::Key_F2);
    ASSERT_NE(sheet(), nullptr) << "the row at hand, not the chosen one";
    typeInSheet(u" Meals "_s);
    pressInSheet(Qt::Key_Return);
    EXPECT_EQ(board->title(), u" Meals ") << "as typed";
    EXPECT_TRUE(m_view->sidebar().rows()[2]->hasFocus());
}

TEST_F(Library, TheDetailPaneShowsAndChangesTheChosenClip) {
    open(2);
    const auto board = addBoard(u"Work"_s);
    const auto clip = context().object<Clip>(m_ids[0]);
    clip->setType(ClipType::Rtf);
    clip->setAttributed("{\\rtf1 From the \\b document\\b0\\par}");
    clip->setUrlString(u"https://example.org/"_s);
    ASSERT_TRUE(context().save());
    grid().choose(0);
    auto* text = m_view->findChild<DetailTextView*>();
    EXPECT_EQ(text->toPlainText(), u"clip 1") << "before the document was read";
    EXPECT_TRUE(waitUntil([&] { return text->toPlainText().startsWith(u"From the document"); }));

    child<MembershipChip>(u"Work"_s)->click();
    EXPECT_EQ(memberCount(*board).value(), 1);
    EXPECT_TRUE(child<MembershipChip>(u"Work"_s)->isChecked());
    child<MembershipChip>(u"Work"_s)->click();
    EXPECT_EQ(memberCount(*board).value(), 0);
    child<PushButton>(u"Pin"_s)->click();
    EXPECT_TRUE(clip->isPinned());
    EXPECT_TRUE(waitUntil([&] { return sidebarTexts()[1] == u"Favorites 1"; }));

    clip->setType(ClipType::Text);
    ASSERT_TRUE(context().save());
    child<PushButton>(u"Open Link"_s)->click();
    EXPECT_EQ(m_rig.opened, QList{QUrl(u"https://example.org/"_s)});
    context().remove(*clip);
    ASSERT_TRUE(context().save());
    EXPECT_EQ(grid().selectedClips(), QList{m_ids[1]});
    EXPECT_EQ(text->toPlainText(), u"clip 0");
}

TEST(LibraryEmptyState, SaysWhyAndOffersAWayBack) {
    const struct {
        QString search;
        std::optional<FilterType> filter;
        QString title;
        bool hasButton;
    } rows[] = {{u""_s, std::nullopt, u"No clips yet"_s, false},
                {u"x"_s, std::nullopt, u"No matching clips"_s, true},
                {u""_s, FilterType::Pdf, u"No clips yet"_s, true}};
    for (const auto& row : rows) {
        const auto texts = libraryEmptyTexts({{}, row.search, row.filter, {}});
        EXPECT_EQ(texts.title, row.title);
        EXPECT_EQ(!texts.button.isEmpty(), row.hasButton);
        EXPECT_EQ(texts.caption.isEmpty(), row.hasButton)
            << "how to fill it, or how to empty the filters";
    }
}

TEST(LibraryColumns, WidthsAreKeptWithinTheirBounds) {
    MemoryUserDefaults defaults;
    EXPECT_EQ(storedColumnWidths(defaults), ColumnWidths());
    storeColumnWidths(defaults, {.sidebar = 230, .detail = 10'000, .isDetailShown = false});
    EXPECT_EQ(storedColumnWidths(defaults),
              (ColumnWidths{.sidebar = 230, .detail = 600, .isDetailShown = false}));
    defaults.setObject(u"libraryColumns"_s, u"nonsense"_s);
    EXPECT_EQ(storedColumnWidths(defaults), ColumnWidths());
}

}  // namespace
}  // namespace quillo::testing
