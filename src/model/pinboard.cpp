// SPDX-License-Identifier: MIT
#include "model/pinboard.h"

#include "model/attribute_access.h"
#include "model/group_palette.h"

namespace quillo {

using enum PinboardAttribute;

std::shared_ptr<Pinboard> Pinboard::create(ObjectContext& context, const QString& title,
                                           QRandomGenerator& random) {
    auto group = context.insert<Pinboard>();
    group->setTitle(title);
    group->setColorHex(randomGroupColor(random));
    return group;
}

std::optional<QByteArray> Pinboard::clipOrder() const {
    return optionalValue<QByteArray>(*this, ClipOrder);
}
std::optional<QString> Pinboard::colorHex() const {
    return optionalValue<QString>(*this, ColorHex);
}
qint64 Pinboard::sortIndex() const {
    return integerValue(*this, SortIndex);
}
std::optional<QString> Pinboard::title() const {
    return optionalValue<QString>(*this, Title);
}

void Pinboard::setClipOrder(std::optional<QByteArray> document) {
    setOptionalValue(*this, ClipOrder, std::move(document));
}
void Pinboard::setColorHex(std::optional<QString> color) {
    setOptionalValue(*this, ColorHex, std::move(color));
}
void Pinboard::setSortIndex(qint64 index) {
    setValue(std::to_underlying(SortIndex), index);
}

const ClipOrderEntries& Pinboard::clipOrderEntries() const {
    const QByteArray bytes = clipOrder().value_or(QByteArray());
    if (bytes != m_decodedBytes) {
        m_decodedOrder = decodeClipOrder(bytes);
        m_decodedBytes = bytes;
    }
    return m_decodedOrder;
}

void Pinboard::setClipOrderEntries(const ClipOrderEntries& order) {
    m_decodedOrder = order;
    m_decodedBytes = encodeClipOrder(order);
    setClipOrder(m_decodedBytes);
}
void Pinboard::setTitle(std::optional<QString> title) {
    setOptionalValue(*this, Title, std::move(title));
}

}  // namespace quillo
