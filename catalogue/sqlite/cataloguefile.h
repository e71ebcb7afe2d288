// catalogue/sqlite/cataloguefile.h - a catalogue file that the process uses: its connections, which
// stay open between statements, its place in the queue of writers, and the snapshots of its lazy
// results.
#pragma once

#include "catalogue/rows/foldedtexts.h"
#include "catalogue/rows/lazyrows.h"
#include "catalogue/sql/statementtext.h"
#include "catalogue/sqlite/logcopier.h"
#include "catalogue/sqlite/sharedscan.h"
#include "catalogue/sqlite/sqlitefile.h"
#include "catalogue/sqlite/sqlitehandle.h"
#include "catalogue/sqlite/writequeue.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace catalogue
{

// A stored query, translated.
struct StoredQuery {
    std::string text; // as the file has it
    Translated statement;
    std::string wholePath;   // the query that is run for one exact path; empty when there is none
    std::string comparing;   // the same for a look-up that comes with the values of a row
    std::string recognising; // and for one that comes with their fingerprint
};

class CatalogueFile : public std::enable_shared_from_this<CatalogueFile>
{
public:
    // The file at `path`. The first call opens it; each later one checks it again, unless a
    // transaction is open on it. Errors: ProviderFailure as InspectCatalogueFile, and as
    // SqliteHandle's constructor.
    static std::shared_ptr<CatalogueFile> At(const std::string &path);

    // Closes all connections of all files in order, so that each file is complete without its log.
    static void CloseAll();

    explicit CatalogueFile(std::string path);
    ~CatalogueFile();
    CatalogueFile(const CatalogueFile &) = delete;
    CatalogueFile &operator=(const CatalogueFile &) = delete;

    SqliteHandle &Main() { return *m_main; }

    // TakeHandle returns another connection, an idle one or a new one. ReturnHandle makes it idle
    // again.
    std::shared_ptr<SqliteHandle> TakeHandle();
    void ReturnHandle(std::shared_ptr<SqliteHandle> handle);
    std::unique_ptr<Snapshot> TakeSnapshot();

    // Reads texts ahead for FindTexts, for about `budgetMs`, and again when the catalogue has
    // changed.
    // Returns: whether there is more to read; false also when no texts can be kept.
    bool ReadTextsAhead(std::int64_t budgetMs);

    // The numbers of the rows that the search finds in the catalogue as it is now, ascending;
    // nullopt when the texts of this state have not been read.
    std::optional<std::vector<std::int64_t>> FindTexts(const LikeSearch &search);

    // The coming statements that sort all rows by one of these columns share one walk over the
    // table, whose texts take the memory of the pages that were kept. Without columns the sharing
    // ends, and what was kept for it is freed.
    void ShareScan(const std::vector<std::string> &columns);

    // The walk that is shared; null when none is.
    [[nodiscard]] SharedScan *Scan() const { return m_scan.get(); }

    // Begins a transaction that writes on one of the file's connections. Waits for other processes,
    // because only one writes at a time (catalogue/lockwait.h). Events may run meanwhile, and may
    // close the catalogue: the caller must keep this object alive.
    // Errors: ProviderFailure when the wait takes too long, or at once when another transaction or
    // another wait of this process is active.
    void BeginWrite(SqliteHandle &handle);
    void Commit(SqliteHandle &handle);
    void RollBack(SqliteHandle &handle);

    // Begins to copy the log into the file, and returns at once, so that the end of the program
    // takes less time. To be called after a commit that wrote much.
    void StartCopyingLog();

    // Whether another process waits for its turn.
    [[nodiscard]] bool IsAnotherWaiting() { return m_queue.IsAnotherWaiting(); }

    // The stored query of that name. Errors: ProviderFailure when there is none.
    const StoredQuery &Query(std::string_view name);

    // The cached translation of a plain statement with the same words and the same places of its
    // values; null when there is none. CacheTranslation stores a translation that does not refer to
    // the statement: all its parameters are values. It exists as long as this object.
    [[nodiscard]] const Translated *FindTranslation(const Statement &statement) const;
    void CacheTranslation(const Statement &statement, const Translated &translated);

private:
    [[nodiscard]] bool IsSameFile() const;
    void AbandonConnections();
    const std::shared_ptr<SqliteHandle> &Reader();
    int BeginWhenFree(SqliteHandle &handle);

    std::string m_path;
    DatabaseIdentity m_identity;
    WriteQueue m_queue;
    std::unique_ptr<SqliteHandle> m_main;
    std::vector<std::shared_ptr<SqliteHandle>> m_idle;
    std::shared_ptr<SqliteHandle> m_reader;                       // of the next two; never writes
    std::unique_ptr<FoldedTexts> m_texts;                         // null until texts are read ahead
    std::unique_ptr<SharedScan> m_scan;                           // null unless one is shared
    std::map<std::string, StoredQuery> m_queries;                 // by upper-cased name
    std::vector<std::pair<Statement, Translated>> m_translations; // the statements without values
    std::unique_ptr<LogCopier> m_copier; // null until much was written; closed before m_main
    bool m_isWriting = false;
    bool m_isClosing = false;
};

} // namespace catalogue
