// The statement builder of ADOclass, and its INI helpers.
#include "catalogue/adoclass.h"
#include "platform/desktop.h"
#include "platform/inireader.h"
#include "platform/machine.h"
#include "platform/posix/files.h"
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

// The entry takes the place of the one that stands, comes behind the last of its section, or begins
// a section at the end; every other line stays as it is.
bool ADOclass::PutIniStr(const std::string &section, const std::string &key,
                         const std::string &value, const std::string &file)
{
    const auto before = platform::posix::ReadRegularFile(file, std::numeric_limits<int>::max());
    if (!before && errno != ENOENT) // what cannot be read must not be replaced
        return false;
    const std::string text = before.value_or("");
    const std::string entry = key + "=" + value + "\r\n";
    std::string result, inserted = entry;
    bool isInSection = false, isDone = false;
    std::size_t sectionEnd = std::string::npos;
    for (std::size_t at = 0; at < text.size();) {
        const auto end = std::min(text.find('\n', at), text.size() - 1) + 1;
        std::string_view line = std::string_view(text).substr(at, end - at);
        at = end;
        const auto bare = runtime::Trim(line.substr(0, line.find_first_of("\r\n")));
        if (bare.starts_with("["))
            isInSection =
                sectionEnd == std::string::npos && runtime::EqualText(bare, "[" + section + "]");
        const auto name = runtime::Trim(bare.substr(0, bare.find('=')));
        if (isInSection && !isDone && bare.find('=') != std::string_view::npos &&
            runtime::EqualText(name, key)) {
            line = entry;
            isDone = true;
        }
        result += line;
        if (!result.ends_with("\n"))
            result += "\r\n";
        if (isInSection && !bare.empty())
            sectionEnd = result.size();
    }
    if (!isDone && sectionEnd == std::string::npos) {
        inserted = "[" + section + "]\r\n" + entry;
        sectionEnd = result.size();
    }
    if (!isDone)
        result.insert(sectionEnd, inserted);
    return platform::posix::ReplaceFile(file, result);
}

std::string ADOclass::Trim0(std::string_view text)
{
    return std::string(text.substr(0, text.find('\0')));
}

} // namespace catalogue
