// The statement builder of ADOclass, and its INI helpers.
#include "catalogue/adoclass.h"
#include "platform/desktop.h"
#include "platform/inireader.h"
#include "platform/machine.h"
#include "platform/posix/files.h"
#include "platform/posix/inidocument.h"
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

// The value as a literal of the field's type; apostrophes inside are doubled.
template <typename Campo>
std::string LiteralOf(const Campo &campo)
{
    std::string literal;
    Value value = campo.value;
    if (auto *text = std::get_if<std::string>(&value); text && campo.type == DatoType::Text) {
        ADOclass::AddDato(value, campo.type, campo.width, literal);
        const auto inside = std::string_view(literal).substr(1, literal.size() - 2);
        return "'" + runtime::Replace(inside, "'", "''") + "'";
    }
    return ADOclass::AddDato(value, campo.type, campo.width, literal);
}

// What `form` makes of each field, joined by `separator`.
template <typename Campos, typename Form>
std::string Join(const Campos &campos, std::string_view separator, const Form &form)
{
    std::string text;
    for (const auto &campo : campos) {
        if (!text.empty())
            text += separator;
        text += form(campo);
    }
    return text;
}

template <typename Campos>
std::string Assignments(const Campos &campos, std::string_view separator)
{
    return Join(campos, separator,
                [](const auto &campo) { return campo.name + " = " + LiteralOf(campo); });
}

template <typename Campos>
std::string Names(const Campos &campos)
{
    return Join(campos, ", ", [](const auto &campo) { return campo.name; });
}

} // namespace

void ADOclass::Reset()
{
    m_campos.clear();
    m_camposClave.clear();
    TableName.clear();
}

void ADOclass::Clear()
{
    for (auto *list : {&m_campos, &m_camposClave})
        for (auto &campo : *list)
            campo.value = {};
}

void ADOclass::AddTo(Campos &list, const std::string &name, DatoType type, int width)
{
    for (const auto &campo : list)
        if (runtime::EqualText(campo.name, name))
            return;
    list.push_back({name, type, width, {}});
}

bool ADOclass::SetIn(Campos &list, const std::string &name, const Value &value)
{
    for (auto &campo : list) {
        if (!runtime::EqualText(campo.name, name))
            continue;
        campo.value = value;
        return true;
    }
    return false;
}

void ADOclass::AddCampo(const std::string &name, DatoType type, int width)
{
    AddTo(m_campos, name, type, width);
}

void ADOclass::AddCampoClave(const std::string &name, DatoType type, int width)
{
    AddTo(m_camposClave, name, type, width);
}

void ADOclass::SetCampo(const std::string &name, const Value &value)
{
    if (!SetIn(m_campos, name, value))
        ShowBox("Campo no encontrado.");
}

void ADOclass::SetCampoClave(const std::string &name, const Value &value)
{
    if (!SetIn(m_camposClave, name, value))
        ShowBox("Campo clave no encontrado.");
}

std::string ADOclass::GetSelectString() const
{
    return "SELECT " + Names(m_campos) + "\rFROM " + TableName + "\rWHERE " +
           Assignments(m_camposClave, " AND ");
}

std::string ADOclass::GetInsertString() const
{
    return "INSERT INTO " + TableName + "\r(" + Names(m_campos) + ")\rVALUES (" +
           Join(m_campos, ", ", [](const Campo &campo) { return LiteralOf(campo); }) + ")";
}

std::string ADOclass::GetDeleteString() const
{
    return "DELETE * FROM " + TableName + "\rWHERE " + Assignments(m_camposClave, " AND ");
}

std::string ADOclass::GetUpdateString() const
{
    return "UPDATE " + TableName + "\rSET " + Assignments(m_campos, ", ") + "\rWHERE " +
           Assignments(m_camposClave, " AND ");
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
    const auto before = platform::posix::ReadRegularFile(file, std::numeric_limits<int>::max());
    if (!before && errno != ENOENT) // what cannot be read must not be replaced
        return false;
    platform::posix::IniDocument document(before.value_or(""), platform::posix::IniStyle::Plain);
    document.Set(section, key, value);
    return platform::posix::ReplaceFile(file, document.Text());
}

std::string ADOclass::Trim0(std::string_view text)
{
    return std::string(text.substr(0, text.find('\0')));
}

} // namespace catalogue
