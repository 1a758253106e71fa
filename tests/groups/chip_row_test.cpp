// SPDX-License-Identifier: MIT
#include "library/groups/chip_row.h"

#include <QDropEvent>
#include <QMimeData>

#include "groups/panel_fixture.h"
#include "library/groups/clip_drag.h"
#include "support/wait_until.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

class ChipRowTest : public PanelTest {
protected:
    ChipRowTest() {
        row.setFilters({{FilterType::Text}, {FilterType::Link}});
        row.setGroups({{work, u"Work"_s, QColor(Qt::red), 12}, {play, u"Play"_s, {}, 4}});
        row.setGeometry(0, 0, 700, ChipRow::kHeight);
        row.show();
        QObject::connect(&row, &ChipRow::filterChosen, [this](std::optional<FilterType> filter) {
            told += filter.has_value() ? label(*filter) : u"All"_s;
        });
        QObject::connect(&row, &ChipRow::groupChosen, [this](std::optional<QUuid> group) {
            told += !group.has_value() ? u"no group"_s : group == work ? u"work"_s : u"play"_s;
        });
        QObject::connect(&row, &ChipRow::createGroupRequested, [this] { told += u"new"_s; });
        QObject::connect(&row, &ChipRow::groupMenuRequested, [this] { told += u"menu"_s; });
        QObject::connect(&row, &ChipRow::clipDropped,
                         [this](const QUuid& group, const QUuid& clip) {
                             told += u"%1 into %2"_s.arg(clip == dragged ? u"clip"_s : u"?"_s,
                                                         group == work ? u"work"_s : u"play"_s);
                         });
    }

    void clickChip(int index) { click(row.chips().at(index)->geometry().center()); }
    /// Which chips are checked, as a line of digits.
    [[nodiscard]] QString checked() const {
        QString line;
        for (const Chip* chip : row.chips()) {
            line += chip->isChecked() ? u'1' : u'0';
        }
        return line;
    }
    [[nodiscard]] QString taken() { return std::exchange(told, {}).join(u", "); }

    template <typename Event>
    bool drag(const QMimeData& data, const QPoint& at) {
        Event event(at, Qt::CopyAction, &data, Qt::LeftButton, {});
        event.ignore();
        QCoreApplication::sendEvent(&row, &event);
        return event.isAccepted();
    }
    /// Drags over a place and drops there; whether it was taken.
    bool dropAt(const QMimeData& data, const QPoint& at) {
        drag<QDragEnterEvent>(data, at);
        const bool isTaken = drag<QDragMoveEvent>(data, at);
        QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&row, &drop);
        EXPECT_EQ(drop.isAccepted(), isTaken);
        return isTaken;
    }

    const QUuid work = QUuid::createUuid();
    const QUuid play = QUuid::createUuid();
    const QUuid dragged = QUuid::createUuid();
    QStringList told;
    ChipRow row{&panel};
};

// 0 All, 1 Text, 2 Link, 3 Work, 4 Play, 5 plus
TEST_F(ChipRowTest, AFilterStaysSelectedAndAGroupIsClearedByTheNextClick) {
    EXPECT_EQ(checked(), u"100000"_s);
    const struct {
        int chip;
        QString told;
        QString checked;
    } clicks[] = {
        {2, u"Link"_s, u"001000"_s}, {2, u"Link"_s, u"001000"_s},     {3, u"work"_s, u"001100"_s},
        {4, u"play"_s, u"001010"_s}, {4, u"no group"_s, u"001000"_s}, {0, u"All"_s, u"100000"_s},
        {0, u"All"_s, u"100000"_s},  {5, u"new"_s, u"100000"_s},
    };
    for (const auto& at : clicks) {
        clickChip(at.chip);
        EXPECT_EQ(taken(), at.told) << at.chip;
        EXPECT_EQ(checked(), at.checked) << at.chip;
    }
    row.setSelectedFilter(FilterType::Text);
    row.setSelectedGroup(play);
    EXPECT_EQ(checked(), u"010010"_s);
    EXPECT_EQ(taken(), QString());
}

