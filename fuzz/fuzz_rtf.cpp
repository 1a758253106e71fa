// SPDX-License-Identifier: MIT
#include "fuzz_support.h"

// Any bytes behind the document's mark; what is read must be sound and survive the way to HTML.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillo::fuzzing;
    startQt();
    const quillo::DocumentReader reader;
    const QByteArray bytes = inputBytes(data, size);
    const auto document = reader.readRtf(bytes.startsWith("{\\rtf") ? bytes : "{\\rtf1 " + bytes);
    require(document.has_value());
    requireSound(*document);
    requireSurvivesHtml(*document);
    return 0;
}
