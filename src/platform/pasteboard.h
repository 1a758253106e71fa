// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>
#include <functional>
#include <memory>
#include <optional>

namespace quillo {

/// The answer of the program that owns the pasteboard to a request for one target.
struct RawReply {
    QByteArray type;   ///< The reply's own type name, which may differ from the target asked for.
    QByteArray bytes;  ///< As they came, trailing NULs included.
};

/// One representation as it was read, to be offered again byte for byte.
struct KeptRepresentation {
    QByteArray target;
    RawReply reply;
};

/// What was read of one copy and may be offered again when its program quits.
struct KeptContents {
    QList<KeptRepresentation> representations;
};

/// Raw access to one state of the pasteboard, bounded in time and size: 64 MiB a representation,
/// 10 s to its first byte, 5 s without progress, 20 s in all; whatever exceeds a bound is absent.
/// When a newer copy arrives every further answer is absent at once.
/// Blocking; never to be used on the main thread. One thread at a time.
class PasteboardSource {
public:
    virtual ~PasteboardSource() = default;

    /// The change count that this source belongs to.
    [[nodiscard]] virtual qint64 changeCount() const = 0;

    /// The target names offered, in the owner's order. Asked for once and kept. Empty when the
    /// pasteboard is empty or its owner does not answer.
    [[nodiscard]] virtual QList<QByteArray> targets() = 0;

    /// The bytes of one offered target; none when it is refused, late, too large or superseded.
    [[nodiscard]] virtual std::optional<RawReply> fetch(const QByteArray& target) = 0;

    /// True when an answer was absent because a newer copy came: what was read is incomplete.
    [[nodiscard]] virtual bool wasSuperseded() const = 0;
};

/// What is to be written in one go. The marker always comes first, so that the capture loop
/// knows the change as our own. Members that are absent are not offered.
struct PasteboardContents {
    std::optional<QString> text{};
    std::optional<QByteArray> rtf{};    ///< Offered under the three names of RTF.
    std::optional<QByteArray> html{};   ///< UTF-8.
    std::optional<QByteArray> image{};  ///< Offered under its true type, and as PNG.
    QList<QUrl> fileUrls{};
};

enum class PasteboardChange {
    Changed,      ///< The change count moved.
    LeavingSoon,  ///< The owner is about to quit and asks for its contents to be saved.
};

/// The desktop's general pasteboard: the CLIPBOARD selection. All members are thread-safe, and
/// but for the reads through open() they return at once.
/// See ICCCM 2.6 and the freedesktop ClipboardManager document.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Moves whenever any program, this one included, writes or clears the pasteboard.
    [[nodiscard]] virtual qint64 changeCount() const = 0;

    /// Opens the present contents. Sends nothing before the first question.
    [[nodiscard]] virtual std::unique_ptr<PasteboardSource> open() = 0;

    /// Replaces the contents. The bytes are produced when another program asks for them.
    virtual void write(PasteboardContents contents) = 0;

    /// Offers the text of the contents as PRIMARY, for terminals whose paste key reads that one:
    /// the same text that write() offers. Contents without one leave nothing there to paste.
    virtual void writePrimary(PasteboardContents contents) = 0;

    /// Ends every running read at once; what it had not got is absent.
    virtual void endReads() = 0;

    /// Says what becomes of a change: kept contents are offered again, under the marker, when
    /// their program quits without clearing them; nothing is kept where contents is absent.
    /// Also answers a program that waits for its contents to be saved.
    virtual void settle(qint64 changeCount, std::optional<KeptContents> contents) = 0;

    /// The one listener; called on the pasteboard's own thread and must return at once.
    /// An empty function ends it; after the call returns the old listener is not called again.
    virtual void setListener(std::function<void(PasteboardChange)> listener) = 0;
};

}  // namespace quillo
