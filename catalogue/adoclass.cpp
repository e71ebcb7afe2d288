#include "catalogue/adoclass.h"

#include "catalogue/engines.h"
#include "catalogue/rows/rowtable.h"
#include "catalogue/sql/statementparams.h"
#include "catalogue/sqlite/opengroup.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "shell/apppath.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace catalogue
{

std::unique_ptr<ADOclass> DataAccess;

namespace
{

constexpr std::string_view kDatabaseMark = "[GetDatabase]";
constexpr std::string_view kDataSource = "Data Source=";

// The connection string of the catalogue file, before and after its path.
constexpr std::string_view kFileFront = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=";
constexpr std::string_view kFileBack = ".mdb;Persist Security Info=False;Jet OLEDB";

int objectCount = 0; // the destructor of the last one closes the catalogue

void SetPointer(platform::Pointer pointer)
{
    if (auto *desktop = platform::TheMachine().desktop)
        desktop->SetPointer(pointer);
}

void Yield()
{
    if (auto *desktop = platform::TheMachine().desktop)
        desktop->DoEvents();
}

void ShowBox(std::string_view text)
{
    if (auto *desktop = platform::TheMachine().desktop)
        desktop->MessageBox(text);
}

std::string Separator()
{
    return std::string(1, runtime::PathSeparator);
}

// ErrorMessage for a failure of `statement`.
std::string MessageOf(std::string_view description, std::string_view statement)
{
    return "Error: " + std::string(description) + "\r\t" + std::string(statement);
}

// What ExecuteSQL returns for a plain statement of this kind.
Outcome OutcomeOf(RecordsetPtr records, int kind, bool succeeded)
{
    if ((kind & kSelect) != 0)
        return records;
    if ((kind & (kDelete | kUpdate)) != 0)
        return succeeded;
    if ((kind & kOther) != 0)
        return records->FieldCount() > 0 ? Outcome(std::move(records)) : Outcome(0);
    return {};
}

// What ExecuteSQL returns when the object was destroyed during a wait.
Outcome OutcomeOfNothing(int kind)
{
    SetPointer(platform::Pointer::Normal);
    return OutcomeOf(MakeClosedRecordset(), kind, false);
}

} // namespace

RecordsetPtr Records(const Outcome &outcome)
{
    const auto *records = std::get_if<RecordsetPtr>(&outcome);
    return records ? *records : nullptr;
}

ADOclass::ADOclass()
{
    ++objectCount;
}

ADOclass::ADOclass(InStep, const ADOclass &other)
    : TipoLectura(other.TipoLectura), DirBase(other.DirBase), DataBaseName(other.DataBaseName),
      TableName(other.TableName), SQLServerName(other.SQLServerName), SQLUserID(other.SQLUserID),
      SQLPass(other.SQLPass), SQLIntegratedSecurity(other.SQLIntegratedSecurity),
      m_connectionText(other.m_connectionText), m_open(other.m_open), m_joinsGroup(true)
{
}

bool ADOclass::IsSetAs(const ADOclass &other) const
{
    const auto settings = [](const ADOclass &of) {
        return std::tie(of.TipoLectura, of.DirBase, of.DataBaseName, of.TableName, of.SQLServerName,
                        of.SQLUserID, of.SQLPass, of.SQLIntegratedSecurity);
    };
    return settings(*this) == settings(other);
}

ADOclass::~ADOclass()
{
    *m_alive = false;
    CloseConnection();
    if (!m_joinsGroup && --objectCount == 0)
        CloseCatalogue();
}

Outcome ADOclass::ExecuteSQL(const std::string &statement, StatementKind kind, const Params &params,
                             const Marker &marker)
{
    int kindInOut = kind;
    return ExecuteSQL(statement, kindInOut, params, marker);
}

Outcome ADOclass::ExecuteSQL(const std::string &statement, int &kind, const Params &params,
                             const Marker &marker)
{
    Succeeded = true;
    ErrorMessage.clear();
    if (kind == kDetect)
        kind = TipoConsulta(statement);
    if ((kind & kStoredQuery) != 0)
        return ExecuteStored(statement, kind, params);
    if (std::holds_alternative<std::monostate>(params))
        return ExecutePlain(Statement(statement), kind);
    return ExecutePlain(SubstituteParams(statement, params, marker), kind);
}

Outcome ADOclass::ExecuteSQL(const Statement &statement, StatementKind kind)
{
    Succeeded = true;
    ErrorMessage.clear();
    return ExecutePlain(statement, kind);
}

// When a value contains a "?", a marker is used that no value contains.
Outcome ExecuteWithValues(const std::string &statement, StatementKind kind,
                          const std::vector<Value> &values)
{
    const auto isHeld = [&](const std::string &marker) {
        return std::any_of(values.begin(), values.end(), [&](const Value &value) {
            const auto *text = std::get_if<std::string>(&value);
            return text != nullptr && text->find(marker) != std::string::npos;
        });
    };
    std::string marker = "?";
    for (int number = 1; isHeld(marker); ++number)
        marker = "?" + std::to_string(number) + "?";
    return DataAccess->ExecuteSQL(runtime::Replace(statement, "?", marker), kind, values,
                                  std::string_view(marker));
}

Outcome ADOclass::ExecutePlain(const Statement &statement, int kind)
{
    SetPointer(platform::Pointer::Hourglass);
    const std::shared_ptr<const bool> alive =
        m_alive;       // a handler that runs in a yield may destroy this object
    if (!m_joinsGroup) // no event may run between the statements of a step
        Yield();
    if (!*alive)
        return OutcomeOfNothing(kind);
    Succeeded = true;
    OpenConnection(statement.text);
    // During a wait for another program event handlers run. Their statements must not change the
    // outcome of this one.
    if (!*alive)
        return OutcomeOfNothing(kind);
    const bool isConnected = Succeeded;
    const std::string notConnected = ErrorMessage;
    std::string failure;
    RecordsetPtr records = RunOnConnection(statement, failure);
    if (!*alive)
        return OutcomeOfNothing(kind);
    Succeeded = isConnected && failure.empty();
    ErrorMessage = failure.empty() ? notConnected : failure;
    Outcome outcome = OutcomeOf(std::move(records), kind, Succeeded);
    if (!m_keepOpen)
        CloseConnection();
    SetPointer(platform::Pointer::Normal);
    if (m_joinsGroup)
        return outcome;
    // The statement of an event handler must not change the outcome of this one.
    const bool succeeded = Succeeded;
    std::string message = ErrorMessage;
    Yield();
    if (*alive) {
        Succeeded = succeeded;
        ErrorMessage = std::move(message);
    }
    return outcome;
}

// This object may be destroyed when this returns.
RecordsetPtr ADOclass::RunOnConnection(const Statement &statement, std::string &failure)
{
    const std::shared_ptr<Connection> connection = m_connection;
    if (m_openFailure) {
        failure = MessageOf(*std::exchange(m_openFailure, std::nullopt), ReadableText(statement));
    } else if (connection && connection->IsOpen()) {
        try {
            return connection->Run(statement);
        } catch (const ProviderFailure &words) {
            failure = MessageOf(words.description, ReadableText(statement));
        }
    }
    return MakeClosedRecordset();
}

Outcome ADOclass::ExecuteStored(const std::string &name, int kind, const Params &params)
{
    const std::shared_ptr<const bool> alive = m_alive;
    const bool wantsRows = (kind & kSelect) != 0;
    RecordsetPtr records;
    std::string failure;
    try {
        const std::shared_ptr<Connection> connection =
            m_inTransaction && m_connection ? m_connection : Connect();
        const auto *values = std::get_if<std::vector<Value>>(&params);
        const bool isArray = values != nullptr && !values->empty();
        const std::vector<Value> single = isArray ? std::vector<Value>() : StoredValues(params);
        records = connection->RunStored(name, isArray ? *values : single);
    } catch (const ProviderFailure &words) {
        failure = MessageOf(words.description, name);
        records = MakeClosedRecordset();
    }
    if (*alive) {
        Succeeded = failure.empty();
        ErrorMessage = failure;
    }
    SetPointer(platform::Pointer::Normal);
    return wantsRows ? Outcome(std::move(records)) : Outcome();
}

bool ADOclass::ReadAheadForSearches(std::int64_t budgetMs)
{
    if (m_inTransaction)
        return false;
    try {
        return Connect()->ReadAheadForSearches(budgetMs);
    } catch (const ProviderFailure &) {
        return false; // the next statement reports it
    }
}

void ADOclass::ShareScan(const std::vector<std::string> &columns)
{
    if (m_inTransaction)
        return;
    try {
        Connect()->ShareScan(columns);
    } catch (const ProviderFailure &) {
        return; // the next statement reports it
    }
}

void ADOclass::Fail(std::string_view description, std::string_view statement)
{
    ErrorMessage = MessageOf(description, statement);
    Succeeded = false;
}

int ADOclass::TipoConsulta(std::string_view statement)
{
    return KindOf(statement);
}

std::string ADOclass::GetStringConnection()
{
    if (DirBase.empty())
        DirBase = shell::GetAppPath() + Separator();
    switch (TipoLectura) {
    case 0:
        return "Provider=Microsoft.Jet.OLEDB.3.51;Persist Security Info=False;Data Source=" +
               DirBase + DataBaseName + ".mdb;Jet OLEDB";
    case 1: {
        std::string text;
        text.reserve(kFileFront.size() + DirBase.size() + DataBaseName.size() + kFileBack.size());
        text.append(kFileFront).append(DirBase).append(DataBaseName).append(kFileBack);
        return text;
    }
    case 2:
        if (SQLIntegratedSecurity)
            return "Provider=SQLOLEDB;Integrated Security=SSPI;Initial Catalog=" + DataBaseName +
                   ";Data Source=" + SQLServerName;
        return "driver={SQL Server};uid=" + SQLUserID + ";pwd=" + SQLPass +
               ";server=" + SQLServerName + ";dataBase=" + DataBaseName;
    case 4:
        return "StrDOS=Provider=MSDASQL.1;Persist Security Info=False;Data Source=dBASE "
               "Files;Initial Catalog=" +
               DirBase;
    default:
        return {};
    }
}

std::string ADOclass::GetProviderAndDataSource()
{
    const std::string text = GetStringConnection();
    return "Provider=" + ConnectionPart(text, "Provider") + ";" + std::string(kDataSource) +
           ConnectionPart(text, "Data Source") + ";";
}

std::string ADOclass::GetBaseName(std::string_view statement)
{
    const std::string upper = runtime::UpperText(statement);
    const auto has = [&](std::string_view words) { return upper.find(words) != std::string::npos; };
    if (has("ALUMNOS")) // "MATERIASALUMNOS" as well
        return "Alumnos";
    if (has("FROM C_"))
        return "Correlativas";
    return has("FROM DPALUMNO") ? "Academica" : "Inscrip";
}

// A back-slash at the start of the path is removed: a path that was put together by hand with an
// empty DirBase has one. The platform's separator is not removed.
void ADOclass::OpenConnection(const std::string &statement)
{
    if (m_inTransaction)
        return;
    CloseConnection();
    m_openFailure.reset();
    const bool isResolved = IsResolved();
    std::string text;
    if (!isResolved) {
        text = GetStringConnection();
        if (DataBaseName == kDatabaseMark)
            text = runtime::Replace(text, kDatabaseMark, GetBaseName(statement));
        const auto source = text.find(std::string(kDataSource) + "\\");
        if (source != std::string::npos)
            text.erase(source + kDataSource.size(), 1);
        if (text.empty())
            return;
    }
    const std::shared_ptr<const bool> alive = m_alive;
    try {
        if (!isResolved)
            Resolve(text);
        std::shared_ptr<Connection> connection = OpenResolved();
        if (!*alive)
            return;
        m_connection = std::move(connection);
    } catch (const ProviderFailure &failure) {
        if (!*alive)
            return;
        if (failure.code == kGenericFailure) {
            ErrorMessage = "Not ValidDataBase";
            Succeeded = false;
        } else { // the statement that follows reports it
            m_openFailure = failure.description;
        }
        return;
    }
    if (!m_connection || !m_connection->IsOpen()) {
        ShowBox("Couldn't connect.");
        CloseConnection();
    }
}

// Whether the last connection string that was resolved is that of the catalogue file as it is set
// now. This is asked for each statement, so the parts are compared and no string is made. False
// also when OpenConnection might change the string.
bool ADOclass::IsResolved() const
{
    const std::string_view text = m_connectionText;
    const std::size_t nameAt = kFileFront.size() + DirBase.size();
    const std::size_t backAt = nameAt + DataBaseName.size();
    return m_open && TipoLectura == 1 && !DirBase.empty() && DirBase.find('\\') == DirBase.npos &&
           DataBaseName != kDatabaseMark && text.size() == backAt + kFileBack.size() &&
           text.starts_with(kFileFront) && text.substr(kFileFront.size()).starts_with(DirBase) &&
           text.substr(nameAt).starts_with(DataBaseName) && text.substr(backAt) == kFileBack;
}

void ADOclass::Resolve(const std::string &connectionText)
{
    if (m_open && m_connectionText == connectionText)
        return;
    m_open = ResolveConnection(connectionText);
    m_connectionText = connectionText;
}

std::shared_ptr<Connection> ADOclass::Connect()
{
    if (!IsResolved())
        Resolve(GetStringConnection());
    return OpenResolved();
}

std::shared_ptr<Connection> ADOclass::OpenResolved()
{
    const auto open = m_open; // a handler may destroy this object while the database is opened
    const bool joinsGroup = m_joinsGroup;
    std::shared_ptr<Connection> connection = open();
    if (connection)
        connection->joinsGroup = joinsGroup;
    return connection;
}

void ADOclass::CloseConnection()
{
    m_connection.reset();
}

Outcome ADOclass::ADOExecuteQuery(Connection &connection, const std::string &table)
{
    auto records = connection.Run(Statement("[" + table + "]"));
    if (records->FieldCount() > 0)
        return records;
    return 0;
}

std::string ADOclass::ExpandTemplate(const std::string &path)
{
    if (DataBaseName.empty())
        ShowBox("No se determinó el nombre de la base de datos");
    const std::string text = runtime::Replace(path, "[DIRBASE]", DirBase);
    return DataBaseName.empty() ? text : runtime::Replace(text, "[NOMBREBASE]", DataBaseName);
}

void ADOclass::BeginTrans()
{
    if (m_depth > 0) {
        ++m_depth;
        return;
    }
    OpenConnection("FROM " + DataBaseName);
    if (m_openFailure)
        Fail(*std::exchange(m_openFailure, std::nullopt), "BeginTrans");
    if (!m_connection)
        return;
    try {
        m_connection->Begin();
        m_depth = 1;
        m_inTransaction = m_keepOpen = true;
    } catch (const ProviderFailure &failure) {
        Fail(failure.description, "BeginTrans");
        CloseConnection();
    }
}

void ADOclass::CommitTrans()
{
    if (m_depth == 0 || --m_depth > 0)
        return;
    m_inTransaction = m_keepOpen = false;
    try {
        m_connection->Commit();
    } catch (const ProviderFailure &failure) {
        Fail(failure.description, "CommitTrans");
    }
    CloseConnection();
}

// Ends all nested transactions at once. Without a transaction, no connection stays open between
// statements.
void ADOclass::RollBackTrans()
{
    m_depth = 0;
    m_inTransaction = m_keepOpen = false;
    try {
        if (m_connection)
            m_connection->RollBack();
    } catch (const ProviderFailure &failure) {
        Fail(failure.description, "RollBackTrans");
    }
    CloseConnection();
}

void ADOclass::RollBack()
{
    if (m_inTransaction)
        RollBackTrans();
    else
        ShowBox("No hay una Transacción abierta");
}

} // namespace catalogue
