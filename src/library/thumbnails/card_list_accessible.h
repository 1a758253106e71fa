// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QWidget>
#include <functional>

namespace quillo {

struct CardContent;

/// An action of a card besides QAccessibleActionInterface's own.
struct CardAction {
    QString name;
    QString key;  ///< May be empty.
    std::function<void()> run;
};

/// A widget that paints cards, as a list of items for screen readers (AT-SPI, through QAccessible):
/// each item a card with its kind, text, source and age. Of a long list only the cards in sight and
/// the current one are children, so that asking for the children costs the same at any length.
/// Places count in the whole list. Main thread.
class CardListAccessible : public QAccessibleWidget {
public:
    explicit CardListAccessible(QWidget* widget) : QAccessibleWidget(widget, QAccessible::List) {}
    ~CardListAccessible() override;

    /// Tells which card has the focus now, where the widget has it.
    static void announceFocus(QWidget& widget);
    /// Tells that other cards are shown.
    static void announceCards(QWidget& widget);

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface* focusChild() const override;

protected:
    struct Range {
        int first = 0;
        int last = -1;
    };

    [[nodiscard]] virtual int cardCount() const = 0;
    /// The places that are children, and the current one where it lies elsewhere; -1 for none.
    [[nodiscard]] virtual Range placesInSight() const = 0;
    [[nodiscard]] virtual int currentPlace() const = 0;
    [[nodiscard]] virtual bool isSelected(int place) const = 0;
    [[nodiscard]] virtual bool isMultiSelectable() const { return false; }
    /// Null for one that cannot be read.
    [[nodiscard]] virtual const CardContent* card(int place) const = 0;
    /// How old the card is, where the list says so.
    [[nodiscard]] virtual QString age(const CardContent& /*card*/) const { return {}; }
    /// The widget that the cards are painted on, and a card in its coordinates.
    [[nodiscard]] virtual QWidget& ground() const { return *widget(); }
    [[nodiscard]] virtual QRect cardRect(int place) const = 0;
    /// -1 for none; in the ground's coordinates.
    [[nodiscard]] virtual int placeAt(QPoint point) const = 0;
    [[nodiscard]] virtual QList<CardAction> actions(int place) const = 0;

private:
    class Item;

    [[nodiscard]] Range children() const;
    [[nodiscard]] bool isCurrentBefore(const Range& children) const;
    [[nodiscard]] bool isCurrentBehind(const Range& children) const;
    [[nodiscard]] int placeOf(int index) const;
    [[nodiscard]] int indexOf(int place) const;
    [[nodiscard]] QAccessibleInterface* item(int place) const;
    void forgetFarItems() const;

    mutable QHash<int, QAccessible::Id> m_items;  ///< By place.
};

}  // namespace quillo
