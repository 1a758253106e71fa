// SPDX-License-Identifier: MIT
#include "library/groups/popup_menu.h"

#include <QAccessibleWidget>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "library/groups/menu_row.h"

namespace quillo {
namespace {

constexpr int kSideMargin = 4;
constexpr int kTopMargin = 2;
constexpr int kSeparatorHeight = 12;
constexpr int kLeastRowWidth = 170;
/// The first row of a submenu is level with the entry that opens it.
constexpr int kSubmenuRise = 6;
constexpr int kSubmenuGap = 7;
/// So that the pointer can cross other entries on its way into a submenu.
constexpr std::chrono::milliseconds kHoverDelay{180};

class MenuSeparator final : public QWidget {
public:
    MenuSeparator(const Popup& menu, QWidget* parent) : QWidget(parent), m_menu(menu) {
        setFixedHeight(kSeparatorHeight);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.fillRect(QRect(5, height() / 2 - 1, width() - 10, 1), m_menu.look().separator);
    }

private:
    const Popup& m_menu;
};

QAccessibleInterface* accessibleMenu(const QString& /*className*/, QObject* object) {
    auto* menu = qobject_cast<PopupMenu*>(object);
    return menu != nullptr ? new QAccessibleWidget(menu, QAccessible::PopupMenu) : nullptr;
}

void installFactoryOnce() {
    static const bool kIsInstalled = [] {
        QAccessible::installFactory(&accessibleMenu);
        return true;
    }();
    Q_UNUSED(kIsInstalled)
}

}  // namespace

MenuEntry MenuEntry::separator() {
    MenuEntry entry;
    entry.kind = Kind::Separator;
    return entry;
}

PopupMenu::PopupMenu(QWidget* panel, std::vector<MenuEntry> entries, const Palette& colors)
    : Popup(panel, colors), m_entries(std::move(entries)) {
    installFactoryOnce();
    setAccessibleName(QStringLiteral("Menu"));
    m_hover.setSingleShot(true);
    m_hover.setInterval(kHoverDelay);
    connect(&m_hover, &QTimer::timeout, this, [this] { followPointer(); });
    addRows();
    setGap(0);
}

PopupMenu* PopupMenu::open(QWidget* panel, std::vector<MenuEntry> entries, const QRect& anchor,
                           const Palette& colors, PopupSide side) {
    auto* menu = new PopupMenu(panel, std::move(entries), colors);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (!anchor.isEmpty()) {
        menu->setGap(4);
    }
    menu->openAt(anchor, side);
    // A menu that a key opened can be walked on at once.
    if (!anchor.isEmpty()) {
        menu->step(-1, 1);
    }
    return menu;
}

void PopupMenu::addRows() {
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(kSideMargin, kTopMargin, kSideMargin, kTopMargin);
    column->setSpacing(0);
    MenuColumns columns{.title = kLeastRowWidth - 50};
    for (size_t i = 0; i < m_entries.size(); ++i) {
        const MenuEntry& entry = m_entries[i];
        if (entry.kind == MenuEntry::Kind::Separator) {
            column->addWidget(new MenuSeparator(*this, content));
            m_rows.append(nullptr);
            continue;
        }
        auto* row = new MenuRow(entry, content);
        column->addWidget(row);
        m_rows.append(row);
        connect(row, &MenuRow::entered, this, [this, i] { rowEntered(int(i)); });
        connect(row, &MenuRow::clicked, this, [this, i] { trigger(int(i)); });
        columns.title = std::max(columns.title, row->titleWidth());
        columns.shortcut = std::max(columns.shortcut, row->shortcutWidth());
        columns.hasEnd = columns.hasEnd || !entry.submenu.empty() || entry.check.has_value();
    }
    for (MenuRow* row : std::as_const(m_rows)) {
        if (row != nullptr) {
            row->setColumns(columns);
            row->setLook(look());
        }
    }
    setContent(content);
}

void PopupMenu::lookChanged() {
    for (MenuRow* row : std::as_const(m_rows)) {
        if (row != nullptr) {
            row->setLook(look());
        }
    }
}

// None of the rows: the pointer, which opened it, chooses.
QWidget* PopupMenu::initialFocus() const {
    return const_cast<PopupMenu*>(this);
}

int PopupMenu::currentIndex() const {
    const auto at = std::ranges::find_if(
        m_rows, [](const MenuRow* row) { return row != nullptr && row->isCurrent(); });
    if (at != m_rows.end()) {
        return int(at - m_rows.begin());
    }
    return m_submenu != nullptr ? m_submenuIndex : -1;
}

void PopupMenu::setCurrentIndex(int index) {
    if (MenuRow* row = m_rows.value(index)) {
        row->setFocus(Qt::OtherFocusReason);
        showWidget(*row);
        // No focus event comes while another window is the active one.
        content()->update();
    }
}

void PopupMenu::rowEntered(int index) {
    m_pointedIndex = index;
    if (currentIndex() != index || m_submenuIndex != index) {
        if (m_rows.at(index)->isEnabled() && m_submenu == nullptr) {
            setCurrentIndex(index);
        }
        if (!m_hover.isActive()) {
            m_hover.start();
        }
    }
}

// The pointer rests on an entry: its submenu opens, that of another one closes.
void PopupMenu::followPointer() {
    const MenuRow* row = m_rows.value(m_pointedIndex);
    if (!isOpen() || row == nullptr || !row->underMouse() || m_submenuIndex == m_pointedIndex) {
        return;
    }
    closeSubmenu();
    if (row->isEnabled()) {
        setCurrentIndex(m_pointedIndex);
        openSubmenu(m_pointedIndex, Entered::ByPointer);
    }
}

void PopupMenu::openSubmenu(int index, Entered how) {
    const MenuEntry& entry = m_entries.at(size_t(index));
    if (entry.submenu.empty()) {
        return;
    }
    if (m_submenu == nullptr || m_submenuIndex != index) {
        closeSubmenu();
        auto* menu = new PopupMenu(panel(), entry.submenu, panelColors());
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->setAccessibleName(m_rows.at(index)->plainTitle());
        menu->m_parentMenu = this;
        menu->setBelow(this);
        menu->setGap(kSubmenuGap);
        m_submenu = menu;
        m_submenuIndex = index;
        m_rows.at(index)->setSubmenuOpen(true);
        connect(menu, &Popup::closed, this, [this, index] {
            m_rows.at(index)->setSubmenuOpen(false);
            m_submenuIndex = -1;
            m_submenu = nullptr;
        });
        const QPoint corner = m_rows.at(index)->mapTo(panel(), QPoint(0, -kSubmenuRise));
        menu->openAt(QRect(corner, m_rows.at(index)->size()), PopupSide::Right);
        m_rows.at(index)->setFocus(Qt::OtherFocusReason);
    }
    if (how == Entered::ByKey) {
        m_submenu->step(-1, 1);
    }
}

void PopupMenu::closeSubmenu() {
    if (m_submenu != nullptr) {
        m_submenu->close();
    }
}

void PopupMenu::closeAllMenus() {
    PopupMenu* root = this;
    while (root->m_parentMenu != nullptr) {
        root = root->m_parentMenu;
    }
    root->close();
}

void PopupMenu::trigger(int index) {
    const MenuRow* row = m_rows.value(index);
    if (row == nullptr || !row->isEnabled()) {
        return;
    }
    if (!m_entries.at(size_t(index)).submenu.empty()) {
        openSubmenu(index, Entered::ByKey);
        return;
    }
    // Closing may be the end of this object.
    const std::function<void()> action = m_entries.at(size_t(index)).action;
    closeAllMenus();
    Q_EMIT triggered(index);
    if (action) {
        action();
    }
}

}  // namespace quillo
