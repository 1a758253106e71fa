// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QObject>
#include <QThreadPool>
#include <QUuid>
#include <atomic>
#include <memory>

#include "library/thumbnails/clip_bytes.h"
#include "model/clip.h"
#include "platform/image_codec.h"
#include "platform/rich_text.h"

namespace quillo {

/// What is to be got of a clip for the detail pane.
struct DetailRequest {
    QUuid clip;
    ClipType kind = ClipType::Text;
    QSize bounds;  ///< Of its picture, in device pixels.
};

/// What takes time to get of a clip; whatever it has not is empty.
struct DetailContent {
    QUuid clip;
    QImage image;     ///< Its own image, or that of a link; no larger than the bounds.
    QSize imageSize;  ///< In the image's own pixels.
    std::shared_ptr<const StyledText> document;
};

/// Loads and decodes on a thread of its own; the newest request replaces the others. Main thread;
/// destruction waits for a load that is running.
class DetailLoader final : public QObject {
    Q_OBJECT

public:
    /// All of them must outlive the loader.
    struct Services {
        const ImageCodec& codec;
        const RichTextReader& documents;
        ClipBytesLoader bytes;
    };

    explicit DetailLoader(Services services, QObject* parent = nullptr);
    ~DetailLoader() override;

    void load(const DetailRequest& request);
    /// What is under way is dropped.
    void cancel() { ++*m_newest; }

Q_SIGNALS:
    void loaded(const DetailContent& content);

private:
    [[nodiscard]] static DetailContent read(const Services& services, const DetailRequest& request);

    Services m_services;
    std::shared_ptr<std::atomic<quint64>> m_newest;
    QThreadPool m_pool;
};

}  // namespace quillo
