#include "browser/fieldtree.h"

#include "browser/itemlist.h"
#include "browser/liststate.h"
#include "catalogue/adoclass.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "shell/globals.h"
#include "shell/language.h"
#include "shell/progress.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

namespace browser
{

namespace
{

// The order of the groups under the root; Path is before List.
constexpr std::array<int, 8> kGroupOrder = {0, 1, 2, 3, 4, 5, 7, 6};

constexpr std::string_view kListStatement = "SELECT * FROM Lists ORDER BY LIST_Name";

std::string GroupKey(std::string_view field)
{
    return "By" + std::string(field);
}

void AddGroup(ui::KeyedTree &tree, std::string_view field)
{
    const ui::NodeId root = tree.Find(kRootKey);
    if (field == "List")
        tree.Add(root, GroupKey(field),
                 shell::GetLanguageText("PlayLists", "PlayLists", "ColumnHeaders"), "M3U");
    else
        tree.Add(root, GroupKey(field), shell::GetFolderGroupCaption(field), "closed", "open");
}

void ShowFieldProgress(std::string_view field)
{
    const std::string caption = shell::GetLanguageText(field, field, "ColumnHeaders");
    const std::string adding = shell::GetLanguageText("Adding", "AddingFile", "Progress");
    const std::string information =
        shell::GetLanguageText("$Field$ information...", "AddingInformation", "Progress");
    shell::ShowProgress(adding + " " + runtime::Replace(information, "$Field$", caption));
}

// While one exists, the statements of the fields read the songs in one walk over them. Not those of
// Lists; and the paths have an index, which is read faster than the songs.
class SongsReadOnce
{
public:
    SongsReadOnce()
    {
        std::vector<std::string> fields;
        for (std::size_t index = 0; index < shell::FieldNames.size(); ++index)
            if (const std::string_view field = shell::FieldNames[index];
                shell::TheGlobals().LoadField[index] && field != "List" && field != "Path")
                fields.emplace_back(field);
        Share(fields);
    }
    ~SongsReadOnce() { Share({}); }
    SongsReadOnce(const SongsReadOnce &) = delete;
    SongsReadOnce &operator=(const SongsReadOnce &) = delete;

private:
    static void Share(const std::vector<std::string> &fields)
    {
        if (catalogue::DataAccess != nullptr)
            catalogue::DataAccess->ShareScan(fields);
    }
};

// Adds the value nodes of one field, for one record after the other. A record with the same text as
// the one before would have the same key, so it is skipped before its text is folded.
class ValueNodes
{
public:
    ValueNodes(MainForm &form, const ItemKind &kind)
        : m_tree(form.TV), m_folders(form.folderOfNode), m_kind(kind),
          m_group(form.TV.Find(GroupKey(kind.field))), m_isPath(kind.field == "Path"),
          m_isList(kind.field == "List")
    {
    }

    void Add(std::string_view text)
    {
        // For a path, the folder is the value.
        const std::string_view value = m_isPath ? runtime::FolderPart(text) : text;
        if (m_any && value == m_before)
            return;
        m_any = true;
        m_before = value;
        if (m_isList)
            AddNode(value, value, "M3U", {});
        else if (m_isPath)
            AddFolder(TrimLeft(value));
        else
            AddNode(runtime::UpperText(runtime::Trim(value)), runtime::Trim(value), "closed",
                    "open");
    }

private:
    // Only the left end of a path is trimmed before its folder is taken.
    static std::string_view TrimLeft(std::string_view text)
    {
        return text.substr(std::min(text.find_first_not_of(' '), text.size()));
    }

    void AddFolder(std::string_view folder)
    {
        AddNode(runtime::UpperText(folder), runtime::GetLastFolderName(folder), "closed", "open");
        m_folders.try_emplace(m_key, folder.substr(0, std::max<std::size_t>(1, folder.size() - 1)));
    }

    void AddNode(std::string_view key, std::string_view text, std::string_view image,
                 std::string_view selectedImage)
    {
        m_key.assign(m_kind.marker).append(key);
        m_tree.TryAdd(m_group, m_key, text, image, selectedImage);
    }

