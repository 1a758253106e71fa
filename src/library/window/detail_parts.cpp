// SPDX-License-Identifier: MIT
#include "library/window/detail_parts.h"

#include <QDateTime>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "appearance/fonts.h"
#include "appearance/symbols.h"
#include "library/groups/form_controls.h"
#include "library/thumbnails/card_body_painter.h"
#include "library/thumbnails/card_content.h"
#include "library/window/library_sections.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kTile = 26;
constexpr int kHeaderHeight = 38;
constexpr int kPin = 14;
constexpr int kLeastPicture = 126;
constexpr int kChipPadding = 10;
constexpr int kDot = 9;
constexpr int kMark = 12;
constexpr int kLongestTitle = 150;

QDateTime localTime(Timestamp moment) {
    const auto time =
        std::chrono::duration_cast<std::chrono::milliseconds>(moment.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(time.count());
}

// As the person's language counts hours.
QString clockTime(const QTime& time, const QString& seconds) {
    const bool hasNoon =
        QLocale().timeFormat(QLocale::ShortFormat).contains(u'a', Qt::CaseInsensitive);
    return QLocale().toString(time,
                              hasNoon ? u"h:mm"_s + seconds + u" AP"_s : u"HH:mm"_s + seconds);
}

}  // namespace

QString dateAndTime(Timestamp moment) {
    const QDateTime local = localTime(moment);
    return QLocale().toString(local.date(), u"d MMMM yyyy"_s) + u" at "_s +
           clockTime(local.time(), {});
}

QString shortDateAndTime(Timestamp moment) {
    const QDateTime local = localTime(moment);
    return QLocale().toString(local.date(), u"d MMM yyyy, "_s) + clockTime(local.time(), u":ss"_s);
}

QList<DetailRow> detailRows(const Clip& clip, const QString& source) {
    QList<DetailRow> rows;
    const auto add = [&rows](const QString& label, const std::optional<QString>& value) {
        if (value && !value->isEmpty()) {
            rows.append({label, *value});
        }
    };
    const std::optional<QString> text = clip.plaintext();
    if (!source.isEmpty()) {
        rows.append({u"Source App"_s, source, true});
    }
    add(u"Domain"_s, clip.urlHost());
    add(u"Created"_s, clip.createdAt().transform(shortDateAndTime));
    add(u"Modified"_s, clip.modifiedAt().transform(shortDateAndTime));
    add(u"Type"_s, kindName(clip.type().value_or(ClipType::Text)));
    add(u"Size"_s, clip.formattedFileSize());
    if (text) {
        add(u"Characters"_s, QLocale().toString(characterCount(*text)));
    }
    return rows;
}

void setTightWidth(QWidget& button) {
    constexpr int kSpared = 8;
    button.setFixedWidth(button.sizeHint().width() - kSpared);
}

QLabel* detailHeading(const QString& text) {
    auto* label = new QLabel(text);
    label->setFont(sizedFont(label->font(), 11, QFont::DemiBold));
    return label;
}

DetailHeader::DetailHeader(QWidget* parent)
    : QWidget(parent), m_look(libraryLook(ColorScheme::Light)) {
    setFixedHeight(kHeaderHeight);
}

void DetailHeader::setContent(const Content& content) {
    m_content = content;
    setAccessibleName(content.headline);
    setAccessibleDescription(content.line + (content.isPinned ? u", Pinned"_s : QString()));
    update();
}

void DetailHeader::setLook(const LibraryLook& look) {
    m_look = look;
    update();
}

void DetailHeader::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect tile(0, (height() - kTile) / 2, kTile, kTile);
    fillRounded(painter, tile, 6, m_content.tile);
    drawSnapped(painter, QRectF(tile).adjusted(6, 6, -6, -6),
                symbolPixmap(m_content.symbol, kTile - 12,
                             readableText(Qt::white, {m_content.tile}), devicePixelRatioF()));
    const int right = m_content.isPinned ? kPin + 10 : 0;
    const QRect texts = rect().adjusted(kTile + 9, 0, -right, 0);
    painter.setPen(m_look.primaryText);
    painter.setFont(sizedFont(font(), 15, QFont::DemiBold));
    painter.drawText(
        texts.adjusted(0, 0, 0, -17), Qt::AlignVCenter,
        painter.fontMetrics().elidedText(m_content.headline, Qt::ElideRight, texts.width()));
    painter.setPen(m_look.secondaryText);
    painter.setFont(sizedFont(font(), 11, QFont::Normal));
    painter.drawText(
        texts.adjusted(0, 21, 0, 0), Qt::AlignVCenter,
        painter.fontMetrics().elidedText(m_content.line, Qt::ElideRight, texts.width()));
    if (m_content.isPinned) {
        painter.drawPixmap(
            width() - kPin, (height() - kPin) / 2,
            symbolPixmap(u"pin.fill"_s, kPin, m_look.secondaryText, devicePixelRatioF()));
    }
}

