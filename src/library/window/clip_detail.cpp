// SPDX-License-Identifier: MIT
#include "library/window/clip_detail.h"

#include <QGridLayout>
#include <QLocale>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "appearance/fonts.h"
#include "library/groups/form_controls.h"
#include "library/groups/slim_scroll_bar.h"
#include "library/groups/text_color.h"
#include "library/list/clip_list_model.h"
#include "library/window/detail_content_box.h"
#include "library/window/flow_layout.h"
#include "library/window/library_actions.h"
#include "library/window/library_empty_state.h"
#include "paste/clip_contents.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kMargin = 16;
constexpr int kGap = 8;
constexpr int kPartGap = 12;
constexpr int kLabelWidth = 86;
constexpr int kButtonHeight = 28;
constexpr int kPictureSide = 1200;

PushButton* actionButton(PushButton::Style style, const QString& text, const QString& symbol) {
    auto* button = new PushButton(style, text);
    button->setSymbol(symbol);
    button->setFixedHeight(kButtonHeight);
    setTightWidth(*button);
    return button;
}

}  // namespace

ClipDetail::ClipDetail(Services services, QWidget* parent)
    : QScrollArea(parent),
      m_services(std::move(services)),
      m_look(libraryLook(ColorScheme::Light)),
      m_parts(new QWidget),
      m_placeholder(new LibraryEmptyState(
          {.symbol = u"doc.on.clipboard"_s,
           .title = u"Select a clip to view details"_s,
           .caption = u"Click on any clip in the grid to see its content and metadata"_s})),
      m_header(new DetailHeader),
      m_content(new DetailContentBox),
      m_single(new QWidget) {
    new SlimScrollBar(*this);
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(u"Details"_s);
    makeParts();
    auto* both = new QWidget;
    auto* column = new QVBoxLayout(both);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_parts);
    column->addWidget(m_placeholder);
    both->setAutoFillBackground(true);
    setWidget(both);
    connect(&m_services.loader, &DetailLoader::loaded, m_content, &DetailContentBox::setLoaded);
    connect(&m_services.groups, &GroupList::changed, this, &ClipDetail::showChips);
    connect(&m_services.context, &ObjectContext::changed, this, &ClipDetail::follow);
    connect(m_content, &DetailContentBox::linkOpened, this, &ClipDetail::linkOpened);
    connect(m_content, &DetailContentBox::fileShown, this, &ClipDetail::fileShown);
    showClips();
}

void ClipDetail::makeParts() {
    auto* column = new QVBoxLayout(m_parts);
    column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    column->setSpacing(kPartGap);
    column->addWidget(m_header);
    makeActions(*column);
    auto* single = new QVBoxLayout(m_single);
    single->setContentsMargins(0, 0, 0, 0);
    single->setSpacing(kPartGap - 4);
    m_headings = {detailHeading(u"Content"_s), detailHeading(u"Details"_s),
                  detailHeading(u"Pinboards"_s)};
    m_rows = new QGridLayout;
    m_rows->setVerticalSpacing(6);
    m_rows->setHorizontalSpacing(0);
    m_rows->setColumnMinimumWidth(0, kLabelWidth);
    m_rows->setColumnStretch(2, 1);
    single->addWidget(m_headings[0]);
    single->addWidget(m_content);
    single->addSpacing(8);
    single->addWidget(m_headings[1]);
    single->addLayout(m_rows);
    single->addSpacing(4);
    column->addWidget(m_single);
    column->addWidget(m_headings[2]);
    m_headings[2]->hide();
    auto* chips = new QWidget;
    m_chips = new FlowLayout(kGap, chips);
    column->addWidget(chips);
    column->addStretch();
}

