// SPDX-License-Identifier: MIT
#include "model/pinboard.h"

#include "model/attribute_access.h"

namespace quillo {

using enum PinboardAttribute;

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
void Pinboard::setTitle(std::optional<QString> title) {
    setOptionalValue(*this, Title, std::move(title));
}

}  // namespace quillo
