// SPDX-License-Identifier: MIT
#include "model/store/page_scrubber.h"

#include <algorithm>
#include <vector>

namespace quillo {
namespace {

constexpr size_t kFileHeaderSize = 100;
constexpr int kSmallestPage = 512;

enum PageFlag : unsigned char {
    kInteriorIndex = 2,
    kInteriorTable = 5,
    kLeafIndex = 10,
    kLeafTable = 13,
};

size_t bigEndian16(std::span<const unsigned char> page, size_t at) {
    return size_t(page[at]) << 8 | page[at + 1];
}

// The bytes between the last cell pointer and the first cell; empty for any other page. The first
// byte tells: an overflow or free page begins with a page number below 2^24, so with zero.
std::span<unsigned char> unallocated(std::span<unsigned char> page, bool isFirstPage) {
    const size_t header = isFirstPage ? kFileHeaderSize : 0;
    size_t headerSize = 0;
    switch (page[header]) {
        case kInteriorIndex:
        case kInteriorTable:
            headerSize = 12;
            break;
        case kLeafIndex:
        case kLeafTable:
            headerSize = 8;
            break;
        default:
            return {};
    }
    const size_t begin = header + headerSize + 2 * bigEndian16(page, header + 3);
    const size_t end = bigEndian16(page, header + 5);
    return begin < end && end <= page.size() ? page.subspan(begin, end - begin)
                                             : std::span<unsigned char>{};
}

}  // namespace

bool clearUnallocatedBytes(std::span<unsigned char> page, bool isFirstPage) {
    const std::span<unsigned char> gap = unallocated(page, isFirstPage);
    if (std::ranges::all_of(gap, [](unsigned char byte) { return byte == 0; })) {
        return false;
    }
    std::ranges::fill(gap, static_cast<unsigned char>(0));
    return true;
}

void PageScrubber::attach(sqlite3* connection) {
    sqlite3_file* file = nullptr;
    if (sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER,
                             static_cast<void*>(&file)) != SQLITE_OK ||
        file == nullptr || file->pMethods == nullptr) {
        return;
    }
    static_cast<sqlite3_io_methods&>(m_methods) = *file->pMethods;
    m_methods.original = file->pMethods;
    m_methods.xWrite = &PageScrubber::write;
    file->pMethods = &m_methods;
}

int PageScrubber::write(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 offset) {
    const auto* methods = static_cast<const Methods*>(file->pMethods);
    if (size < kSmallestPage) {
        return methods->original->xWrite(file, bytes, size, offset);
    }
    thread_local std::vector<unsigned char> page;
    const auto* begin = static_cast<const unsigned char*>(bytes);
    page.assign(begin, begin + size);
    clearUnallocatedBytes(page, offset == 0);
    return methods->original->xWrite(file, page.data(), size, offset);
}

}  // namespace quillo
