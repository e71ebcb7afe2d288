// The statement builder of ADOclass, and its procedures for INI files.
#include "catalogue/adoclass.h"
#include "catalogue/sql/statementparams.h"
#include "platform/desktop.h"
#include "platform/disk/wholefiles.h"
#include "platform/inidocument.h"
#include "platform/inireader.h"
#include "platform/machine.h"
#include "runtime/text.h"

#include <cerrno>
#include <limits>

namespace catalogue
{

namespace
{

void ShowBox(std::string_view text)
{
    if (auto *desktop = platform::TheMachine().desktop)
        desktop->MessageBox(text);
}

// The value as a literal of the field's type; apostrophes in it are doubled.
template <typename Field>
std::string LiteralOfField(const Field &field)
{
    std::string literal = LiteralOf(field.value, field.type, field.width);
    if (field.type != DatoType::Text || !std::holds_alternative<std::string>(field.value))
        return literal;
    const auto inside = std::string_view(literal).substr(1, literal.size() - 2);
    return "'" + runtime::Replace(inside, "'", "''") + "'";
}

// `form(field)` for each field, with `separator` between the results.
template <typename Fields, typename Form>
std::string Join(const Fields &fields, std::string_view separator, const Form &form)
{
    std::string text;
    for (const auto &field : fields) {
        if (!text.empty())
            text += separator;
        text += form(field);
    }
    return text;
}

template <typename Fields>
std::string Assignments(const Fields &fields, std::string_view separator)
{
    return Join(fields, separator,
                [](const auto &field) { return field.name + " = " + LiteralOfField(field); });
}

template <typename Fields>
std::string Names(const Fields &fields)
{
    return Join(fields, ", ", [](const auto &field) { return field.name; });
}

} // namespace

std::string ADOclass::AddDato(const Value &value, DatoType type, int width, std::string &literal)
{
    literal = LiteralOf(value, type, width);
    return literal;
}

void ADOclass::Reset()
{
    m_fields.clear();
    m_keyFields.clear();
    TableName.clear();
}

void ADOclass::Clear()
{
    for (auto *list : {&m_fields, &m_keyFields})
        for (auto &field : *list)
            field.value = {};
}

void ADOclass::AddTo(Fields &list, const std::string &name, DatoType type, int width)
{
    for (const auto &field : list)
        if (runtime::EqualText(field.name, name))
            return;
    list.push_back({name, type, width, {}});
}

bool ADOclass::SetIn(Fields &list, const std::string &name, const Value &value)
{
    for (auto &field : list) {
        if (!runtime::EqualText(field.name, name))
            continue;
        field.value = value;
        return true;
    }
    return false;
}

void ADOclass::AddCampo(const std::string &name, DatoType type, int width)
{
    AddTo(m_fields, name, type, width);
}

void ADOclass::AddCampoClave(const std::string &name, DatoType type, int width)
{
    AddTo(m_keyFields, name, type, width);
}

void ADOclass::SetCampo(const std::string &name, const Value &value)
{
    if (!SetIn(m_fields, name, value))
        ShowBox("Campo no encontrado.");
}

void ADOclass::SetCampoClave(const std::string &name, const Value &value)
{
    if (!SetIn(m_keyFields, name, value))
        ShowBox("Campo clave no encontrado.");
}

std::string ADOclass::GetSelectString() const
{
    return "SELECT " + Names(m_fields) + "\rFROM " + TableName + "\rWHERE " +
           Assignments(m_keyFields, " AND ");
}

std::string ADOclass::GetInsertString() const
{
    return "INSERT INTO " + TableName + "\r(" + Names(m_fields) + ")\rVALUES (" +
           Join(m_fields, ", ", [](const Field &field) { return LiteralOfField(field); }) + ")";
}

std::string ADOclass::GetDeleteString() const
{
    return "DELETE * FROM " + TableName + "\rWHERE " + Assignments(m_keyFields, " AND ");
}

std::string ADOclass::GetUpdateString() const
{
    return "UPDATE " + TableName + "\rSET " + Assignments(m_fields, ", ") + "\rWHERE " +
           Assignments(m_keyFields, " AND ");
}

Outcome ADOclass::ExeSelect()
{
    return ExecuteSQL(GetSelectString(), kSelect);
}

Outcome ADOclass::ExeInsert()
{
    return ExecuteSQL(GetInsertString(), kInsert);
}

Outcome ADOclass::ExeDelete()
{
    return ExecuteSQL(GetDeleteString(), kDelete);
}

Outcome ADOclass::ExeUpdate()
{
    return ExecuteSQL(GetUpdateString(), kUpdate);
}

std::string ADOclass::GetIniStr(const std::string &section, const std::string &key,
                                const std::string &file)
{
    return platform::ReadIniText(file, section, key, std::numeric_limits<std::size_t>::max())
        .value_or("");
}

bool ADOclass::PutIniStr(const std::string &section, const std::string &key,
                         const std::string &value, const std::string &file)
{
    const auto before = platform::ReadRegularFile(file, std::numeric_limits<int>::max());
    if (!before && errno != ENOENT) // a file that cannot be read must not be replaced
        return false;
    platform::IniDocument document(before.value_or(""), platform::IniStyle::Plain);
    document.Set(section, key, value);
    return platform::ReplaceFile(file, document.Text());
}

std::string ADOclass::Trim0(std::string_view text)
{
    return std::string(text.substr(0, text.find('\0')));
}

} // namespace catalogue
