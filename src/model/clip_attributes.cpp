// SPDX-License-Identifier: MIT
// The stored attributes of a clip, one by one.
#include "model/attribute_access.h"
#include "model/clip.h"

namespace quillo {

using enum ClipAttribute;

std::optional<QByteArray> Clip::attributed() const {
    return optionalValue<QByteArray>(*this, Attributed);
}
std::optional<Timestamp> Clip::createdAt() const {
    return optionalValue<Timestamp>(*this, CreatedAt);
}
std::optional<QString> Clip::fileName() const {
    return optionalValue<QString>(*this, FileName);
}
std::optional<QByteArray> Clip::fileBookmark() const {
    return optionalValue<QByteArray>(*this, FileBookmark);
}
qint64 Clip::fileSize() const {
    return integerValue(*this, FileSize);
}
std::optional<QString> Clip::fileUti() const {
    return optionalValue<QString>(*this, FileUti);
}
std::optional<QByteArray> Clip::contentHash() const {
    return optionalValue<QByteArray>(*this, ContentHash);
}
std::optional<QByteArray> Clip::imageData() const {
    return optionalValue<QByteArray>(*this, ImageData);
}
std::optional<QByteArray> Clip::linkImageData() const {
    return optionalValue<QByteArray>(*this, LinkImageData);
}
std::optional<QString> Clip::linkTitle() const {
    return optionalValue<QString>(*this, LinkTitle);
}
std::optional<Timestamp> Clip::modifiedAt() const {
    return optionalValue<Timestamp>(*this, ModifiedAt);
}
std::optional<QString> Clip::plaintext() const {
    return optionalValue<QString>(*this, Plaintext);
}
std::optional<QString> Clip::sourceBundleId() const {
    return optionalValue<QString>(*this, SourceBundleId);
}
std::optional<QString> Clip::urlHost() const {
    return optionalValue<QString>(*this, UrlHost);
}
std::optional<QString> Clip::urlString() const {
    return optionalValue<QString>(*this, UrlString);
}
bool Clip::isPinned() const {
    return integerValue(*this, IsPinned) != 0;
}
qint64 Clip::rawType() const {
    return integerValue(*this, Type);
}
std::optional<ClipType> Clip::type() const {
    return clipTypeFromRaw(rawType());
}

void Clip::setAttributed(std::optional<QByteArray> bytes) {
    setOptionalValue(*this, Attributed, std::move(bytes));
}
void Clip::setCreatedAt(std::optional<Timestamp> moment) {
    setOptionalValue(*this, CreatedAt, moment);
}
void Clip::setFileName(std::optional<QString> name) {
    setOptionalValue(*this, FileName, std::move(name));
}
void Clip::setFileBookmark(std::optional<QByteArray> bookmark) {
    setOptionalValue(*this, FileBookmark, std::move(bookmark));
}
void Clip::setFileSize(qint64 bytes) {
    setValue(std::to_underlying(FileSize), bytes);
}
void Clip::setFileUti(std::optional<QString> identifier) {
    setOptionalValue(*this, FileUti, std::move(identifier));
}
void Clip::setContentHash(std::optional<QByteArray> digest) {
    setOptionalValue(*this, ContentHash, std::move(digest));
}
void Clip::setImageData(std::optional<QByteArray> bytes) {
    setOptionalValue(*this, ImageData, std::move(bytes));
}
void Clip::setLinkImageData(std::optional<QByteArray> bytes) {
    setOptionalValue(*this, LinkImageData, std::move(bytes));
}
void Clip::setLinkTitle(std::optional<QString> title) {
    setOptionalValue(*this, LinkTitle, std::move(title));
}
void Clip::setModifiedAt(std::optional<Timestamp> moment) {
    setOptionalValue(*this, ModifiedAt, moment);
}
void Clip::setPlaintext(std::optional<QString> text) {
    setOptionalValue(*this, Plaintext, std::move(text));
}
void Clip::setSourceBundleId(std::optional<QString> identifier) {
    setOptionalValue(*this, SourceBundleId, std::move(identifier));
}
void Clip::setUrlHost(std::optional<QString> host) {
    setOptionalValue(*this, UrlHost, std::move(host));
}
void Clip::setUrlString(std::optional<QString> url) {
    setOptionalValue(*this, UrlString, std::move(url));
}
void Clip::setPinned(bool pinned) {
    setValue(std::to_underlying(IsPinned), qint64{pinned});
}
void Clip::setRawType(qint64 raw) {
    setValue(std::to_underlying(Type), raw);
}
void Clip::setType(ClipType type) {
    setRawType(std::to_underlying(type));
}

}  // namespace quillo
