#include "catalogue/sqlite/sqlitefunctions.h"

#include "catalogue/comparedrows.h"
#include "catalogue/rows/textmatch.h"
#include "catalogue/sql/statementtext.h"
#include "runtime/collation.h"
#include "runtime/text.h"

#include <string_view>

namespace catalogue
{

namespace
{

std::string_view TextOf(sqlite3_value *value)
{
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(value));
    if (text == nullptr)
        return {};
    return {text, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

bool IsNull(sqlite3_value *value)
{
    return sqlite3_value_type(value) == SQLITE_NULL;
}

int Collate(void *, int firstBytes, const void *first, int secondBytes, const void *second)
{
    return runtime::CollateText(
        {static_cast<const char *>(first), static_cast<std::size_t>(firstBytes)},
        {static_cast<const char *>(second), static_cast<std::size_t>(secondBytes)});
}

void SameTrimmedFunction(sqlite3_context *context, int, sqlite3_value **values)
{
    if (IsNull(values[0]) || IsNull(values[1]))
        return sqlite3_result_null(context);
    sqlite3_result_int(context, SameTrimmed(TextOf(values[0]), TextOf(values[1])) ? 1 : 0);
}

void UpperFunction(sqlite3_context *context, int, sqlite3_value **values)
{
    if (IsNull(values[0]))
        return sqlite3_result_null(context);
    const std::string upper = runtime::UpperText(TextOf(values[0]));
    sqlite3_result_text64(context, upper.data(), upper.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

// "text REGEXP pattern" calls this with the pattern as the first argument. A constant pattern is
// folded once.
void LikeFunction(sqlite3_context *context, int count, sqlite3_value **values)
{
    if (IsNull(values[0]) || IsNull(values[1]))
        return sqlite3_result_null(context);
    auto *kept = static_cast<LikePattern *>(sqlite3_get_auxdata(context, 0));
    if (kept != nullptr)
        return sqlite3_result_int(context, kept->Matches(TextOf(values[1])) ? 1 : 0);
    auto *pattern = new LikePattern(TextOf(values[0]), count > 2 ? TextOf(values[2]) : "");
    sqlite3_result_int(context, pattern->Matches(TextOf(values[1])) ? 1 : 0);
    sqlite3_set_auxdata(context, 0, pattern, [](void *p) { delete static_cast<LikePattern *>(p); });
}

// Whether the columns are texts with the fingerprint that the first two arguments are. A null, and
// bytes that another program has stored as such, are no text.
void HasFingerprintFunction(sqlite3_context *context, int, sqlite3_value **values)
{
    ComparedTexts texts;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        sqlite3_value *value = values[kFingerprintValues + i];
        if (sqlite3_value_type(value) != SQLITE_TEXT)
            return sqlite3_result_int(context, 0);
        texts[i] = TextOf(value);
    }
    const auto wanted =
        FingerprintFrom(sqlite3_value_int64(values[0]), sqlite3_value_int64(values[1]));
    sqlite3_result_int(context, FingerprintOf(texts) == wanted ? 1 : 0);
}

constexpr const char *kLikeSearch = "LikeSearch"; // the type of the bound pointer

void FoundByLikeFunction(sqlite3_context *context, int count, sqlite3_value **values)
{
    const auto *search =
        count == 0 ? nullptr
                   : static_cast<const LikeSearch *>(sqlite3_value_pointer(values[0], kLikeSearch));
    if (search == nullptr || static_cast<std::size_t>(count) != search->columns.size() + 1)
        return sqlite3_result_null(context);
    const auto textOf = [&](std::size_t column) -> std::optional<std::string_view> {
        sqlite3_value *value = values[column + 1];
        return IsNull(value) ? std::nullopt : std::optional(TextOf(value));
    };
    sqlite3_result_int(context, Finds(*search, search->root, textOf) ? 1 : 0);
}

} // namespace

void BindLikeSearch(sqlite3_stmt *statement, int parameter, const LikeSearch &search)
{
    // SQLite's parameter is a pointer to non-const data; the data is not changed.
    sqlite3_bind_pointer(statement, parameter, const_cast<LikeSearch *>(&search), kLikeSearch,
                         nullptr);
}

std::string LikeSearchCall(const LikeSearch &search)
{
    std::string call = "found_by_like(?1";
    for (const std::string &column : search.columns)
        call += ", \"" + column + '"';
    return call + ")";
}

void AddTextFunctions(sqlite3 *db)
{
    constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    const std::string collation(kCollation);
    sqlite3_create_collation_v2(db, collation.c_str(), SQLITE_UTF8, nullptr, Collate, nullptr);
    const auto add = [&](const char *name, int count, auto function) {
        sqlite3_create_function_v2(db, name, count, kFlags, nullptr, function, nullptr, nullptr,
                                   nullptr);
    };
    add("same_trimmed", 2, SameTrimmedFunction);
    add("upper_text", 1, UpperFunction);
    add("regexp", 2, LikeFunction);
    add("regexp", 3, LikeFunction);
    add("found_by_like", -1, FoundByLikeFunction);
    add("has_fingerprint", int{kFingerprintValues + kComparedColumns}, HasFingerprintFunction);
}

void AddTextViews(sqlite3 *db, const std::vector<std::string> &columns)
{
    std::string list;
    for (const auto &column : columns) {
        const std::string quoted = '"' + runtime::Replace(column, "\"", "\"\"") + '"';
        const bool isText = column != "Path" && column != "Duplicated" && column != "Lyrics";
        list += (list.empty() ? "" : ", ") + quoted;
        if (isText) // paths are compared byte by byte, as the file system does
            list += " COLLATE " + std::string(kCollation) + " AS " + quoted;
    }
    const std::string textView =
        "CREATE TEMP VIEW " + std::string(kTextView) + " AS SELECT " + list + " FROM main.MP3s";
    const std::string rowView = "CREATE TEMP VIEW " + std::string(kRowView) +
                                " AS SELECT rowid AS RowNo, " + list + " FROM main.MP3s";
    sqlite3_exec(db, textView.c_str(), nullptr, nullptr, nullptr);
    sqlite3_exec(db, rowView.c_str(), nullptr, nullptr, nullptr);
}

} // namespace catalogue
