// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QUrl>
#include <functional>

namespace quillo {

/// Small pictures of files, as the desktop's file manager shows them. Requests and callbacks belong
/// to the thread that made the service; nothing blocks it.
class ThumbnailService {
public:
    /// Names a request; never 0.
    using Ticket = quint64;
    /// A null image when there is no thumbnail: no such file, a type that nobody draws, no service.
    using Callback = std::function<void(const QImage&)>;

    virtual ~ThumbnailService() = default;

    /// Asks for a picture of a local file whose larger side is about sidePx device pixels; it may
    /// be smaller or larger. The callback runs once, later, from the event loop, unless the request
    /// is cancelled.
    [[nodiscard]] virtual Ticket request(const QUrl& file, int sidePx, Callback callback) = 0;

    /// The callback will not run. A ticket that is answered or unknown is ignored.
    virtual void cancel(Ticket ticket) = 0;
};

}  // namespace quillo
