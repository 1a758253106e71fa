// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <span>

namespace quillo {

/// Clears the bytes of a database page that belong to no cell, where rows that were moved to
/// another page leave a copy behind. Returns whether there was anything to clear. Pages that are
/// no B-tree pages are left alone (https://sqlite.org/fileformat2.html#b_tree_pages).
bool clearUnallocatedBytes(std::span<unsigned char> page, bool isFirstPage);

/// Sees every page that a connection writes to its database file and clears its unallocated
/// bytes. SQLite's secure_delete zeroes what is deleted, but not the copies that balancing a
/// B-tree leaves between a page's pointers and its cells; one deleted row in about a thousand
/// could be read from there. Must outlive the connection.
class PageScrubber final {
public:
    PageScrubber() = default;
    PageScrubber(const PageScrubber&) = delete;
    PageScrubber& operator=(const PageScrubber&) = delete;

    /// Call once, before the first write; a connection without a file is left as it is.
    void attach(sqlite3* connection);

private:
    struct Methods : sqlite3_io_methods {
        const sqlite3_io_methods* original;
    };

    static int write(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 offset);

    Methods m_methods{};
};

}  // namespace quillo
