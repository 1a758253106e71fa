// SPDX-License-Identifier: MIT
#include "library/window/clip_grid_accessible.h"

#include <QAccessibleActionInterface>
#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>
#include <QWindow>

#include "library/window/clip_grid.h"
#include "library/window/clip_grid_texts.h"

namespace quillo {
namespace {

class GridCardAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    GridCardAccessible(ClipGrid& grid, int index) : m_grid(&grid), m_index(index) {}

    [[nodiscard]] int index() const { return m_index; }
    [[nodiscard]] bool isValid() const override {
        return m_grid && m_index < m_grid->clips().ids().size();
    }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QWindow* window() const override {
        return m_grid ? m_grid->window()->windowHandle() : nullptr;
    }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(m_grid);
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
        m_grid->clips().load(m_index, m_index);
        const CardContent* card = m_grid->clips().card(clip());
        if (card == nullptr) {
            return {};
        }
        return kind == QAccessible::Name          ? spokenName(*card)
               : kind == QAccessible::Description ? spokenDetails(*card, m_grid->clock().now())
                                                  : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}

    [[nodiscard]] QRect rect() const override {
        const QRect card = isValid() ? m_grid->cardRect(m_index) : QRect();
        return isValid() ? QRect(m_grid->viewport()->mapToGlobal(card.topLeft()), card.size())
                         : QRect();
    }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = 1;
            return state;
        }
        state.selectable = 1;
        state.multiSelectable = 1;
        state.focusable = 1;
        state.selected = m_grid->selection().contains(clip()) ? 1 : 0;
        state.focused = m_grid->hasFocus() && m_grid->selection().current() == clip() ? 1 : 0;
        state.offscreen = m_grid->cardRect(m_index).intersects(m_grid->viewport()->rect()) ? 0 : 1;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    [[nodiscard]] QStringList actionNames() const override {
        return {pressAction(), copyAction(), deleteAction(), showMenuAction()};
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString& action) const override {
        return action == copyAction()     ? QStringList{QStringLiteral("Return")}
               : action == deleteAction() ? QStringList{QStringLiteral("Delete")}
                                          : QStringList{};
    }
    void doAction(const QString& action) override {
        if (!isValid()) {
            return;
        }
        m_grid->choose(m_index);
        if (action == copyAction()) {
            Q_EMIT m_grid->activated();
        } else if (action == deleteAction()) {
            Q_EMIT m_grid->deleteRequested();
        } else if (action == showMenuAction()) {
            Q_EMIT m_grid->menuRequested(m_grid->cardRect(m_index));
        }
    }

private:
    [[nodiscard]] static QString copyAction() { return QStringLiteral("Copy"); }
    [[nodiscard]] static QString deleteAction() { return QStringLiteral("Delete"); }
    [[nodiscard]] QUuid clip() const { return m_grid->clips().ids().value(m_index); }

    QPointer<ClipGrid> m_grid;
    int m_index;
};

class GridAccessible final : public QAccessibleWidget {
public:
    explicit GridAccessible(ClipGrid* grid) : QAccessibleWidget(grid, QAccessible::List) {}
    ~GridAccessible() override {
        for (const QAccessible::Id id : std::as_const(m_cards)) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }

    [[nodiscard]] int childCount() const override { return int(grid().clips().ids().size()); }

    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) {
            return nullptr;
        }
        auto known = m_cards.constFind(index);
        if (known == m_cards.cend()) {
            known = m_cards.insert(index, QAccessible::registerAccessibleInterface(
                                              new GridCardAccessible(grid(), index)));
        }
        return QAccessible::accessibleInterface(*known);
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        const auto* card = dynamic_cast<const GridCardAccessible*>(child);
        return card != nullptr ? card->index() : -1;
    }

    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        return child(int(grid().indexAt(grid().viewport()->mapFromGlobal(QPoint(x, y)))));
    }

    [[nodiscard]] QAccessibleInterface* focusChild() const override {
        return grid().hasFocus() ? child(int(grid().currentIndex())) : nullptr;
    }

private:
    [[nodiscard]] ClipGrid& grid() const { return *static_cast<ClipGrid*>(widget()); }

    mutable QHash<int, QAccessible::Id> m_cards;
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

void announceCurrent(ClipGrid& grid) {
    const qsizetype current = QAccessible::isActive() && grid.hasFocus() ? grid.currentIndex() : -1;
    if (current >= 0) {
        QAccessibleEvent event(&grid, QAccessible::Focus);
        event.setChild(int(current));
        QAccessible::updateAccessibility(&event);
    }
}

void announceClips(ClipGrid& grid) {
    if (QAccessible::isActive()) {
        QAccessibleEvent event(&grid, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&event);
    }
}

}  // namespace quillo
