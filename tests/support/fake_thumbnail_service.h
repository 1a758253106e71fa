// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QSize>
#include <utility>

#include "platform/thumbnail_service.h"

namespace quillo::testing {

/// A thumbnail service whose answers the test gives.
class FakeThumbnailService final : public ThumbnailService {
public:
    struct Request {
        QUrl file;
        int sidePx = 0;
        Callback callback;
    };

    [[nodiscard]] Ticket request(const QUrl& file, int sidePx, Callback callback) override {
        ++requestCount;
        pending.insert(++m_latest, {file, sidePx, std::move(callback)});
        return m_latest;
    }

    void cancel(Ticket ticket) override { pending.remove(ticket); }

    /// Answers everything that is asked with the same image; a null one is none.
    void answerAll(const QImage& image) {
        for (const Request& request : std::exchange(pending, {})) {
            request.callback(image);
        }
    }

    QHash<Ticket, Request> pending;
    int requestCount = 0;

private:
    Ticket m_latest = 0;
};

}  // namespace quillo::testing
