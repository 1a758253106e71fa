// SPDX-License-Identifier: MIT
#include "library/window/library_list_view.h"

#include <QVBoxLayout>

namespace quillo {

LibraryListView::LibraryListView(const ClipListServices& services, QWidget* parent)
    : QWidget(parent), m_clips(services.persistence, services.search, services.clock, 0) {
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 0, 0);
    auto* list = new ClipListView(m_clips, services.kindColor, this);
    box->addWidget(list);
    setFocusProxy(list);
    const auto copy = [services](const QUuid& id) {
        if (const auto clip = services.persistence.viewContext().object<Clip>(id)) {
            services.copy(*clip);
        }
    };
    connect(list, &ClipListView::doubleClicked, this, copy);
    connect(list, &ClipListView::chosen, this, copy);
}

}  // namespace quillo
