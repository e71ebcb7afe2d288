// catalogue/sqlite/sqlitefile.h - checks, before SQLite opens it, whether a file can be a
// catalogue. It only reads: it does not write to the file or to its log. No state.
// Source: the database file format and write-ahead log format as published with SQLite.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace catalogue
{

// Which file is at a path: another identity means that the file was replaced.
struct DatabaseIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    bool operator==(const DatabaseIdentity &) const = default;
};

inline constexpr int kHeaderBytes = 100; // of the first page

// Checks the file at `path`.
// Returns: its identity.
// Errors:  ProviderFailure: kGenericFailure when it is absent, no plain file, empty, without a
//          sound header, or shorter than its header says with the missing pages not in the log
//          beside it; kStatementFailure when it cannot be read.
DatabaseIdentity InspectCatalogueFile(const std::string &path);

// The identity alone, for a file that is open already. Errors: as above, for an absent file.
DatabaseIdentity IdentityOf(const std::string &path);

// Whether the first 100 bytes are those of a database: the magic words, a page size, UTF-8.
bool IsSoundHeader(std::string_view header);

// Whether a file of `sizeBytes` bytes with this header lacks pages that are not in its log either.
bool IsCutShort(std::string_view header, std::int64_t sizeBytes, const std::string &path);

} // namespace catalogue
