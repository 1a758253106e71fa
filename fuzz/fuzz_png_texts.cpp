// SPDX-License-Identifier: MIT
// A thumbnail that any program may have put into the shared cache: what it says of its file.
#include "fuzz_support.h"
#include "platform/freedesktop/png_texts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using quillo::fuzzing::require;
    const QByteArray bytes = quillo::fuzzing::inputBytes(data, size);
    const QHash<QByteArray, QByteArray> texts = quillo::pngTexts(bytes);
    require(texts.size() <= 32);
    for (const auto& [keyword, text] : texts.asKeyValueRange()) {
        require(!keyword.isEmpty() && !keyword.contains('\0'));
        require(bytes.contains(keyword));
        require(text.size() <= 64 * 1024);
    }
    // What is cut off says nothing about what comes before it.
    const QHash<QByteArray, QByteArray> fewer = quillo::pngTexts(bytes.chopped(bytes.size() / 2));
    for (const QByteArray& keyword : fewer.keys()) {
        require(texts.contains(keyword));
    }
    return 0;
}
