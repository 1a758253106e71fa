// SPDX-License-Identifier: MIT
// The feed that says which versions there are; the first line is the running version.
#include "app/updates/appcast.h"
#include "app/updates/update_file.h"
#include "app/updates/version_order.h"
#include "fuzz_support.h"

namespace {

using namespace quillo;
using namespace quillo::fuzzing;

void requireSoundItem(const AppcastItem& item) {
    for (const QString& version : {item.version, item.displayVersion}) {
        require(!version.isEmpty() && version.size() <= 64);
        require(
            std::ranges::all_of(version, [](QChar c) { return c >= u' ' && c.unicode() < 0x7f; }));
    }
    require(item.signature.isEmpty() || item.signature.size() == 64);
    require(!isComplete(item) || (item.url.scheme() == QLatin1StringView("https") &&
                                  item.sizeBytes > 0 && item.sizeBytes <= kLargestUpdateBytes));
    const QString name = safeFileName(item);
    require(!name.isEmpty() && !name.contains(u'/') && !name.startsWith(u'.'));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes = inputBytes(data, size);
    const qsizetype lineEnd = std::max<qsizetype>(bytes.indexOf('\n'), 0);
    const QString running = QString::fromUtf8(bytes.first(lineEnd));
    const auto items = parseAppcast(bytes.sliced(lineEnd).trimmed(), running);
    if (!items) {
        return 0;
    }
    const auto newest = newestUpdate(*items, running);
    for (const AppcastItem& item : *items) {
        requireSoundItem(item);
        const auto order = compareVersions(item.version, running);
        require((order < 0) == (compareVersions(running, item.version) > 0));
        require(order <= 0 || newest.has_value());
        require(!newest || compareVersions(item.version, newest->version) <= 0);
    }
    return 0;
}
