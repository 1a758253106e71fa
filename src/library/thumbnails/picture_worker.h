// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QThreadPool>
#include <mutex>
#include <optional>

#include "library/thumbnails/picture_maker.h"

namespace quillo {

/// Makes pictures one after another on a thread of its own, which ends when it has had nothing to
/// do for a while. Main thread; destruction drops what waits and waits for what runs.
class PictureWorker final : public QObject {
    Q_OBJECT

public:
    /// What the maker uses must outlive the worker.
    explicit PictureWorker(PictureMaker maker, QObject* parent = nullptr);
    ~PictureWorker() override;

    /// The newest request comes first, until setOrder() says otherwise. One for the same clip and
    /// place that is under way is left as it is; another place replaces it.
    void request(PictureRequest request);

    /// Whether a picture of that clip is under way.
    [[nodiscard]] bool isWanted(const QUuid& clip) const { return m_wanted.contains(clip); }

    /// Brings what waits into that order and drops what is not in it; what runs is finished.
    void setOrder(const QList<QUuid>& clips);

    /// Nothing more comes for the clip from what was asked so far, even if it is finished already.
    void cancel(const QUuid& clip);
    void cancelAll();

Q_SIGNALS:
    void made(const PictureResult& result);

private:
    struct Wanted {
        quint64 serial = 0;
        QSize pixels;
    };

    void run();
    [[nodiscard]] std::optional<PictureRequest> takeNext();
    void receive(const PictureResult& result);

    PictureMaker m_maker;
    QHash<QUuid, Wanted> m_wanted;
    quint64 m_serial = 0;
    std::mutex m_mutex;  ///< Guards the two below.
    QList<PictureRequest> m_waiting;
    bool m_isRunning = false;
    QThreadPool m_pool;
};

}  // namespace quillo
