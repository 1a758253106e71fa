// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>
#include <deque>
#include <functional>

#include "base/result.h"
#include "model/store/object_context.h"

namespace quillo {

/// Work that waits in memory, in order, while another process holds the store locked. Used on the
/// store's thread; who owns it decides when to try again.
class HeldWork final {
public:
    /// Answers Busy to be done again; any other failure is its own to report.
    using Work = std::move_only_function<Result<void>(ObjectContext&)>;

    struct Bounds {
        size_t pieces = 1'000;
        qint64 bytes = 256 * 1024 * 1024;
    };

    HeldWork() = default;
    explicit HeldWork(Bounds bounds) : m_bounds(bounds) {}
    /// Says in the log what is lost with it.
    ~HeldWork();
    HeldWork(const HeldWork&) = delete;
    HeldWork& operator=(const HeldWork&) = delete;

    /// Does the work, or lines it up behind what waits. A piece that does not fit any more is
    /// dropped with a line in the log; a first one always fits.
    void add(Work work, qint64 sizeBytes, ObjectContext& context);
    /// Does what waits, up to the first piece that is still held up.
    void tryAgain(ObjectContext& context);

    [[nodiscard]] bool isEmpty() const { return m_pieces.empty(); }

private:
    struct Piece {
        Work work;
        qint64 sizeBytes;
    };

    void hold(Piece piece);

    Bounds m_bounds;
    std::deque<Piece> m_pieces;
    qint64 m_bytes = 0;
};

}  // namespace quillo
