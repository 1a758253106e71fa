// SPDX-License-Identifier: MIT
#include "library/window/library_columns.h"

#include <QJsonObject>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kLeastSidebar = 150;
constexpr int kMostSidebar = 320;
constexpr int kLeastDetail = 240;
constexpr int kMostDetail = 600;
constexpr int kLeastContent = 340;
constexpr int kStoreAfterMs = 400;

const QString kKey = u"libraryColumns"_s;

/// A line of one pixel; it can be taken hold of a little beside it.
class ColumnLine final : public QSplitterHandle {
public:
    explicit ColumnLine(QSplitter* splitter) : QSplitterHandle(Qt::Horizontal, splitter) {}

protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        painter.fillRect(event->rect(), palette().color(QPalette::Mid));
    }
};

int within(const QJsonValue& value, int least, int most, int otherwise) {
    return value.isDouble() ? std::clamp(value.toInt(otherwise), least, most) : otherwise;
}

}  // namespace

ColumnWidths storedColumnWidths(const UserDefaults& defaults) {
    const QJsonObject stored = defaults.object(kKey).value_or(QJsonValue()).toObject();
    const ColumnWidths first;
    return {.sidebar = within(stored[u"sidebar"_s], kLeastSidebar, kMostSidebar, first.sidebar),
            .detail = within(stored[u"detail"_s], kLeastDetail, kMostDetail, first.detail),
            .isSidebarShown = stored[u"isSidebarShown"_s].toBool(first.isSidebarShown),
            .isDetailShown = stored[u"isDetailShown"_s].toBool(first.isDetailShown)};
}

void storeColumnWidths(UserDefaults& defaults, const ColumnWidths& widths) {
    defaults.setObject(kKey, QJsonObject{{u"sidebar"_s, widths.sidebar},
                                         {u"detail"_s, widths.detail},
                                         {u"isSidebarShown"_s, widths.isSidebarShown},
                                         {u"isDetailShown"_s, widths.isDetailShown}});
}

LibraryColumns::LibraryColumns(UserDefaults& defaults, QWidget* sidebar, QWidget* content,
                               QWidget* detail, QWidget* parent)
    : QSplitter(Qt::Horizontal, parent),
      m_defaults(defaults),
      m_widths(storedColumnWidths(defaults)) {
    setHandleWidth(1);
    setChildrenCollapsible(false);
    addWidget(sidebar);
    addWidget(content);
    addWidget(detail);
    // Screen readers read them in the order in which they are stacked.
    for (QWidget* column : {detail, content, sidebar}) {
        column->lower();
    }
    sidebar->setMinimumWidth(kLeastSidebar);
    sidebar->setMaximumWidth(kMostSidebar);
    content->setMinimumWidth(kLeastContent);
    detail->setMinimumWidth(kLeastDetail);
    detail->setMaximumWidth(kMostDetail);
    setStretchFactor(0, 0);
    setStretchFactor(1, 1);
    setStretchFactor(2, 0);
    m_storeSoon.setSingleShot(true);
    m_storeSoon.setInterval(kStoreAfterMs);
    connect(&m_storeSoon, &QTimer::timeout, this,
            [this] { storeColumnWidths(m_defaults, m_widths); });
    connect(this, &QSplitter::splitterMoved, this, &LibraryColumns::moved);
    apply();
}

LibraryColumns::~LibraryColumns() {
    if (m_storeSoon.isActive()) {
        storeColumnWidths(m_defaults, m_widths);
    }
}

QSplitterHandle* LibraryColumns::createHandle() {
    return new ColumnLine(this);
}

void LibraryColumns::setLook(const LibraryLook& look) {
    QPalette palette = this->palette();
    palette.setColor(QPalette::Mid, look.line);
    for (int i = 1; i < count(); ++i) {
        handle(i)->setPalette(palette);
    }
}

void LibraryColumns::apply() {
    widget(0)->setVisible(m_widths.isSidebarShown);
    widget(2)->setVisible(m_widths.isDetailShown);
    const int outer = (m_widths.isSidebarShown ? m_widths.sidebar + 1 : 0) +
                      (m_widths.isDetailShown ? m_widths.detail + 1 : 0);
    setSizes({m_widths.sidebar, std::max(kLeastContent, width() - outer), m_widths.detail});
}

void LibraryColumns::showSidebar(bool isShown) {
    m_widths.isSidebarShown = isShown;
    apply();
    m_storeSoon.start();
}

void LibraryColumns::showDetail(bool isShown) {
    m_widths.isDetailShown = isShown;
    apply();
    m_storeSoon.start();
}

// Not what a small window pressed them to: only what the person drags is a choice.
void LibraryColumns::moved() {
    const QList<int> now = sizes();
    m_widths.sidebar = m_widths.isSidebarShown ? now[0] : m_widths.sidebar;
    m_widths.detail = m_widths.isDetailShown ? now[2] : m_widths.detail;
    m_storeSoon.start();
}

void LibraryColumns::resizeEvent(QResizeEvent* event) {
    QSplitter::resizeEvent(event);
    apply();
}

}  // namespace quillo
