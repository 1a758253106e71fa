// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <functional>
#include <memory>
#include <thread>

#include "base/result.h"
#include "platform/pasteboard.h"
#include "platform/pasteboard_formats.h"
#include "platform/x11/pasteboard/pasteboard_limits.h"

namespace quillo::x11 {

struct PasteboardLink;

/// The pasteboard on X11: the CLIPBOARD selection (ICCCM 2), watched through XFixes on a
/// connection and a thread of its own, so that a program that does not answer stalls nobody.
class X11Pasteboard final : public Pasteboard {
public:
    struct Options {
        QByteArray displayName;  ///< DISPLAY where it is empty.
        PasteboardLimits limits;
        /// Called once, on the pasteboard's own thread, when the X server is gone. Every read is
        /// absent and nothing changes from then on.
        std::function<void()> connectionLost;
    };

    /// Connects and starts to watch: every copy made after it returns is seen. Unsupported where
    /// the server lacks XFixes. The converters must outlive the pasteboard.
    [[nodiscard]] static Result<std::unique_ptr<X11Pasteboard>> create(
        const PasteboardConverters& converters, const QByteArray& displayName = {});
    [[nodiscard]] static Result<std::unique_ptr<X11Pasteboard>> create(
        const PasteboardConverters& converters, Options options);

    /// Ends every read that waits. What is offered at that moment is handed to the desktop's
    /// clipboard manager if another program plays it; that takes up to a second.
    ~X11Pasteboard() override;

    [[nodiscard]] qint64 changeCount() const override;
    [[nodiscard]] std::unique_ptr<PasteboardSource> open() override;
    void write(PasteboardContents contents) override;
    void writePrimary(PasteboardContents contents) override;
    void endReads() override;
    void settle(qint64 changeCount, std::optional<KeptContents> contents) override;
    void setListener(std::function<void(PasteboardChange)> listener) override;

private:
    X11Pasteboard(std::shared_ptr<PasteboardLink> link, const PasteboardConverters& converters);

    std::shared_ptr<PasteboardLink> m_link;
    const PasteboardConverters m_converters;
    std::thread m_thread;
};

}  // namespace quillo::x11
