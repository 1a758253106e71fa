// SPDX-License-Identifier: MIT
#include "overlay/strip_accessible.h"

#include <QAccessibleActionInterface>

#include "library/thumbnails/card_list_accessible.h"
#include "overlay/clip_strip.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kDigits = 9;

class StripAccessible final : public CardListAccessible {
public:
    explicit StripAccessible(ClipStrip* strip) : CardListAccessible(strip) {}

protected:
    [[nodiscard]] int cardCount() const override { return int(strip().clips().cards().size()); }
    // Few enough to be known all.
    [[nodiscard]] Range placesInSight() const override { return {0, cardCount() - 1}; }
    [[nodiscard]] int currentPlace() const override { return strip().selectedIndex(); }
    [[nodiscard]] bool isSelected(int place) const override { return place == currentPlace(); }
    [[nodiscard]] const CardContent* card(int place) const override {
        return &strip().clips().cards().at(place);
    }
    [[nodiscard]] QRect cardRect(int place) const override { return strip().cardRect(place); }
    [[nodiscard]] int placeAt(QPoint point) const override {
        for (int i = 0; i < cardCount(); ++i) {
            if (cardRect(i).contains(point)) {
                return i;
            }
        }
        return -1;
    }

    [[nodiscard]] QList<CardAction> actions(int place) const override {
        ClipStrip& cards = strip();
        const QString digit = place < kDigits ? QString::number(place + 1) : QString();
        return {
            {QAccessibleActionInterface::pressAction(), digit,
             [&cards, place] { Q_EMIT cards.cardClicked(place); }},
            {u"Delete"_s, u"Delete"_s, [&cards, place] { Q_EMIT cards.deleteRequested(place); }},
            {QAccessibleActionInterface::showMenuAction(), {}, [&cards, place] {
                 Q_EMIT cards.menuRequested(place, cards.cardRect(place));
             }}};
    }

private:
    [[nodiscard]] ClipStrip& strip() const { return *static_cast<ClipStrip*>(widget()); }
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
    auto* strip = qobject_cast<ClipStrip*>(object);
    return strip != nullptr ? new StripAccessible(strip) : nullptr;
}

}  // namespace

void installStripAccessibility() {
    // Installing a factory again changes nothing.
    QAccessible::installFactory(makeInterface);
}

}  // namespace quillo
