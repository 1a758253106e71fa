// SPDX-License-Identifier: MIT
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillo::fuzzing;
    startQt();
    const QByteArray bytes = inputBytes(data, size);
    if (const auto document = quillo::DocumentReader().readHtml(bytes); document.has_value()) {
        requireSound(*document);
        requireSurvivesHtml(*document);
    }
    return 0;
}
