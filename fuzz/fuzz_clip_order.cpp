// SPDX-License-Identifier: MIT
// The order document of a group: any bytes give an order, and that order is written and read.
#include "fuzz_support.h"
#include "model/clip_order.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillo::fuzzing;
    const QByteArray bytes = inputBytes(data, size);
    const auto entries = quillo::decodeClipOrder(bytes);
    require(entries.size() * qsizetype{36} <= bytes.size());
    const QByteArray written = quillo::encodeClipOrder(entries);
    require(written.startsWith('[') && !written.contains(' ') && !written.contains('\n'));
    require(quillo::decodeClipOrder(written) == entries);
    return 0;
}