TEST_F(ChipRowTest, AGroupThatGoesIsNoLongerChosenAndOthersKeepTheFocus) {
    row.setSelectedGroup(work);
    row.groupChip(play)->setFocus();
    row.setGroups({{work, u"Work"_s, {}, 13}, {play, u"Games"_s, {}, 4}});
    EXPECT_EQ(taken(), QString());
    row.setGroups({{play, u"Games"_s, {}, 4}});
    EXPECT_EQ(taken(), u"no group"_s);
    EXPECT_EQ(row.chips().size(), 5);
    EXPECT_TRUE(row.groupChip(play)->hasFocus());
    EXPECT_EQ(row.groupChip(play)->content().text, u"Games"_s);
    row.setGroupsShown(false);
    EXPECT_EQ(row.chips().size(), 3);
    settle();
}

TEST_F(ChipRowTest, ANarrowRowScrollsToTheFocusedChip) {
    EXPECT_EQ(row.scrollRange(), 0);
    row.resize(200, ChipRow::kHeight);
    EXPECT_GT(row.scrollRange(), 50);
    for (Chip* chip : row.chips()) {
        chip->setFocus();
        EXPECT_TRUE(row.rect().contains(chip->geometry())) << chip->accessibleName().toStdString();
    }
    EXPECT_EQ(row.scrollOffset(), row.scrollRange());
    row.scrollTo(-50);
    EXPECT_EQ(row.scrollOffset(), 0);
    QWheelEvent wheel(QPointF(100, 20), row.mapToGlobal(QPointF(100, 20)), {}, {0, -120}, {}, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&row, &wheel);
    EXPECT_GT(row.scrollOffset(), 0);
    row.resize(700, ChipRow::kHeight);
    EXPECT_EQ(row.scrollOffset(), 0) << "nothing is scrolled where all has room";
}

TEST_F(ChipRowTest, OnlyOwnDragsOfClipsAreTakenByGroups) {
    QMimeData clip;
    setClipOfDrag(clip, dragged);
    QMimeData nonsense;
    nonsense.setData(kClipIdMimeType, "not a clip");
    QMimeData foreign;
    foreign.setText(dragged.toString());
    bool isOwn = true;
    const auto placeOf = [this](int chip) { return row.chips().at(chip)->geometry().center(); };
    const QPoint onWork = placeOf(3);
    EXPECT_FALSE(dropAt(clip, onWork)) << "nobody said which drags are our own";
    row.setDragSource(nullptr);
    EXPECT_FALSE(dropAt(clip, onWork)) << "no source is not our source";
    row.setDragFilter([&isOwn](const QDropEvent&) { return isOwn; });
    EXPECT_FALSE(dropAt(nonsense, onWork));
    EXPECT_FALSE(dropAt(foreign, onWork));
    EXPECT_FALSE(dropAt(clip, placeOf(1))) << "a filter";
    EXPECT_FALSE(dropAt(clip, placeOf(5))) << "the plus";
    isOwn = false;
    EXPECT_FALSE(dropAt(clip, onWork)) << "another program's";
    EXPECT_EQ(taken(), QString());
    isOwn = true;
    EXPECT_TRUE(dropAt(clip, onWork));
    EXPECT_EQ(taken(), u"clip into work"_s);
}

TEST_F(ChipRowTest, ADragHighlightsItsGroupAndScrollsAtTheEnds) {
    QMimeData clip;
    setClipOfDrag(clip, dragged);
    row.setDragFilter([](const QDropEvent&) { return true; });
    drag<QDragEnterEvent>(clip, {0, 0});
    drag<QDragMoveEvent>(clip, row.chips()[3]->geometry().center());
    EXPECT_TRUE(row.chips()[3]->isDropTarget());
    drag<QDragMoveEvent>(clip, row.chips()[4]->geometry().center());
    EXPECT_FALSE(row.chips()[3]->isDropTarget());
    EXPECT_TRUE(row.chips()[4]->isDropTarget());
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(&row, &leave);
    EXPECT_FALSE(row.chips()[4]->isDropTarget());
    row.resize(200, ChipRow::kHeight);
    row.scrollTo(row.scrollRange() - 10);
    drag<QDragEnterEvent>(clip, {195, 20});
    drag<QDragMoveEvent>(clip, {195, 20});
    EXPECT_TRUE(waitUntil([this] { return row.scrollOffset() == row.scrollRange(); }));
    row.scrollTo(10);
    drag<QDragMoveEvent>(clip, {5, 20});
    EXPECT_TRUE(waitUntil([this] { return row.scrollOffset() == 0; }));
}

}  // namespace
}  // namespace quillo::testing
