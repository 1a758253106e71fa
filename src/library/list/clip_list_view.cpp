// SPDX-License-Identifier: MIT
#include "library/list/clip_list_view.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "appearance/fonts.h"
#include "appearance/palette.h"
#include "library/list/list_search_field.h"

namespace quillo {
namespace {

constexpr int kHeaderHeight = 56;
constexpr int kFieldMargin = 14;
constexpr int kAboveRows = 6;

}  // namespace

ClipListView::ClipListView(ListedClips& clips, QuickClipRowView::KindColor kindColor,
                           QWidget* parent)
    : QWidget(parent),
      m_clips(clips),
      m_search(new ListSearchField(this)),
      m_list(new QListView(this)),
      m_empty(new QLabel(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto* header = new QVBoxLayout;
    header->setContentsMargins(kFieldMargin, kFieldMargin, kFieldMargin,
                               kHeaderHeight - kFieldMargin - ListSearchField::kHeight);
    header->addWidget(m_search);
    column->addLayout(header);
    column->addSpacing(1 + kAboveRows);
    column->addWidget(m_list, 1);
    m_empty->setParent(m_list->viewport());
    m_empty->setForegroundRole(QPalette::WindowText);
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setWordWrap(true);
    m_list->setModel(&m_clips.model());
    m_list->setItemDelegate(new QuickClipRowView(m_clips.model(), std::move(kindColor), this));
    m_list->setUniformItemSizes(true);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setMouseTracking(true);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setAccessibleName(QStringLiteral("Clips"));
    m_list->setFocusPolicy(Qt::ClickFocus);
    setFocusProxy(m_search);
    m_search->installEventFilter(this);
    m_list->installEventFilter(this);
    m_list->viewport()->installEventFilter(this);
    connect(m_search, &QLineEdit::textChanged, &m_clips, &ListedClips::setSearchText);
    connect(&m_clips, &ListedClips::aboutToRefresh, this, &ClipListView::rememberSelection);
    connect(&m_clips, &ListedClips::refreshed, this, &ClipListView::showRefreshed);
    connect(m_list, &QListView::clicked, this, [this](const QModelIndex& index) {
        Q_EMIT clicked(m_clips.model().ids().value(index.row()));
    });
    applyColors();
    showRefreshed();
}

QAbstractScrollArea& ClipListView::scrollArea() {
    return *m_list;
}

void ClipListView::setListHeight(int height) {
    m_list->setFixedHeight(height);
    static_cast<QVBoxLayout*>(layout())->addStretch(1);
}

void ClipListView::rememberSelection() {
    m_selected = m_clips.model().ids().value(m_list->currentIndex().row());
}

void ClipListView::showRefreshed() {
    const QList<QUuid>& ids = m_clips.model().ids();
    if (!m_list->currentIndex().isValid() && !ids.isEmpty()) {
        const qsizetype before = ids.indexOf(m_selected);
        select(int(std::max<qsizetype>(0, before)));
    }
    const bool isSearching = !m_clips.searchText().isEmpty();
    m_empty->setText(isSearching ? QStringLiteral("No matches")
                                 : QStringLiteral("What you copy appears here"));
    m_empty->setVisible(ids.isEmpty());
}

bool ClipListView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        auto* press = static_cast<QKeyEvent*>(event);
        if (handleKey(press->key())) {
            return true;
        }
        if (watched == m_list && !press->text().isEmpty() && press->key() != Qt::Key_Escape &&
            press->key() != Qt::Key_Tab) {
            m_search->setFocus(Qt::OtherFocusReason);
            m_search->event(event);
            return true;
        }
    } else if (watched == m_list->viewport() && event->type() == QEvent::Resize) {
        m_empty->setGeometry(m_list->viewport()->rect());
    }
    return QWidget::eventFilter(watched, event);
}

bool ClipListView::handleKey(int key) {
    switch (key) {
        case Qt::Key_Down:
            moveBy(1);
            return true;
        case Qt::Key_Up:
            moveBy(-1);
            return true;
        case Qt::Key_PageDown:
            moveBy(rowsPerPage());
            return true;
        case Qt::Key_PageUp:
            moveBy(-rowsPerPage());
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (m_list->currentIndex().isValid()) {
                Q_EMIT chosen(m_clips.model().ids().value(m_list->currentIndex().row()));
            }
            return true;
        default:
            return false;
    }
}

void ClipListView::select(int row) {
    m_list->setCurrentIndex(m_clips.model().index(row));
}

void ClipListView::moveBy(int rows) {
    const int count = m_clips.model().rowCount();
    if (count > 0) {
        select(std::clamp(m_list->currentIndex().row() + rows, 0, count - 1));
    }
}

int ClipListView::rowsPerPage() const {
    return std::max(1, m_list->viewport()->height() / QuickClipRowView::kHeight - 1);
}

void ClipListView::applyColors() {
    const Palette& colors = paletteFor(schemeOf(palette()));
    QPalette list = m_list->palette();
    list.setColor(QPalette::Base, Qt::transparent);
    m_list->setPalette(list);
    m_list->viewport()->setAutoFillBackground(false);
    QPalette empty = m_empty->palette();
    empty.setColor(QPalette::WindowText, colors.secondaryText);
    m_empty->setPalette(empty);
    m_empty->setFont(sizedFont(font(), 13, QFont::Normal));
}

void ClipListView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_empty != nullptr) {
        applyColors();
        update();
    }
}

// The line between the field and the rows.
void ClipListView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(QRect(0, kHeaderHeight, width(), 1),
                     paletteFor(schemeOf(palette())).panelBorder);
}

}  // namespace quillo
