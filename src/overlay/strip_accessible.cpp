// SPDX-License-Identifier: MIT
#include "overlay/strip_accessible.h"

#include <QAccessibleActionInterface>
#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

#include "overlay/clip_strip.h"

namespace quillo {
namespace {

// What is read out of a text before the age.
constexpr qsizetype kLongestText = 200;
constexpr QAccessible::Role kListRole = QAccessible::List;

QString cardName(const CardContent& card) {
    QStringList parts{card.kindLabel};
    for (const QString& part : {card.title, card.body.simplified().left(kLongestText)}) {
        if (!part.isEmpty()) {
            parts.append(part);
        }
    }
    return parts.join(QStringLiteral(": "));
}

QString cardDescription(const CardContent& card) {
    QStringList parts;
    for (const QString& part : {card.source, card.detail}) {
        if (!part.isEmpty()) {
            parts.append(part);
        }
    }
    if (card.isPinned) {
        parts.append(QStringLiteral("Pinned"));
    }
    return parts.join(QStringLiteral(", "));
}

class CardAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    CardAccessible(ClipStrip& strip, int index) : m_strip(&strip), m_index(index) {}

    [[nodiscard]] bool isValid() const override {
        return m_strip && m_index < m_strip->clips().cards().size();
    }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QWindow* window() const override {
        return m_strip ? m_strip->window()->windowHandle() : nullptr;
    }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(m_strip);
    }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        if (!isValid()) {
            return {};
        }
        const CardContent& card = m_strip->clips().cards().at(m_index);
        return kind == QAccessible::Name          ? cardName(card)
               : kind == QAccessible::Description ? cardDescription(card)
                                                  : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}

    [[nodiscard]] QRect rect() const override {
        const QRect card = isValid() ? m_strip->cardRect(m_index) : QRect();
        return isValid() ? QRect(m_strip->mapToGlobal(card.topLeft()), card.size()) : QRect();
    }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = 1;
            return state;
        }
        const bool isSelected = m_strip->selectedIndex() == m_index;
        state.selectable = 1;
        state.focusable = 1;
        state.selected = isSelected ? 1 : 0;
        state.focused = isSelected && m_strip->hasFocus() ? 1 : 0;
        state.offscreen = m_strip->cardRect(m_index).intersects(m_strip->rect()) ? 0 : 1;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    [[nodiscard]] QStringList actionNames() const override {
        return {pressAction(), deleteAction(), showMenuAction()};
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString& action) const override {
        const bool hasDigit = action == pressAction() && m_index < 9;
        return hasDigit                   ? QStringList{QString::number(m_index + 1)}
               : action == deleteAction() ? QStringList{QStringLiteral("Delete")}
                                          : QStringList{};
    }
    void doAction(const QString& action) override {
        if (!isValid()) {
            return;
        }
        if (action == pressAction()) {
            Q_EMIT m_strip->cardClicked(m_index);
        } else if (action == deleteAction()) {
            Q_EMIT m_strip->deleteRequested(m_index);
        } else if (action == showMenuAction()) {
            Q_EMIT m_strip->menuRequested(m_index, m_strip->cardRect(m_index));
        }
    }

private:
    [[nodiscard]] static QString deleteAction() { return QStringLiteral("Delete"); }

    QPointer<ClipStrip> m_strip;
    int m_index;
};

class StripAccessible final : public QAccessibleWidget {
public:
    explicit StripAccessible(ClipStrip* strip) : QAccessibleWidget(strip, kListRole) {}
    ~StripAccessible() override {
        for (const QAccessible::Id id : std::as_const(m_cards)) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }

    [[nodiscard]] int childCount() const override { return int(strip().clips().cards().size()); }

    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) {
            return nullptr;
        }
        auto known = m_cards.constFind(index);
        if (known == m_cards.cend()) {
            known = m_cards.insert(index, QAccessible::registerAccessibleInterface(
                                              new CardAccessible(strip(), index)));
        }
        return QAccessible::accessibleInterface(*known);
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* card) const override {
        for (const auto& [index, id] : m_cards.asKeyValueRange()) {
            if (QAccessible::accessibleInterface(id) == card) {
                return index;
            }
        }
        return -1;
    }

    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        for (int i = 0; i < childCount(); ++i) {
            if (child(i)->rect().contains(x, y)) {
                return child(i);
            }
        }
        return nullptr;
    }

    [[nodiscard]] QAccessibleInterface* focusChild() const override {
        return strip().hasFocus() ? child(strip().selectedIndex()) : nullptr;
    }

private:
    [[nodiscard]] ClipStrip& strip() const { return *static_cast<ClipStrip*>(widget()); }

    mutable QHash<int, QAccessible::Id> m_cards;
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

void announceSelection(ClipStrip& strip) {
    if (!QAccessible::isActive() || !strip.hasFocus()) {
        return;
    }
    QAccessibleEvent event(&strip, QAccessible::Focus);
    event.setChild(strip.selectedIndex());
    QAccessible::updateAccessibility(&event);
}

void announceCards(ClipStrip& strip) {
    if (QAccessible::isActive()) {
        QAccessibleEvent event(&strip, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&event);
    }
}

}  // namespace quillo
