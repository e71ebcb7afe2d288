// catalogue/adoclass.h - the only access to the catalogue: runs statements and stored queries.
// Failures are reported in two public members, not by exceptions. Texts are UTF-8.
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

// What ExecuteSQL returns: nothing, the result set, whether it succeeded, or a number of fields.
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
    std::string DataBaseName;     // without extension; with "[GetDatabase]" GetBaseName gives it
    std::string TableName;        // for the statement builder
    std::string SQLServerName, SQLUserID, SQLPass; // for kind 2
    bool SQLIntegratedSecurity = false;

    // --- the outcome of the last operation ---------------------------------------------------
    bool Succeeded = true;
    std::string ErrorMessage; // empty, "Not ValidDataBase", or "Error: " words, CR, tab, statement

    // Runs `statement`; with the bit kStoredQuery in `kind`, the stored query of that name.
    // `kind`:   in and out; kDetect is replaced by the result of TipoConsulta.
    // `params`: for a statement, the values for its markers: one pass from left to right, each
    //           value at the first marker that is left, so that a value which contains the marker
    //           gets the later values inside (SubstituteParams); for a stored query, its parameters
    //           in order. Values are data and never become part of the statement.
    // Returns:  kSelect: the result set, a closed one after a failure. kInsert: nothing. kDelete
    //           and kUpdate: Succeeded. kOther: the result set when it has a field, else 0. Stored:
    //           the result set with the bit 1, else nothing.
    // Errors:   none thrown; see Succeeded and ErrorMessage.
    // Yields:   events run before and after a plain statement, unless the object belongs to a
    //           RowStep. A handler may run statements of its own and may destroy this object; the
    //           call then returns what it returns after a failure.
    Outcome ExecuteSQL(const std::string &statement, int &kind, const Params &params = {},
                       const Marker &marker = "?");
    Outcome ExecuteSQL(const std::string &statement, StatementKind kind, const Params &params = {},
                       const Marker &marker = "?");

    // The same for a plain statement whose values have their places already (SubstituteParams): for
    // one that is run for each song of a job.
    Outcome ExecuteSQL(const Statement &statement, StatementKind kind);

    // The kind of a statement: the first of SELECT, INSERT, DELETE, UPDATE that its upper-cased
    // text contains anywhere, else kOther.
    static int TipoConsulta(std::string_view statement);

    // `value` as a literal: a text in apostrophes, cut to its first `width` characters when width
    // is at least 1 (the caller must double apostrophes in it); a flag as -1 or 0; a date between
    // "#"; anything else as its trimmed text. The literal is stored in `literal` too.
    static std::string AddDato(const Value &value, DatoType type, int width, std::string &literal);

    // Reads ahead, for about `budgetMs`, what makes the next search for words in MP3s fast (a
    // SELECT whose condition is only LIKE). To be called when the program is idle, and again after
    // each change.
    // Returns: whether there is more to read.
    // Errors:  none; if nothing can be read ahead, searches take longer.
    bool ReadAheadForSearches(std::int64_t budgetMs);

    // From now on the statements "SELECT * FROM MP3s ORDER BY Title" (or another one of `columns`)
    // read the catalogue once for all of them, as long as it is not changed. Their results are the
    // same. Each column is read for one statement. Without columns this ends, and what was read is
    // freed.
    // Errors:  none; each statement then reads the catalogue by itself.
    void ShareScan(const std::vector<std::string> &columns);

    // --- connection --------------------------------------------------------------------------
    // The connection string for TipoLectura; empty for 3 and for unknown kinds. If DirBase is
    // empty, it is set to the program's folder first.
    std::string GetStringConnection();
    std::string Initialize() { return GetStringConnection(); }

    // The parts "Provider=...;" and "Data Source=...;" of the connection string, joined.
    std::string GetProviderAndDataSource();

    // The name of the database for `statement`, when DataBaseName is "[GetDatabase]".
    static std::string GetBaseName(std::string_view statement);

    // Opens the connection, unless a transaction has one open. The generic failure of the provider
    // sets Succeeded and ErrorMessage; any other failure is reported by the statement that follows.
    void OpenConnection(const std::string &statement);

    // The result set of "[table]" on `connection`, or 0 when it has no field.
    // Errors: ProviderFailure (catalogue/provider.h).
    static Outcome ADOExecuteQuery(Connection &connection, const std::string &table);

    // `path` with "[DIRBASE]" and "[NOMBREBASE]" replaced by DirBase and DataBaseName. When the
    // name is empty, a box reports this, and that mark stays in the text.
    std::string ExpandTemplate(const std::string &path);

    // --- transactions ------------------------------------------------------------------------
    void BeginTrans();    // a nested call only counts
    void CommitTrans();   // the call for the outermost one commits
    void RollBackTrans(); // rolls back all of them
    void RollBack();      // the same; when there is no transaction, a box reports this

    // --- the statement builder ---------------------------------------------------------------
    void Reset(); // empties the lists and TableName
    void Clear(); // empties the values

    // Adds a field to the list, unless the list has one of that name (names are in upper case).
    void AddCampo(const std::string &name, DatoType type, int width);
    void AddCampoClave(const std::string &name, DatoType type, int width);

    // Sets the value of a field; a box reports an unknown name.
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
    // GetIniStr returns the value of a key, the empty text when there is none. PutIniStr sets it;
    // it returns false when the file cannot be read or written, and the file is unchanged then.
    static std::string GetIniStr(const std::string &section, const std::string &key,
                                 const std::string &file);
    static bool PutIniStr(const std::string &section, const std::string &key,
                          const std::string &value, const std::string &file);

    // The text before the first NUL.
    static std::string Trim0(std::string_view text);

protected:
    // An object for the database of `other`, whose statements run in the group of rows of the
    // RowStep that owns it (catalogue/rowgroups.h).
    struct InStep {
    };
    ADOclass(InStep, const ADOclass &other);

    // Whether both are for the same database.
    [[nodiscard]] bool IsSetAs(const ADOclass &other) const;

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
    std::shared_ptr<Connection> Connect();
    [[nodiscard]] bool IsResolved() const;
    void Resolve(const std::string &connectionText);
    std::shared_ptr<Connection> OpenResolved();
    void CloseConnection();
    static void AddTo(Fields &list, const std::string &name, DatoType type, int width);
    static bool SetIn(Fields &list, const std::string &name, const Value &value);

    std::shared_ptr<Connection> m_connection; // shared with a statement that is running
    std::optional<std::string> m_openFailure; // the failure to open that the next statement reports
    Fields m_fields, m_keyFields;             // of the statement builder
    std::string m_connectionText;             // the last one that was resolved
    std::function<std::shared_ptr<Connection>()> m_open; // the result of resolving it
    const bool m_joinsGroup = false;                     // the object belongs to a RowStep
    bool m_inTransaction = false;
    bool m_keepOpen = false; // the connection stays open between statements
    std::shared_ptr<bool> m_alive =
        std::make_shared<bool>(true); // shared with a statement that is waiting
    std::int16_t m_depth = 0;         // the number of BeginTrans calls
};

// The one object of the program; made by Main, destroyed when the main window unloads.
extern std::unique_ptr<ADOclass> DataAccess;

// Runs a plain statement on DataAccess with `values` in the places of "?", whatever the values
// contain: if one of them contains a "?", another marker is used. For values from users and files
// (a path, the name of a list, a search text). Result and errors: see ExecuteSQL.
Outcome ExecuteWithValues(const std::string &statement, StatementKind kind,
                          const std::vector<Value> &values);

} // namespace catalogue
