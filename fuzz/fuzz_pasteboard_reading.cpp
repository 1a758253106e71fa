// SPDX-License-Identifier: MIT
// The reading of a hostile clipboard: names and replies are taken from the input.
#include <QByteArray>
#include <cstddef>
#include <cstdint>

#include "platform/pasteboard_reading.h"

namespace {

/// Cuts the input into names and replies: two bytes choose a known name or say the length of an
/// invented one, two more the length of the reply.
class FuzzedSource final : public quillo::PasteboardSource {
public:
    FuzzedSource(const std::uint8_t* data, std::size_t size)
        : m_input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)) {
        while (!m_input.isEmpty() && m_replies.size() < 32) {
            const QByteArray target = name();
            const QByteArray type = name();
            const QByteArray bytes = take(number() * 256 + number());
            m_targets.append(target);
            m_replies.insert(target, {type, bytes});
        }
    }

    [[nodiscard]] qint64 changeCount() const override { return 1; }
    [[nodiscard]] QList<QByteArray> targets() override { return m_targets; }
    [[nodiscard]] std::optional<quillo::RawReply> fetch(const QByteArray& target) override {
        const auto reply = m_replies.constFind(target);
        return reply != m_replies.cend() ? std::optional(*reply) : std::nullopt;
    }
    [[nodiscard]] bool wasSuperseded() const override { return false; }

private:
    QByteArray take(qsizetype size) {
        const QByteArray bytes = m_input.left(size);
        m_input.remove(0, bytes.size());
        return bytes;
    }

    qsizetype number() {
        const QByteArray byte = take(1);
        return byte.isEmpty() ? 0 : static_cast<unsigned char>(byte.at(0));
    }

    QByteArray name() {
        static const QList<QByteArray> known{
            quillo::kMarkerTarget, "UTF8_STRING",    "text/plain;charset=utf-8",
            "text/plain",          "STRING",         "COMPOUND_TEXT",
            "text/html",           "text/rtf",       "text/plain;charset=utf-16",
            "text/uri-list",       "text/x-moz-url", "x-special/gnome-copied-files",
            "image/png",           "image/bmp",      "x-kde-passwordManagerHint"};
        const qsizetype choice = number();
        return choice < known.size() ? known.at(choice) : take(choice - known.size());
    }

    QByteArray m_input;
    QList<QByteArray> m_targets;
    QHash<QByteArray, quillo::RawReply> m_replies;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using quillo::PasteboardType;
    quillo::PasteboardReading reading(std::make_unique<FuzzedSource>(data, size));
    (void)reading.types();
    for (const auto type : {PasteboardType::Marker, PasteboardType::Url, PasteboardType::UrlName,
                            PasteboardType::String}) {
        (void)reading.string(type);
    }
    for (const auto type : {PasteboardType::Png, PasteboardType::Rtf, PasteboardType::Html}) {
        (void)reading.data(type);
    }
    (void)reading.fileUrls();
    (void)reading.anyImage();
    (void)reading.kept();
    return 0;
}
