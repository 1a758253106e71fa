// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/image_codec.h"
#include "platform/pasteboard.h"
#include "platform/rich_text.h"

namespace quillo {

/// A value that is made when it is first asked for, once, and then kept. Thread-safe.
template <typename T>
class Lazy final {
public:
    explicit Lazy(std::function<T()> make) : m_make(std::move(make)) {}

    /// True when get() costs nothing any more.
    [[nodiscard]] bool isReady() const { return m_ready; }

    /// Makes the value on the first call; calls from other threads wait for it.
    [[nodiscard]] const T& get() const {
        std::call_once(m_once, [this] {
            m_value = m_make();
            m_ready = true;
        });
        return m_value;
    }

private:
    std::function<T()> m_make;
    mutable std::once_flag m_once;
    mutable std::atomic<bool> m_ready = false;
    mutable T m_value{};
};

/// What the mapping needs of the layers beside it. Both must outlive every offer made with them.
struct PasteboardConverters {
    const RichTextReader& richText;
    const ImageCodec& images;
};

/// One target that is offered to other programs. The reply is none where the contents cannot be
/// given in this form; its type may differ from the target (ICCCM 2.6.2).
struct PasteboardOffer {
    QByteArray target;
    std::shared_ptr<const Lazy<std::optional<RawReply>>> reply;
};

using PasteboardOffers = QList<PasteboardOffer>;

/// What is offered for contents, the marker first, in the order of preference. Nothing is
/// converted before it is asked for. An image that is none is not offered.
[[nodiscard]] PasteboardOffers offersFor(const PasteboardContents& contents,
                                         const PasteboardConverters& converters);

/// The five text targets of what is offered for contents, without the marker; none where the
/// contents have no text.
[[nodiscard]] PasteboardOffers offersForTextOf(const PasteboardContents& contents,
                                               const PasteboardConverters& converters);

/// What is offered in place of a program that quit: the marker, then every representation byte
/// for byte under its own target, then the names under which other programs look for the same.
[[nodiscard]] PasteboardOffers offersForKept(const KeptContents& kept,
                                             const PasteboardConverters& converters);

}  // namespace quillo
