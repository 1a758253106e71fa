// SPDX-License-Identifier: MIT
#include "library/list/quick_clip_row_view.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "appearance/contrast.h"
#include "appearance/fonts.h"
#include "appearance/palette.h"
#include "appearance/symbols.h"

namespace quillo {
namespace {

constexpr int kSideMargin = 8;
constexpr int kTileLeft = 17;
constexpr int kTileSize = 26;
constexpr int kSymbolSize = 16;
constexpr int kTextLeft = 54;
constexpr int kTimeMargin = 17;
constexpr int kTimeGap = 12;
constexpr qreal kRowRadius = 8;
constexpr qreal kTileRadius = 7;
constexpr double kSymbolContrast = 2.0;

QFont textFont(const QFont& font) {
    return sizedFont(font, 13, QFont::Normal);
}

QFont timeFont(const QFont& font) {
    return sizedFont(font, 11, QFont::Normal);
}

}  // namespace

/// Where the parts of a row are.
struct QuickClipRowView::Layout {
    QRect tile;
    QRect text;
    QRect time;
    QString shownText;
    QString wholeText;
    QString age;
};

QuickClipRowView::QuickClipRowView(const ClipListModel& model, KindColor kindColor, QObject* parent)
    : QStyledItemDelegate(parent), m_model(model), m_kindColor(std::move(kindColor)) {}

QuickClipRowView::Layout QuickClipRowView::layOut(const QStyleOptionViewItem& option,
                                                  int row) const {
    Layout layout;
    const QRect& area = option.rect;
    layout.wholeText = m_model.row(row).text;
    layout.age = m_model.age(row);
    const int timeWidth = QFontMetrics(timeFont(option.font)).horizontalAdvance(layout.age);
    layout.tile = QRect(area.left() + kTileLeft, area.top() + (kHeight - kTileSize) / 2, kTileSize,
                        kTileSize);
    layout.time = QRect(area.right() + 1 - kTimeMargin - timeWidth, area.top(), timeWidth, kHeight);
    layout.text = QRect(area.left() + kTextLeft, area.top(),
                        layout.time.left() - kTimeGap - area.left() - kTextLeft, kHeight);
    layout.shownText = QFontMetrics(textFont(option.font))
                           .elidedText(layout.wholeText, Qt::ElideRight, layout.text.width());
    return layout;
}

void QuickClipRowView::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
    const Palette& colors = paletteFor(schemeOf(option.palette));
    const Layout layout = layOut(option, index.row());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    if (isSelected || option.state.testFlag(QStyle::State_MouseOver)) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(isSelected ? colors.field
                                     : mixed(colors.panelBackground, colors.field, 0.5));
        painter->drawRoundedRect(option.rect.adjusted(kSideMargin, 0, -kSideMargin, 0), kRowRadius,
                                 kRowRadius);
    }
    paintTile(*painter, layout.tile, m_model.row(index.row()).kind);
    painter->setPen(colors.primaryText);
    painter->setFont(textFont(option.font));
    painter->drawText(layout.text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      layout.shownText);
    painter->setPen(colors.secondaryText);
    painter->setFont(timeFont(option.font));
    painter->drawText(layout.time, Qt::AlignRight | Qt::AlignVCenter, layout.age);
    painter->restore();
}

void QuickClipRowView::paintTile(QPainter& painter, const QRect& tile,
                                 std::optional<ClipType> kind) const {
    const QColor color = m_kindColor(kind.value_or(ClipType::Text));
    const QColor symbol = contrastRatio(Qt::white, color) >= kSymbolContrast
                              ? QColor(Qt::white)
                              : paletteFor(ColorScheme::Light).primaryText;
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(tile, kTileRadius, kTileRadius);
    constexpr int kInset = (kTileSize - kSymbolSize) / 2;
    painter.drawPixmap(
        tile.topLeft() + QPoint(kInset, kInset),
        symbolPixmap(kindSymbol(kind), kSymbolSize, symbol, painter.device()->devicePixelRatioF()));
}

QSize QuickClipRowView::sizeHint(const QStyleOptionViewItem& /*option*/,
                                 const QModelIndex& /*index*/) const {
    return {0, kHeight};
}

bool QuickClipRowView::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                 const QStyleOptionViewItem& option, const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip || !index.isValid()) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    const Layout layout = layOut(option, index.row());
    const bool isCut = layout.shownText != layout.wholeText;
    // As a text, whatever marks it contains.
    QToolTip::showText(
        event->globalPos(),
        isCut ? QStringLiteral("<p>%1</p>").arg(layout.wholeText.toHtmlEscaped()) : QString(),
        view);
    return true;
}

}  // namespace quillo
