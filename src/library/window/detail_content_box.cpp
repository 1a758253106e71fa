// SPDX-License-Identifier: MIT
#include "library/window/detail_content_box.h"

#include <QEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "appearance/fonts.h"
#include "library/groups/form_controls.h"
#include "library/groups/text_color.h"
#include "library/window/detail_text_view.h"
#include "model/filter_type.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kPadding = 12;
constexpr int kSwatchHeight = 56;
constexpr int kLineHeight = 22;
constexpr qreal kRadius = 8;

bool isOpenable(const QUrl& address) {
    const QString scheme = address.scheme().toLower();
    return address.isValid() && (scheme == u"http" || scheme == u"https" || scheme == u"mailto");
}

}  // namespace

DetailContentBox::DetailContentBox(QWidget* parent)
    : QWidget(parent),
      m_look(libraryLook(ColorScheme::Light)),
      m_image(new DetailImageView),
      m_swatch(new QWidget),
      m_title(new QLabel),
      m_text(new DetailTextView),
      m_open(new PushButton(PushButton::Style::Link, QString())) {
    m_swatch->setFixedHeight(kSwatchHeight);
    m_swatch->setAutoFillBackground(true);
    m_title->setFont(sizedFont(font(), 13, QFont::DemiBold));
    m_title->setWordWrap(true);
    m_title->setTextFormat(Qt::PlainText);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kPadding, kPadding, kPadding, kPadding);
    column->setSpacing(8);
    for (QWidget* part : std::initializer_list<QWidget*>{m_image, m_swatch, m_title, m_text}) {
        column->addWidget(part);
    }
    column->addWidget(m_open, 0, Qt::AlignLeft);
    m_text->installEventFilter(this);
    connect(m_text, &QTextBrowser::anchorClicked, this, [this](const QUrl& address) {
        if (isOpenable(address)) {
            Q_EMIT linkOpened(address);
        }
    });
    connect(m_open, &PushButton::clicked, this, [this] {
        Q_EMIT(m_kind == ClipType::FileUrl ? fileShown(m_address) : linkOpened(m_address));
    });
}

void DetailContentBox::setLook(const LibraryLook& look) {
    m_look = look;
    m_image->setLook(look);
    m_text->setLook(look);
    PopupLook controls = look.controls;
    controls.accentText = readableText(look.accent, {look.field});
    m_open->setLook(controls);
    setTextColor(*m_title, look.primaryText);
    update();
}

void DetailContentBox::setClip(const Clip& clip) {
    const bool isAnother = std::exchange(m_clip, clip.id()) != clip.id();
    m_kind = clip.type().value_or(ClipType::Text);
    const bool isPicture = m_kind == ClipType::Image || m_kind == ClipType::FileUrl;
    if (isAnother) {
        m_image->setImage({}, {},
                          m_kind == ClipType::Image ? u"photo"_s : icon(filterTypeOf(clip)));
    }
    m_image->setVisible(isPicture || (!isAnother && m_image->isVisibleTo(this)));
    const std::optional<QColor> color = clip.detectedColor();
    m_swatch->setVisible(color.has_value());
    QPalette palette = m_swatch->palette();
    palette.setColor(QPalette::Window, color.value_or(QColor(Qt::transparent)));
    m_swatch->setPalette(palette);
    const QString title = m_kind == ClipType::FileUrl ? clip.fileName().value_or(u"Unknown file"_s)
                                                      : clip.linkTitle().value_or(QString());
    m_title->setText(title);
    m_title->setVisible(!title.isEmpty());
    m_title->setAlignment(m_kind == ClipType::FileUrl ? Qt::AlignHCenter : Qt::AlignLeft);
    m_text->setVisible(!isPicture);
    // A document stands as plain text until it was read; one that is shown stays.
    const bool isDocument = m_kind == ClipType::Rtf || m_kind == ClipType::Html;
    if (!isPicture && (isAnother || !isDocument)) {
        m_text->setText({clip.plaintext().value_or(clip.displayText()), {}});
    }
    showAddress(clip);
    const bool hasMoreBelow = color || !m_open->isHidden();
    m_text->setLeastHeight(hasMoreBelow ? kLineHeight : DetailTextView::kLeastHeight);
}

void DetailContentBox::showAddress(const Clip& clip) {
    m_address = QUrl(clip.urlString().value_or(QString()));
    const bool isFile = m_kind == ClipType::FileUrl && m_address.isLocalFile();
    const bool isLink = m_kind == ClipType::Text && isOpenable(m_address);
    m_open->setText(isFile ? u"Show in File Manager"_s : u"Open Link"_s);
    m_open->setAccessibleName(m_open->text());
    m_open->setSymbol(isFile ? u"folder"_s : u"arrow.up.right"_s);
    m_open->setToolTip(m_address.toDisplayString(QUrl::PreferLocalFile));
    m_open->setVisible(isFile || isLink);
    layout()->setAlignment(m_open, isFile ? Qt::AlignHCenter : Qt::AlignLeft);
}

void DetailContentBox::setLoaded(const DetailContent& content) {
    if (content.clip != m_clip) {
        return;
    }
    if (content.document) {
        m_text->setText(*content.document);
    }
    if (!content.image.isNull()) {
        m_image->setImage(content.image, content.imageSize, {});
        m_image->show();
    }
}

// The ring of the text's focus stands around the box.
bool DetailContentBox::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        update();
    }
    return QWidget::eventFilter(watched, event);
}

void DetailContentBox::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_look.field);
    painter.drawRoundedRect(rect(), kRadius, kRadius);
    if (m_text->hasFocus()) {
        paintFocusRing(painter, rect(), kRadius, m_look.accent);
    }
}

}  // namespace quillo
