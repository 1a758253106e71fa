// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>
#include <QWidget>

#include "library/window/detail_loader.h"
#include "library/window/detail_parts.h"

namespace quillo {

class DetailTextView;
class PushButton;

/// What a clip holds, on a ground of its own: its picture, its text, the colour that it names, its
/// link or its file, and the way to open these.
class DetailContentBox final : public QWidget {
    Q_OBJECT

public:
    explicit DetailContentBox(QWidget* parent = nullptr);

    /// What is known of the clip at once.
    void setClip(const Clip& clip);
    /// What was loaded of it.
    void setLoaded(const DetailContent& content);
    void setLook(const LibraryLook& look);

Q_SIGNALS:
    void linkOpened(const QUrl& address);
    void fileShown(const QUrl& address);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void showAddress(const Clip& clip);

    LibraryLook m_look;
    DetailImageView* m_image;
    QWidget* m_swatch;
    QLabel* m_title;
    DetailTextView* m_text;
    PushButton* m_open;
    QUuid m_clip;
    ClipType m_kind = ClipType::Text;
    QUrl m_address;
};

}  // namespace quillo
