// SPDX-License-Identifier: MIT
// The reading of a hostile clipboard: names and replies are taken from the input.
#include <QSet>

#include "fuzz_support.h"
#include "platform/pasteboard_decoding.h"
#include "platform/pasteboard_formats.h"
#include "platform/pasteboard_reading.h"

namespace {

using namespace quillo::fuzzing;
using quillo::PasteboardType;
using quillo::RawReply;

constexpr const char* kSecretHint = "x-kde-passwordManagerHint";

/// What the source was asked for; outlives the reading.
struct Asked {
    QSet<QByteArray> targets;
    bool isRepeated = false;
};

/// Cuts the input into names and replies: a byte chooses a known name or says the length of an
/// invented one, two more the length of the reply.
class FuzzedSource final : public quillo::PasteboardSource {
public:
    FuzzedSource(QByteArray input, Asked& asked) : m_input(std::move(input)), m_asked(asked) {
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
    [[nodiscard]] std::optional<RawReply> fetch(const QByteArray& target) override {
        m_asked.isRepeated = m_asked.isRepeated || m_asked.targets.contains(target);
        m_asked.targets.insert(target);
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
            "image/png",           "image/bmp",      kSecretHint};
        const qsizetype choice = number();
        return choice < known.size() ? known.at(choice) : take(choice - known.size());
    }

    QByteArray m_input;
    Asked& m_asked;
    QList<QByteArray> m_targets;
    QHash<QByteArray, RawReply> m_replies;
};

void requireLoggable(const QStringList& names) {
    for (const QString& name : names) {
        require(name.size() <= 100);
        require(std::ranges::all_of(name, [](QChar c) { return c >= u' ' && c <= u'~'; }));
    }
}

void requireSoundAnswers(quillo::PasteboardReading& reading) {
    for (const auto type : {PasteboardType::Marker, PasteboardType::Url, PasteboardType::UrlName,
                            PasteboardType::String}) {
        const auto text = reading.string(type);
        require(!text || text->isValidUtf16());
    }
    for (const auto type : {PasteboardType::Png, PasteboardType::Rtf, PasteboardType::Html}) {
        const auto bytes = reading.data(type);
        require(!bytes || type != PasteboardType::Html || bytes->isValidUtf8());
    }
    const QList<QUrl> urls = reading.fileUrls();
    for (const QUrl& url : urls) {
        require(url.isValid() && url.isLocalFile());
    }
    (void)reading.anyImage();
}

/// A picture is taken as it is: decoding belongs to another fuzzer.
class NoCodec final : public quillo::ImageCodec {
public:
    template <typename T>
    static quillo::Result<T> none() {
        return quillo::failure(quillo::ErrorKind::Unsupported, QString());
    }
    [[nodiscard]] quillo::Result<QImage> decode(const QByteArray&) const override {
        return none<QImage>();
    }
    [[nodiscard]] quillo::Result<QSize> size(const QByteArray&) const override {
        return none<QSize>();
    }
    [[nodiscard]] quillo::Result<QImage> decodeScaled(const QByteArray&, QSize) const override {
        return none<QImage>();
    }
    [[nodiscard]] quillo::Result<QByteArray> encodePng(const QImage&) const override {
        return none<QByteArray>();
    }
    [[nodiscard]] quillo::Result<QByteArray> encodeJpeg(const QImage&, double) const override {
        return none<QByteArray>();
    }
    [[nodiscard]] QString mimeType(const QByteArray&) const override { return {}; }
};

/// What is kept is offered again under every name, the marker first, byte for byte.
void requireKeptIsOffered(const quillo::KeptContents& kept) {
    const quillo::DocumentReader documents;
    const NoCodec images;
    const auto offers = quillo::offersForKept(kept, {documents, images});
    require(offers.constFirst().target == quillo::kMarkerTarget);
    QHash<QByteArray, RawReply> given;
    for (const auto& offer : offers) {
        require(!given.contains(offer.target));
        given.insert(offer.target, offer.reply->get().value_or(RawReply()));
    }
    for (const auto& [target, reply] : kept.representations) {
        require(target == quillo::kMarkerTarget || given.value(target).bytes == reply.bytes);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    startQt();
    Asked asked;
    quillo::PasteboardReading reading(
        std::make_unique<FuzzedSource>(inputBytes(data, size), asked));
    requireLoggable(reading.types());
    requireSoundAnswers(reading);
    require(!asked.isRepeated);
    if (reading.isConcealed()) {
        require((asked.targets - QSet<QByteArray>{kSecretHint, quillo::kMarkerTarget}).isEmpty());
    }
    requireKeptIsOffered(reading.kept());
    return 0;
}
