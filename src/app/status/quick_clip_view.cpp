// SPDX-License-Identifier: MIT
#include "app/status/quick_clip_view.h"

#include <QVBoxLayout>

#include "library/groups/slim_scroll_bar.h"

namespace quillo {

QuickClipView::QuickClipView(const ClipListServices& services, QWidget* parent)
    : QWidget(parent), m_clips(services.persistence, services.search, services.clock, kNewest) {
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 0, 0);
    auto* list = new ClipListView(m_clips, services.kindColor, this);
    list->setListHeight(kListHeight);
    new SlimScrollBar(list->scrollArea());
    box->addWidget(list);
    setFocusProxy(list);
    const auto copy = [this, services](const QUuid& id) {
        if (const auto clip = services.persistence.viewContext().object<Clip>(id)) {
            services.copy(*clip);
            Q_EMIT closeRequested();
        }
    };
    connect(list, &ClipListView::clicked, this, copy);
    connect(list, &ClipListView::chosen, this, copy);
}

}  // namespace quillo
