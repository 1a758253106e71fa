// SPDX-License-Identifier: MIT
#include "paste/clip_mime_data.h"

#include <algorithm>

namespace quillo {
namespace {

class OfferedMimeData final : public QMimeData {
public:
    explicit OfferedMimeData(PasteboardOffers offers) : m_offers(std::move(offers)) {}

    [[nodiscard]] QStringList formats() const override {
        QStringList names = QMimeData::formats();
        for (const PasteboardOffer& offer : m_offers) {
            names.append(QString::fromLatin1(offer.target));
        }
        return names;
    }

    [[nodiscard]] bool hasFormat(const QString& name) const override {
        return formats().contains(name);
    }

protected:
    [[nodiscard]] QVariant retrieveData(const QString& name, QMetaType type) const override {
        const QByteArray target = name.toLatin1();
        const auto offer = std::ranges::find(m_offers, target, &PasteboardOffer::target);
        if (offer == m_offers.end()) {
            return QMimeData::retrieveData(name, type);
        }
        const std::optional<RawReply>& reply = offer->reply->get();
        return reply ? QVariant(reply->bytes) : QVariant();
    }

private:
    PasteboardOffers m_offers;
};

// The marker and the names of the selections (UTF8_STRING and so on) mean nothing in a drag.
bool isMimeType(const QByteArray& target) {
    return target.contains('/');
}

}  // namespace

std::unique_ptr<QMimeData> mimeDataFor(const PasteboardContents& contents,
                                       const PasteboardConverters& converters) {
    PasteboardOffers offers = offersFor(contents, converters);
    offers.removeIf([](const PasteboardOffer& offer) { return !isMimeType(offer.target); });
    return std::make_unique<OfferedMimeData>(std::move(offers));
}

}  // namespace quillo
