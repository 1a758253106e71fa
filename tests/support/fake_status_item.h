// SPDX-License-Identifier: MIT
#pragma once

#include "platform/status_item.h"

namespace quillo::testing {

/// A status item that notes what it is to show.
class FakeStatusItem final : public StatusItem {
public:
    void setImage(const QIcon& image) override { images.append(image.pixmap(22, 22).toImage()); }
    void setToolTip(const QString& text) override { toolTip = text; }
    void setMenu(const QList<StatusMenuItem>& items) override { menu = items; }
    [[nodiscard]] bool isAvailable() const override { return isThere; }
    [[nodiscard]] std::optional<QRect> iconRect() const override { return rect; }

    void choose(const QString& title) {
        for (const StatusMenuItem& item : QList<StatusMenuItem>(menu)) {
            if (item.title == title) {
                item.action(item);
            }
        }
    }

    QList<QImage> images;
    QString toolTip;
    QList<StatusMenuItem> menu;
    std::optional<QRect> rect;
    bool isThere = true;
};

}  // namespace quillo::testing
