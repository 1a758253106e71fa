// SPDX-License-Identifier: MIT
#include "library/window/clip_grid_accessible.h"

#include <QAccessibleActionInterface>

#include "library/thumbnails/card_list_accessible.h"
#include "library/window/clip_grid.h"
#include "library/window/clip_grid_texts.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

class GridAccessible final : public CardListAccessible {
public:
    explicit GridAccessible(ClipGrid* grid) : CardListAccessible(grid) {}

protected:
    [[nodiscard]] int cardCount() const override { return int(grid().clips().ids().size()); }
    [[nodiscard]] Range placesInSight() const override {
        const ClipGridLayout::Range seen = grid().visibleCards();
        return {int(seen.first), int(seen.last)};
    }
    [[nodiscard]] int currentPlace() const override { return int(grid().currentIndex()); }
    [[nodiscard]] bool isSelected(int place) const override {
        return grid().selection().contains(clip(place));
    }
    [[nodiscard]] bool isMultiSelectable() const override { return true; }
    [[nodiscard]] const CardContent* card(int place) const override {
        grid().clips().load(place, place);
        return grid().clips().card(clip(place));
    }
    [[nodiscard]] QString age(const CardContent& card) const override {
        return card.createdAt ? relativeAge(*card.createdAt, grid().clock().now()) : QString();
    }
    [[nodiscard]] QWidget& ground() const override { return *grid().viewport(); }
    [[nodiscard]] QRect cardRect(int place) const override { return grid().cardRect(place); }
    [[nodiscard]] int placeAt(QPoint point) const override { return int(grid().indexAt(point)); }

    [[nodiscard]] QList<CardAction> actions(int place) const override {
        ClipGrid& cards = grid();
        const auto chosen = [&cards, place](auto then) {
            return [&cards, place, then] {
                cards.choose(place);
                then();
            };
        };
        return {{QAccessibleActionInterface::pressAction(), {}, chosen([] {})},
                {u"Copy"_s, u"Return"_s, chosen([&cards] { Q_EMIT cards.activated(); })},
                {u"Delete"_s, u"Delete"_s, chosen([&cards] { Q_EMIT cards.deleteRequested(); })},
                {QAccessibleActionInterface::showMenuAction(), {}, chosen([&cards, place] {
                     Q_EMIT cards.menuRequested(cards.cardRect(place));
                 })}};
    }

private:
    [[nodiscard]] ClipGrid& grid() const { return *static_cast<ClipGrid*>(widget()); }
    [[nodiscard]] QUuid clip(int place) const { return grid().clips().ids().value(place); }
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
    auto* grid = qobject_cast<ClipGrid*>(object);
    return grid != nullptr ? new GridAccessible(grid) : nullptr;
}

}  // namespace

void installClipGridAccessibility() {
    // Installing a factory again changes nothing.
    QAccessible::installFactory(makeInterface);
}

}  // namespace quillo
