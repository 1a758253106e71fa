// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimeLine>

namespace quillo {

/// A scroll position on its way to another, fast at first. Main thread.
///
/// A time line, as everything that moves here, because each has a timer of its own. The frame timer
/// that all QAbstractAnimation share can be left running for ever: by one that is stopped after
/// another ended and before the event loop came round to start it.
class Glide final : public QObject {
    Q_OBJECT

public:
    explicit Glide(QObject* parent = nullptr);

    /// Starts on the way, with a first step at once; pixels are added to where an earlier glide was
    /// going. The place that results is kept within least and most.
    void start(int position, int pixels, int least, int most);
    void stop();
    /// What is left of the way, in pixels; 0 when it rests.
    [[nodiscard]] int left(int position) const;

Q_SIGNALS:
    void moved(int position);

private:
    QTimeLine m_time;
    int m_from = 0;
    int m_target = 0;
};

}  // namespace quillo
