// SPDX-License-Identifier: MIT
#include "library/window/detail_text_view.h"

#include <QContextMenuEvent>
#include <QMimeData>
#include <QPointer>
#include <QScrollBar>
#include <QTextBlockFormat>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <algorithm>
#include <memory>

#include "appearance/fonts.h"
#include "library/groups/popup_menu.h"
#include "library/groups/slim_scroll_bar.h"
#include "library/thumbnails/rich_preview.h"
#include "platform/pasteboard_reading.h"

namespace quillo {
namespace {

constexpr qsizetype kPiece = 16'384;
constexpr double kLinePercent = 116;

}  // namespace

DetailTextView::DetailTextView(QWidget* parent)
    : QTextBrowser(parent), m_look(libraryLook(ColorScheme::Light)) {
    new SlimScrollBar(*this);
    setFrameShape(QFrame::NoFrame);
    setOpenLinks(false);
    setUndoRedoEnabled(false);
    setFont(sizedFont(font(), 13, QFont::Normal));
    document()->setDocumentMargin(0);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabChangesFocus(true);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setAccessibleName(QStringLiteral("Content"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    viewport()->setAutoFillBackground(false);
    connect(&m_next, &QTimer::timeout, this, &DetailTextView::addPiece);
}

void DetailTextView::setText(const StyledText& text) {
    StyledText shown = text;
    if (shown.text.size() > kLongestText) {
        shown.text = shown.text.first(kLongestText) + QStringLiteral("\n…");
    }
    if (m_text.text != shown.text || m_text.runs != shown.runs) {
        m_text = std::move(shown);
        startAnew();
    }
}

void DetailTextView::setLook(const LibraryLook& look) {
    m_look = look;
    QPalette palette = this->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Text, look.primaryText);
    palette.setColor(QPalette::Highlight, look.accent);
    palette.setColor(QPalette::HighlightedText, look.onAccent);
    palette.setColor(QPalette::Link, readableText(look.accent, {look.field}));
    setPalette(palette);
    startAnew();
}

void DetailTextView::setLeastHeight(int height) {
    m_leastHeight = height;
    textGrew();
}

void DetailTextView::startAnew() {
    clear();
    m_added = 0;
    m_nextFormat = 0;
    m_formats = cardFormats(m_text, m_look.primaryText, {m_look.field});
    for (qsizetype i = 0; i < m_formats.size(); ++i) {
        if (const QString& link = m_text.runs[i].style.link; !link.isEmpty()) {
            m_formats[i].format.setAnchor(true);
            m_formats[i].format.setAnchorHref(link);
        }
    }
    addPiece();
    verticalScrollBar()->setValue(0);
}

// The formats of a piece that begin in it; one that reaches beyond it is taken up again.
void DetailTextView::addPiece() {
    const qsizetype end = std::min(m_added + kPiece, qsizetype(m_text.text.size()));
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    QTextBlockFormat lines;
    lines.setLineHeight(kLinePercent, QTextBlockFormat::ProportionalHeight);
    cursor.setBlockFormat(lines);
    cursor.insertText(m_text.text.mid(m_added, end - m_added), QTextCharFormat());
    while (m_nextFormat < m_formats.size() && m_formats[m_nextFormat].start < end) {
        const QTextLayout::FormatRange& range = m_formats[m_nextFormat];
        cursor.setPosition(int(std::max<qsizetype>(range.start, m_added)));
        const qsizetype rangeEnd = range.start + range.length;
        cursor.setPosition(int(std::min(rangeEnd, end)), QTextCursor::KeepAnchor);
        cursor.mergeCharFormat(range.format);
        if (rangeEnd > end) {
            break;
        }
        ++m_nextFormat;
    }
    m_added = end;
    if (m_added < m_text.text.size()) {
        m_next.start(0);
    } else {
        m_next.stop();
    }
    textGrew();
}

void DetailTextView::textGrew() {
    // Beyond what is shown without scrolling nothing changes any more.
    const int wanted = m_added > kPiece ? kMostHeight : int(document()->size().height()) + 2;
    const int height = std::clamp(wanted, m_leastHeight, kMostHeight);
    if (height != m_height) {
        m_height = height;
        updateGeometry();
    }
}

void DetailTextView::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    textGrew();
}

QMimeData* DetailTextView::createMimeDataFromSelection() const {
    auto part = std::make_unique<QMimeData>();
    part->setText(textCursor().selection().toPlainText());
    part->setData(QLatin1StringView(kMarkerTarget), kMarkerValue);
    return part.release();
}

void DetailTextView::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint place = isByKey ? cursorRect().bottomLeft() : event->pos();
    const QPointer<DetailTextView> self(this);
    std::vector<MenuEntry> entries;
    entries.push_back({.title = QStringLiteral("&Copy"),
                       .shortcut = QKeySequence(QKeySequence::Copy).toString(),
                       .isEnabled = textCursor().hasSelection(),
                       .action = [self] {
                           if (self != nullptr) {
                               self->copy();
                           }
                       }});
    entries.push_back({.title = QStringLiteral("Select &All"),
                       .shortcut = QKeySequence(QKeySequence::SelectAll).toString(),
                       .isEnabled = !document()->isEmpty(),
                       .action = [self] {
                           if (self != nullptr) {
                               self->selectAll();
                           }
                       }});
    PopupMenu::open(window(), std::move(entries),
                    QRect(viewport()->mapTo(window(), place), QSize()), m_look.menus);
}

QSize DetailTextView::sizeHint() const {
    return {100, m_height};
}

}  // namespace quillo