    ui::KeyedTree &m_tree;
    std::unordered_map<std::string, std::string> &m_folders;
    const ItemKind &m_kind;
    const ui::NodeId m_group;
    const bool m_isPath, m_isList;
    bool m_any = false;
    std::string m_before;
    std::string m_key;
};

// Adds a node for each record. A record that cannot be read or added is skipped.
// Returns: the reason of the last failure; empty when there was none.
std::string FillValues(MainForm &form, const ItemKind &kind, catalogue::Recordset &records)
{
    std::string failure;
    if (form.TV.Find(GroupKey(kind.field)) == ui::kNoNode)
        return failure;
    const int column = records.FindField(kind.field == "List" ? "List_Name" : kind.field);
    ValueNodes nodes(form, kind);
    for (; !records.AtEnd(); records.MoveNext()) {
        try {
            nodes.Add(records.Text(column));
        } catch (const runtime::RuntimeError &error) {
            failure = error.description;
        }
    }
    return failure;
}

} // namespace

void LoadTreeView(MainForm &form, std::string_view fieldName)
{
    const ui::TreeUpdate update(form.TV);
    if (fieldName.empty()) {
        form.TV.Clear();
        form.folderOfNode.clear();
        form.TV.SetExpanded(form.TV.Add(ui::kNoNode, kRootKey, "MP3", "closed", "open"), true);
    }
    for (const int index : kGroupOrder) {
        const std::string_view field = shell::FieldNames[static_cast<std::size_t>(index)];
        const bool load = shell::TheGlobals().LoadField[static_cast<std::size_t>(index)];
        if (!fieldName.empty() && fieldName != field)
            continue;
        if (load)
            AddGroup(form.TV, field);
        else if (!fieldName.empty())
            form.TV.Remove(GroupKey(field));
    }
    form.catalogueError.clear();
    FillFieldTree(form, "SELECT *\rFROM MP3s", fieldName);
    if (fieldName.empty())
        EndRegenerationDisplay(form);
    ShowListState(form);
}

void FillFieldTree(MainForm &form, std::string_view sql, std::string_view fieldName)
{
    const ui::TreeUpdate update(form.TV);
    std::optional<SongsReadOnce> once;
    if (fieldName.empty())
        once.emplace();
    for (std::size_t index = 0; index < shell::FieldNames.size(); ++index) {
        const std::string_view field = shell::FieldNames[index];
        if ((!fieldName.empty() && fieldName != field) || !shell::TheGlobals().LoadField[index])
            continue;
        ShowFieldProgress(field);
        if (catalogue::DataAccess == nullptr)
            return; // the window was closed while events ran
        std::string statement(sql);
        statement.append("\rORDER BY ").append(field);
        if (field == "List")
            statement = kListStatement;
        int kind = catalogue::kDetect;
        const auto records = catalogue::Records(catalogue::DataAccess->ExecuteSQL(statement, kind));
        if (catalogue::DataAccess == nullptr)
            return; // the same, during the statement
        std::string failure;
        if (!catalogue::DataAccess->Succeeded)
            failure = catalogue::DataAccess->ErrorMessage;
        if (records != nullptr && records->IsOpen())
            failure = FillValues(form, KindOfField(field), *records);
        if (!failure.empty())
            form.catalogueError = failure;
    }
}

void RefreshTree(MainForm &form)
{
    if (const ui::NodeId root = form.TV.Find(kRootKey); root != ui::kNoNode)
        form.TV.SetExpanded(root, false);
    LoadTreeView(form, "");
}

void BindTreeEvents(MainForm &form)
{
    form.TV.onCollapse = [&form](ui::NodeId) { form.TreeJustCollapsed = true; };
    form.TV.onExpand = [&form](ui::NodeId node) {
        form.TV.Select(node);
        form.TreeJustExpanded = true;
    };
    form.TV.onNodeClick = [&form](ui::NodeId) { ItemClick(form, form.TV); };
    form.TV.onClick = [&form] { ItemClick(form, form.TV); };
}

} // namespace browser
