// catalogue/adoclass.h - the program's only road to the catalogue: runs statements and stored
// queries, and tells failure by two public members instead of exceptions. Texts are UTF-8.
#pragma once

#include "catalogue/params.h"
#include "catalogue/recordset.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace catalogue
{

class Connection; // catalogue/provider.h
struct Statement;

// What ExecuteSQL hands back: nothing, the result set, whether it succeeded, or a field count.
using Outcome = std::variant<std::monostate, RecordsetPtr, bool, int>;

// The result set in `outcome`; null when it holds something else.
RecordsetPtr Records(const Outcome &outcome);

class ADOclass
{
public:
    ADOclass();
    ~ADOclass(); // rolls an open transaction back
    ADOclass(const ADOclass &) = delete;
    ADOclass &operator=(const ADOclass &) = delete;

    // --- configuration -----------------------------------------------------------------------
    std::int32_t TipoLectura = 0; // kind of connection: 1 = the catalogue file
    std::string DirBase;          // folder of the database, with a trailing separator; a path
    std::string DataBaseName;     // without extension; "[GetDatabase]" = GetBaseName's
    std::string TableName;        // for the statement builder
    std::string SQLServerName, SQLUserID, SQLPass; // for the kind 2
    bool SQLIntegratedSecurity = false;

    // --- the outcome of the last operation ---------------------------------------------------
    bool Succeeded = true;
    std::string ErrorMessage; // empty, "Not ValidDataBase", or "Error: " words, CR, tab, statement

    // Runs `statement`, or with the stored-query bit the query of that name.
    // `kind`:   in and out; kDetect is replaced by what TipoConsulta finds.
    // `params`: put in the places of `marker` (one pass from left to right, the first remaining
    //           marker each time, so that a value which holds the marker takes the later ones into
    //           itself; SubstituteParams), or handed to the stored query in their order. Values are
    //           data: nothing in them is ever part of the statement.
    // Returns:  kSelect: the result set, closed after a failure. kInsert: nothing. kDelete and
    //           kUpdate: Succeeded. kOther: the result set when it has a field, else 0. Stored:
    //           the result set with the bit 1, else nothing.
    // Errors:   none thrown; Succeeded and ErrorMessage.
    // Yields: waiting events run before and after a plain statement, but not where the object is
    // that of a RowStep. A handler may run statements of its own, and may destroy the object: the
    // call then returns what it returns after a failure.
    Outcome ExecuteSQL(const std::string &statement, int &kind, const Params &params = {},
                       const Marker &marker = "?");
    Outcome ExecuteSQL(const std::string &statement, StatementKind kind, const Params &params = {},
                       const Marker &marker = "?");

    // The same for a plain statement that has its values in their places already
    // (SubstituteParams): for one that runs for each song of a job.
    Outcome ExecuteSQL(const Statement &statement, StatementKind kind);

    // The kind that the upper-cased text tells: the first of SELECT, INSERT, DELETE, UPDATE that
    // stands anywhere in it, else kOther.
    static int TipoConsulta(std::string_view statement);

    // `value` as a literal: a text in apostrophes, cut to its first `width` characters when width
    // is at least 1 (apostrophes inside are the caller's to double); a flag as -1 or 0; a date
    // between "#"; anything else as its trimmed text. The literal goes to `literal` as well.
    static std::string AddDato(const Value &value, DatoType type, int width, std::string &literal);

    // Reads ahead, for about `budgetMs`, what makes the next search for words in MP3s fast: a
    // SELECT whose condition is LIKE alone. To be called in idle moments, again after each change.
    // Returns: whether there is more to read.
    // Errors:  none; where nothing can be read ahead, searches take longer.
    bool ReadAheadForSearches(std::int64_t budgetMs);

    // --- connection --------------------------------------------------------------------------
    // The connection string of TipoLectura; empty for 3 and unknown kinds. An empty DirBase is
    // set to the program's folder first.
    std::string GetStringConnection();
    std::string Initialize() { return GetStringConnection(); }

    // "Provider=...;" and "Data Source=...;" of the connection string, one behind the other.
    std::string GetProviderAndDataSource();

    // The database that `statement` belongs to, where DataBaseName is "[GetDatabase]".
    static std::string GetBaseName(std::string_view statement);

    // Opens the connection, unless a transaction holds one. The generic failure of the provider
    // sets Succeeded and ErrorMessage; any other is met again by the statement that follows.
    void OpenConnection(const std::string &statement);

    // The result set of "[table]" over `connection`, or 0 when it has no field.
    // Errors: ProviderFailure (catalogue/provider.h).
    static Outcome ADOExecuteQuery(Connection &connection, const std::string &table);

    // "[DIRBASE]" and "[NOMBREBASE]" in `path` replaced by DirBase and DataBaseName. With an
    // empty name a box says so, and the text comes back with that mark in it.
    std::string ExpandTemplate(const std::string &path);

    // --- transactions ------------------------------------------------------------------------
    void BeginTrans();    // deeper calls only count
    void CommitTrans();   // the last of them commits
    void RollBackTrans(); // unconditionally
    void RollBack();      // the same; without a transaction a box says so

    // --- the statement builder ---------------------------------------------------------------
    void Reset(); // empties the lists and TableName
    void Clear(); // empties the values

    // Adds a field to the list, unless one of that name is there (names in upper case).
    void AddCampo(const std::string &name, DatoType type, int width);
    void AddCampoClave(const std::string &name, DatoType type, int width);

    // Sets a field's value; a box tells an unknown name.
    void SetCampo(const std::string &name, const Value &value);
    void SetCampoClave(const std::string &name, const Value &value);

    std::string GetSelectString() const;
    std::string GetInsertString() const;
    std::string GetDeleteString() const;
    std::string GetUpdateString() const;
    Outcome ExeSelect();
    Outcome ExeInsert();
    Outcome ExeDelete();
    Outcome ExeUpdate();

    // --- INI files ---------------------------------------------------------------------------
    // The value of a key, empty when there is none; the value written, false on failure.
    static std::string GetIniStr(const std::string &section, const std::string &key,
                                 const std::string &file);
    static bool PutIniStr(const std::string &section, const std::string &key,
                          const std::string &value, const std::string &file);

    // The text before the first NUL.
    static std::string Trim0(std::string_view text);

protected:
    // An object on the same database as `other`, whose statements run in the group of rows of the
    // RowStep that owns it (catalogue/rowgroups.h).
    struct InStep {
    };
    ADOclass(InStep, const ADOclass &other);

private:
    struct Field {
        std::string name;
        DatoType type = DatoType::Text;
        int width = 0;
        Value value;
    };
    using Fields = std::vector<Field>;

    Outcome ExecutePlain(const Statement &statement, int kind);
    Outcome ExecuteStored(const std::string &name, int kind, const Params &params);
    RecordsetPtr RunOnConnection(const Statement &statement, std::string &failure);
    void Fail(std::string_view description, std::string_view statement);
    std::shared_ptr<Connection> Connect(const std::string &connectionText);
    void CloseConnection();
    static void AddTo(Fields &list, const std::string &name, DatoType type, int width);
    static bool SetIn(Fields &list, const std::string &name, const Value &value);

    std::shared_ptr<Connection> m_connection;            // also a running statement's
    std::optional<std::string> m_openFailure;            // words of an open that failed in silence
    Fields m_fields, m_keyFields;                        // of the statement builder
    std::string m_connectionText;                        // the last one that was resolved
    std::function<std::unique_ptr<Connection>()> m_open; // what it was resolved to
    const bool m_joinsGroup = false;                     // the object is that of a RowStep
    bool m_inTransaction = false;
    bool m_keepOpen = false; // the connection stays open between statements
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true); // also a waiting statement's
    std::int16_t m_depth = 0;                                     // of BeginTrans calls
};

// The one data-access object; made by Main, released when the main window unloads.
extern std::unique_ptr<ADOclass> DataAccess;

// Runs a plain statement on DataAccess in which "?" stands for each value, whatever the values
// hold: where one of them holds a "?", another marker is taken. For values that users and files
// give (a path, a list's name, a text to search for). Outcome and errors as ExecuteSQL's.
Outcome ExecuteWithValues(const std::string &statement, StatementKind kind,
                          const std::vector<Value> &values);

} // namespace catalogue