DetailImageView::DetailImageView(QWidget* parent)
    : QWidget(parent), m_look(libraryLook(ColorScheme::Light)) {
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleName(u"Image"_s);
}

void DetailImageView::setImage(const QImage& image, const QSize& size, const QString& symbol) {
    m_image = image;
    m_size = size.isEmpty() ? image.size() : size;
    m_symbol = symbol;
    setAccessibleDescription(
        size.isEmpty() ? QString() : u"%1 × %2 pixels"_s.arg(size.width()).arg(size.height()));
    updateGeometry();
    update();
}

void DetailImageView::setLook(const LibraryLook& look) {
    m_look = look;
    update();
}

int DetailImageView::heightForWidth(int width) const {
    if (m_image.isNull() || m_size.isEmpty()) {
        return kLeastPicture;
    }
    const int height = std::min(m_size.height(), width * m_size.height() / m_size.width());
    return std::clamp(height, 24, kMostHeight);
}

QSize DetailImageView::sizeHint() const {
    return {100, heightForWidth(std::max(100, width()))};
}

void DetailImageView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (m_image.isNull()) {
        constexpr int kSide = 40;
        painter.drawPixmap(
            (width() - kSide) / 2, (height() - kSide) / 2,
            symbolPixmap(m_symbol, kSide, m_look.secondaryText, devicePixelRatioF()));
        return;
    }
    QSizeF shown = m_size.scaled(size(), Qt::KeepAspectRatio);
    if (shown.width() > m_size.width()) {
        shown = m_size;
    }
    const QRectF place(QPointF((width() - shown.width()) / 2, (height() - shown.height()) / 2),
                       shown);
    QPainterPath outline;
    outline.addRoundedRect(place, 4, 4);
    painter.setClipPath(outline);
    painter.drawImage(place, m_image);
}

MembershipChip::MembershipChip(const GroupItem& item, QWidget* parent)
    : PanelButton(QAccessible::CheckBox, parent),
      m_item(item),
      m_look(libraryLook(ColorScheme::Light)) {
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setFont(sizedFont(font(), 13, QFont::Normal));
    setText(pinboardTitle(item));
    setAccessibleName(pinboardTitle(item));
    if (shownTitle() != pinboardTitle(item)) {
        setToolTip(pinboardTitle(item));
    }
}

void MembershipChip::setLook(const LibraryLook& look) {
    m_look = look;
    update();
}

QString MembershipChip::shownTitle() const {
    return fontMetrics().elidedText(pinboardTitle(m_item).simplified(), Qt::ElideRight,
                                    kLongestTitle);
}

QSize MembershipChip::sizeHint() const {
    return {2 * kChipPadding + kDot + 6 + fontMetrics().horizontalAdvance(shownTitle()) + 7 + kMark,
            kHeight};
}

void MembershipChip::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double share = isDown() ? 0.14 : underMouse() ? 0.07 : 0;
    const QColor ground = mixed(m_look.field, m_look.primaryText, share);
    fillRounded(painter, rect(), kHeight / 2.0, ground);
    painter.setBrush(m_item.color.value_or(m_look.accent));
    painter.drawEllipse(QRectF(kChipPadding, (height() - kDot) / 2.0, kDot, kDot));
    painter.setPen(readableText(m_look.primaryText, {ground}));
    painter.drawText(rect().adjusted(kChipPadding + kDot + 6, 0, 0, 0), Qt::AlignVCenter,
                     shownTitle());
    const QString mark = isChecked() ? u"checkmark.circle.fill"_s : u"circle"_s;
    const QColor ink = isChecked() ? m_look.accent : m_look.secondaryText;
    painter.drawPixmap(width() - kChipPadding - kMark, (height() - kMark) / 2 + 1,
                       symbolPixmap(mark, kMark, ink, devicePixelRatioF()));
    if (hasFocus()) {
        paintFocusRing(painter, rect(), kHeight / 2.0 - 1, m_look.accent);
    }
}

}  // namespace quillo
