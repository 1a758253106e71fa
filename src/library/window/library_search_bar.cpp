// SPDX-License-Identifier: MIT
#include "library/window/library_search_bar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "library/groups/form_controls.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kHeight = 28;
constexpr int kPickerWidth = 140;
constexpr int kChevron = 12;

void paintGround(QPainter& painter, const QRect& area, const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(area, GlassField::kRadius, GlassField::kRadius);
}

}  // namespace

LibrarySearchField::LibrarySearchField(QWidget* parent)
    : GlassField(0, parent), m_look(libraryLook(ColorScheme::Light)) {
    setFixedHeight(kHeight);
    setPlaceholderText(u"Search clips..."_s);
    setAccessibleName(u"Search clips"_s);
    setToolTip(u"Search texts, addresses and file names (Ctrl+F)"_s);
}

void LibrarySearchField::setLook(const LibraryLook& look) {
    m_look = look;
    Palette colors = look.menus;
    colors.primaryText = look.primaryText;
    colors.secondaryText = readableText(look.secondaryText, {look.field});
    applyColors(colors);
}

void LibrarySearchField::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    paintGround(painter, rect(), m_look.field);
    paintGlass(painter);
    if (hasFocus()) {
        paintFocusRing(painter, rect(), kRadius, m_look.accent);
    }
    painter.end();
    GlassField::paintEvent(event);
}

void LibrarySearchField::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Escape && !text().isEmpty()) {
        clear();
    } else if (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter ||
               key == Qt::Key_Down) {
        Q_EMIT left();
    } else {
        GlassField::keyPressEvent(event);
    }
}

// Where there is nothing typed to undo, the window's own undo is meant.
bool LibrarySearchField::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && !isUndoAvailable() &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Undo)) {
        event->ignore();
        return false;
    }
    return GlassField::event(event);
}

TypePicker::TypePicker(QWidget* parent)
    : PanelButton(QAccessible::ButtonMenu, parent), m_look(libraryLook(ColorScheme::Light)) {
    setFixedSize(kPickerWidth, kHeight);
    setFont(sizedFont(font(), 13, QFont::Normal));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setHasPopup(true);
    setToolTip(u"Show clips of one type"_s);
    setFilter(std::nullopt);
    connect(this, &QAbstractButton::clicked, this, &TypePicker::open);
}

void TypePicker::setFilter(std::optional<FilterType> filter) {
    m_filter = filter;
    setText(filter ? label(*filter) : u"All Types"_s);
    setAccessibleName(u"Type: "_s + text());
    update();
}

void TypePicker::setLook(const LibraryLook& look) {
    m_look = look;
    update();
}

QSize TypePicker::sizeHint() const {
    return {kPickerWidth, kHeight};
}

std::vector<MenuEntry> TypePicker::entries() {
    std::vector<MenuEntry> entries;
    const auto add = [&](const QString& title, const QString& symbol,
                         std::optional<FilterType> filter) {
        entries.push_back({.title = title,
                           .symbol = symbol,
                           .check = filter == m_filter,
                           .action = [this, filter] { Q_EMIT chosen(filter); }});
    };
    add(u"All Types"_s, u"rectangle.fill.on.rectangle.fill"_s, std::nullopt);
    for (const FilterType filter : allCases<FilterType>()) {
        add(label(filter), quillo::icon(filter), filter);
    }
    return entries;
}

void TypePicker::open() {
    PopupMenu::open(window(), entries(), Popup::anchorOf(*this), m_look.menus);
}

void TypePicker::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Down) {
        open();
    } else {
        PanelButton::keyPressEvent(event);
    }
}

void TypePicker::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QColor ground = mixed(m_look.field, m_look.primaryText,
                                isDown()       ? 0.14
                                : underMouse() ? 0.07
                                               : 0);
    paintGround(painter, rect(), ground);
    painter.setPen(m_filter ? m_look.primaryText : readableText(m_look.secondaryText, {ground}));
    painter.drawText(rect().adjusted(10, 0, -kChevron - 14, 0), Qt::AlignVCenter, text());
    painter.drawPixmap(
        width() - kChevron - 9, (height() - kChevron) / 2,
        symbolPixmap(u"chevron.down"_s, kChevron, m_look.secondaryText, devicePixelRatioF()));
    if (hasFocus()) {
        paintFocusRing(painter, rect(), GlassField::kRadius, m_look.accent);
    }
}

LibrarySearchBar::LibrarySearchBar(QWidget* parent)
    : QWidget(parent), m_field(new LibrarySearchField), m_types(new TypePicker) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(m_field, 1);
    row->addWidget(m_types);
}

void LibrarySearchBar::focusField() {
    m_field->setFocus(Qt::ShortcutFocusReason);
    m_field->selectAll();
}

bool isSearchText(const QKeyEvent& event) {
    const bool isPlain =
        (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
    return isPlain && event.key() != Qt::Key_Space && !event.text().isEmpty() &&
           event.text().at(0).isPrint();
}

void LibrarySearchBar::typeText(const QString& text) {
    m_field->setFocus(Qt::ShortcutFocusReason);
    m_field->end(false);
    m_field->insert(text);
}

void LibrarySearchBar::setLook(const LibraryLook& look) {
    m_field->setLook(look);
    m_types->setLook(look);
}

}  // namespace quillo