void ClipDetail::makeActions(QVBoxLayout& column) {
    m_copy = actionButton(PushButton::Style::Default, u"Copy"_s, u"doc.on.doc"_s);
    m_transform = actionButton(PushButton::Style::Plain, u"Transform"_s, u"wand.and.rays"_s);
    m_pin = actionButton(PushButton::Style::Plain, u"Pin"_s, u"pin"_s);
    m_delete = actionButton(PushButton::Style::Plain, u"Delete"_s, u"trash"_s);
    m_copy->setToolTip(u"Copy to the clipboard (Return)"_s);
    m_transform->setToolTip(u"Copy the text in another form"_s);
    m_transform->setHasPopup(true);
    auto* actions = new QWidget;
    auto* row = new FlowLayout(kGap, actions);
    for (PushButton* button : {m_copy, m_transform, m_pin, m_delete}) {
        row->addWidget(button);
    }
    column.addWidget(actions);
    connect(m_copy, &PushButton::clicked, this, &ClipDetail::copyRequested);
    connect(m_transform, &PushButton::clicked, this, &ClipDetail::openTransformMenu);
    connect(m_pin, &PushButton::clicked, this, [this] { Q_EMIT pinRequested(!m_isPinned); });
    connect(m_delete, &PushButton::clicked, this, &ClipDetail::deleteRequested);
}

void ClipDetail::setLook(const LibraryLook& look) {
    m_look = look;
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, look.ground);
    setPalette(palette);
    widget()->setPalette(palette);
    m_header->setLook(look);
    m_content->setLook(look);
    static_cast<LibraryEmptyState*>(m_placeholder)->setLook(look);
    for (PushButton* button : {m_copy, m_transform, m_pin, m_delete}) {
        button->setLook(look.controls);
    }
    for (QLabel* heading : std::as_const(m_headings)) {
        setTextColor(*heading, look.secondaryText);
    }
    for (MembershipChip* chip : std::as_const(m_chipButtons)) {
        chip->setLook(look);
    }
    // Their colours are their labels' own.
    m_shownRows.clear();
    showClips();
}

void ClipDetail::setClips(const QList<QUuid>& clips) {
    if (m_clips != clips) {
        m_clips = clips;
        verticalScrollBar()->setValue(0);
        showClips();
    }
}

// A preview that came, a pin, an edited group: what is shown is what is stored.
void ClipDetail::follow(const ChangeSet& changes) {
    const auto isShown = [this](const ObjectId& id) {
        return id.entity == Entity::Clip && m_clips.contains(id.key);
    };
    const bool isConcerned =
        m_clips.size() <= kMostFollowed &&
        (changes.everything || std::ranges::any_of(changes.deleted, isShown) ||
         std::ranges::any_of(changes.updated, isShown, &ChangeSet::Update::id));
    if (isConcerned) {
        showClips();
    }
}

void ClipDetail::showClips() {
    m_clip = m_clips.size() == 1 ? m_services.context.object<Clip>(m_clips[0]) : nullptr;
    m_parts->setVisible(m_clip != nullptr || m_clips.size() > 1);
    m_placeholder->setVisible(m_parts->isHidden());
    m_services.loader.cancel();
    if (m_clip != nullptr) {
        showOne(*m_clip);
    } else if (m_clips.size() > 1) {
        showSeveral();
    }
    showChips();
}

void ClipDetail::showOne(const Clip& clip) {
    const ClipType kind = clip.type().value_or(ClipType::Text);
    m_header->setContent({.symbol = kindSymbol(kind),
                          .tile = defaultColor(kind),
                          .headline = kindName(kind),
                          .line = clip.createdAt().transform(dateAndTime).value_or(QString()),
                          .isPinned = clip.isPinned()});
    showPin(clip.isPinned());
    m_transform->setVisible(true);
    m_transform->setEnabled(transformableText(clip).has_value());
    m_delete->hide();
    m_single->show();
    m_content->setClip(clip);
    showRows(detailRows(clip, sourceOf(clip)));
    showSource();
    const int side = int(kPictureSide * devicePixelRatioF());
    m_services.loader.load({clip.id(), kind, QSize(side, side)});
}

void ClipDetail::showSeveral() {
    m_header->setContent({.symbol = u"rectangle.fill.on.rectangle.fill"_s,
                          .tile = m_look.accent,
                          .headline = u"%1 Clips"_s.arg(QLocale().toString(m_clips.size())),
                          .line = u"Selected"_s,
                          .isPinned = false});
    showPin(arePinned(m_services.context, m_clips));
    m_transform->hide();
    m_delete->show();
    m_single->hide();
}

}  // namespace quillo
