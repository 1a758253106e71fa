// SPDX-License-Identifier: MIT
#include "library/thumbnails/card_list_accessible.h"

#include <QAccessibleActionInterface>
#include <QStringList>
#include <QWindow>
#include <algorithm>

#include "library/thumbnails/card_content.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

// What is read out of a text.
constexpr qsizetype kLongestText = 200;
constexpr qsizetype kMostItems = 1'000;

QString joined(QStringList parts, const QString& separator) {
    parts.removeAll(QString());
    return parts.join(separator);
}

QString spokenName(const CardContent& card) {
    return joined({card.kindLabel, card.title, card.body.simplified().left(kLongestText)}, u": "_s);
}

QString spokenDetails(const CardContent& card, const QString& age) {
    return joined({card.source, age, card.detail, card.isPinned ? u"Pinned"_s : QString()},
                  u", "_s);
}

}  // namespace

class CardListAccessible::Item final : public QAccessibleInterface,
                                       public QAccessibleActionInterface {
public:
    Item(const CardListAccessible& list, int place) : m_list(list), m_place(place) {}

    [[nodiscard]] int place() const { return m_place; }
    [[nodiscard]] bool isValid() const override {
        return m_list.isValid() && m_place < m_list.cardCount();
    }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QWindow* window() const override { return m_list.window(); }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(m_list.object());
    }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        const CardContent* card = isValid() ? m_list.card(m_place) : nullptr;
        if (card == nullptr) {
            return {};
        }
        return kind == QAccessible::Name          ? spokenName(*card)
               : kind == QAccessible::Description ? spokenDetails(*card, m_list.age(*card))
                                                  : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}

    [[nodiscard]] QRect rect() const override {
        const QRect card = isValid() ? m_list.cardRect(m_place) : QRect();
        return isValid() ? QRect(m_list.ground().mapToGlobal(card.topLeft()), card.size())
                         : QRect();
    }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = 1;
            return state;
        }
        const bool isFocused = m_list.widget()->hasFocus() && m_list.currentPlace() == m_place;
        const bool isSeen = m_list.cardRect(m_place).intersects(m_list.ground().rect());
        state.selectable = 1;
        state.multiSelectable = m_list.isMultiSelectable() ? 1 : 0;
        state.focusable = 1;
        state.selected = m_list.isSelected(m_place) ? 1 : 0;
        state.focused = isFocused ? 1 : 0;
        state.offscreen = isSeen ? 0 : 1;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    [[nodiscard]] QStringList actionNames() const override {
        QStringList names;
        for (const CardAction& action : m_list.actions(m_place)) {
            names.append(action.name);
        }
        return names;
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString& name) const override {
        const CardAction action = actionOf(name);
        return action.key.isEmpty() ? QStringList() : QStringList{action.key};
    }
    void doAction(const QString& name) override {
        const CardAction action = isValid() ? actionOf(name) : CardAction();
        if (action.run) {
            action.run();
        }
    }

private:
    [[nodiscard]] CardAction actionOf(const QString& name) const {
        const QList<CardAction> all = m_list.actions(m_place);
        const auto found = std::ranges::find(all, name, &CardAction::name);
        return found != all.end() ? *found : CardAction();
    }

    const CardListAccessible& m_list;  // It owns its items.
    int m_place;
};

CardListAccessible::~CardListAccessible() {
    for (const QAccessible::Id id : std::as_const(m_items)) {
        QAccessible::deleteAccessibleInterface(id);
    }
}

CardListAccessible::Range CardListAccessible::children() const {
    const Range seen = placesInSight();
    return {std::max(0, seen.first), std::min(seen.last, cardCount() - 1)};
}

bool CardListAccessible::isCurrentBefore(const Range& children) const {
    const int current = currentPlace();
    return current >= 0 && current < children.first;
}

bool CardListAccessible::isCurrentBehind(const Range& children) const {
    const int current = currentPlace();
    return current >= children.first && current > children.last && current < cardCount();
}

int CardListAccessible::childCount() const {
    const Range range = children();
    const bool isCurrentApart = isCurrentBefore(range) || isCurrentBehind(range);
    return std::max(0, range.last - range.first + 1) + (isCurrentApart ? 1 : 0);
}

int CardListAccessible::placeOf(int index) const {
    const Range range = children();
    const int place = range.first + index - (isCurrentBefore(range) ? 1 : 0);
    return place < range.first || place > range.last ? currentPlace() : place;
}

int CardListAccessible::indexOf(int place) const {
    const Range range = children();
    const int before = isCurrentBefore(range) ? 1 : 0;
    if (place >= range.first && place <= range.last) {
        return place - range.first + before;
    }
    if (place < 0 || place != currentPlace()) {
        return -1;
    }
    return before == 1 ? 0 : childCount() - 1;
}

QAccessibleInterface* CardListAccessible::child(int index) const {
    return index >= 0 && index < childCount() ? item(placeOf(index)) : nullptr;
}

QAccessibleInterface* CardListAccessible::item(int place) const {
    auto known = m_items.constFind(place);
    if (known == m_items.cend()) {
        forgetFarItems();
        known =
            m_items.insert(place, QAccessible::registerAccessibleInterface(new Item(*this, place)));
    }
    return QAccessible::accessibleInterface(*known);
}

// Whoever looks through a long list leaves no trail of items.
void CardListAccessible::forgetFarItems() const {
    if (m_items.size() < kMostItems) {
        return;
    }
    m_items.removeIf([this](const auto& item) {
        const bool isFar = indexOf(item.key()) < 0;
        if (isFar) {
            QAccessible::deleteAccessibleInterface(item.value());
        }
        return isFar;
    });
}

int CardListAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* known = dynamic_cast<const Item*>(child);
    return known != nullptr ? indexOf(known->place()) : -1;
}

QAccessibleInterface* CardListAccessible::childAt(int x, int y) const {
    const int place = placeAt(ground().mapFromGlobal(QPoint(x, y)));
    return place >= 0 && place < cardCount() ? item(place) : nullptr;
}

QAccessibleInterface* CardListAccessible::focusChild() const {
    const int current = widget()->hasFocus() ? currentPlace() : -1;
    return current >= 0 && current < cardCount() ? item(current) : nullptr;
}

void CardListAccessible::announceFocus(QWidget& widget) {
    if (!QAccessible::isActive() || !widget.hasFocus()) {
        return;
    }
    const auto* list =
        dynamic_cast<CardListAccessible*>(QAccessible::queryAccessibleInterface(&widget));
    const int index = list != nullptr ? list->indexOf(list->currentPlace()) : -1;
    if (index >= 0) {
        QAccessibleEvent event(&widget, QAccessible::Focus);
        event.setChild(index);
        QAccessible::updateAccessibility(&event);
    }
}

void CardListAccessible::announceCards(QWidget& widget) {
    if (QAccessible::isActive()) {
        QAccessibleEvent event(&widget, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&event);
    }
}

}  // namespace quillo
