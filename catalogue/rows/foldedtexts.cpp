#include "catalogue/rows/foldedtexts.h"

#include "catalogue/machineclock.h"
#include "catalogue/provider.h"
#include "runtime/text.h"

#include <algorithm>

namespace catalogue
{

namespace
{

constexpr std::size_t kBlockBytes = 128u << 10; // fits into a processor's cache
constexpr int kRowsBetweenLooks = 32;           // at the clock

// The column of that name; nothing when it is not kept.
std::optional<std::size_t> IndexOf(std::string_view column)
{
    for (std::size_t i = 0; i < FoldedTexts::kColumns.size(); ++i)
        if (runtime::EqualAscii(FoldedTexts::kColumns[i], column))
            return i;
    return std::nullopt;
}

const std::string &ReadStatement()
{
    static const std::string statement = [] {
        std::string text = "SELECT rowid";
        for (const std::string_view column : FoldedTexts::kColumns)
            text.append(", ").append(column);
        return text + " FROM main.MP3s NOT INDEXED WHERE rowid > ?1 ORDER BY rowid";
    }();
    return statement;
}

// A read transaction of the object's own connection.
class Reading
{
public:
    explicit Reading(SqliteHandle &handle) : m_handle(handle) { m_handle.RunOwn("BEGIN"); }
    ~Reading() { m_handle.RunOwn("COMMIT"); }
    Reading(const Reading &) = delete;
    Reading &operator=(const Reading &) = delete;

private:
    SqliteHandle &m_handle;
};

} // namespace

void RowBits::And(const RowBits &other)
{
    for (std::size_t i = 0; i < m_words.size(); ++i)
        m_words[i] &= other.m_words[i];
}

void RowBits::Or(const RowBits &other)
{
    for (std::size_t i = 0; i < m_words.size(); ++i)
        m_words[i] |= other.m_words[i];
}

struct FoldedTexts::Wanted {
    Wanted(const LikePattern &likePattern, std::size_t rows) : pattern(&likePattern), found(rows) {}

    const LikePattern *pattern;
    RowBits found;
};

FoldedTexts::FoldedTexts(std::shared_ptr<SqliteHandle> handle, const std::string &folder)
    : m_handle(std::move(handle)), m_file(folder)
{
    m_handle->KeepFewPages(true);
}

bool FoldedTexts::ReadSome(std::int64_t budgetMs)
{
    if (m_state != State::Reading)
        return false;
    try {
        const Reading reading(*m_handle);
        const std::int64_t version = m_handle->DataVersion();
        if (m_version < 0)
            m_version = version;
        if (version < 0 || version != m_version)
            m_state = State::GivenUp;
        else
            ReadRows(MachineMs() + budgetMs);
    } catch (const ProviderFailure &) {
        m_state = State::GivenUp;
    }
    return m_state == State::Reading;
}

void FoldedTexts::ReadRows(std::int64_t untilMs)
{
    auto *statement = m_handle->Prepare(ReadStatement()).statement;
    const StatementUse use(statement);
    sqlite3_bind_int64(statement, 1, m_rows.empty() ? INT64_MIN : m_rows.back());
    int code = SQLITE_OK;
    for (int rows = 0; (code = sqlite3_step(statement)) == SQLITE_ROW;) {
        if (!AddRow(statement)) {
            m_state = State::GivenUp;
            return;
        }
        if (++rows % kRowsBetweenLooks == 0 && MachineMs() >= untilMs)
            return;
    }
    if (code != SQLITE_DONE)
        m_handle->Throw(code);
    m_state = State::Complete;
    for (Column &column : m_columns) {
        if (!CloseBlock(column))
            m_state = State::GivenUp;
        column.open = {};
        column.ends.shrink_to_fit();
    }
}

bool FoldedTexts::AddRow(sqlite3_stmt *row)
{
    const std::size_t number = m_rows.size();
    m_rows.push_back(sqlite3_column_int64(row, 0));
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        Column &column = m_columns[i];
        const int field = static_cast<int>(i) + 1;
        if (sqlite3_column_type(row, field) == SQLITE_NULL)
            column.nulls.push_back(number);
        else
            runtime::AppendUpperText(ColumnText(row, field), column.open);
        if (column.open.size() > UINT32_MAX)
            return false;
        column.ends.push_back(static_cast<std::uint32_t>(column.open.size()));
        if (column.open.size() >= kBlockBytes && !CloseBlock(column))
            return false;
    }
    return m_file.Size() < kMostBytes;
}

bool FoldedTexts::CloseBlock(Column &column)
{
    const std::size_t first = column.blocks.empty() ? 0 : column.blocks.back().lastRow;
    column.blocks.push_back(
        {m_file.Size(), static_cast<std::uint32_t>(column.open.size()), first, column.ends.size()});
    const bool isWritten = column.open.empty() || m_file.Append(column.open);
    column.open.clear();
    return isWritten;
}

bool FoldedTexts::IsCurrent()
{
    if (m_state == State::Complete && m_handle->DataVersion() != m_version)
        m_state = State::GivenUp;
    return m_state == State::Complete;
}

std::optional<std::vector<std::int64_t>> FoldedTexts::Find(const LikeSearch &search) const
{
    std::vector<Wanted> wanted;
    std::array<std::vector<Wanted *>, kColumns.size()> ofColumns;
    wanted.reserve(search.patterns.size());
    for (std::size_t term = 0; term < search.patterns.size(); ++term) {
        const auto column = IndexOf(search.columns[search.columnOf[term]]);
        if (!column)
            return std::nullopt;
        ofColumns[*column].push_back(&wanted.emplace_back(search.patterns[term], m_rows.size()));
    }
    for (std::size_t i = 0; i < m_columns.size(); ++i)
        if (!ofColumns[i].empty() && !FindInColumn(m_columns[i], ofColumns[i]))
            return std::nullopt;
    const RowBits found = Evaluate(search.root, wanted);
    std::vector<std::int64_t> numbers;
    for (std::size_t word = 0; word < found.Words().size(); ++word)
        for (std::uint64_t bits = found.Words()[word]; bits != 0; bits &= bits - 1)
            numbers.push_back(m_rows[word * 64 + static_cast<std::size_t>(__builtin_ctzll(bits))]);
    return numbers;
}

bool FoldedTexts::FindInColumn(const Column &column, std::vector<Wanted *> &wanted) const
{
    std::string texts;
    for (const Block &block : column.blocks) {
        if (!m_file.Read(block.offset, block.bytes, texts))
            return false;
        for (Wanted *one : wanted)
            FindInBlock(column, block, texts, *one);
    }
    if (column.nulls.empty())
        return true;
    RowBits values(m_rows.size()); // a null matches no pattern, not even "%"
    for (std::size_t row = 0, null = 0; row < m_rows.size(); ++row) {
        if (null < column.nulls.size() && column.nulls[null] == row)
            ++null;
        else
            values.Set(row);
    }
    for (Wanted *one : wanted)
        one->found.And(values);
    return true;
}

// The next row that may match is found by searching for the pattern's longest piece.
void FoldedTexts::FindInBlock(const Column &column, const Block &block, std::string_view texts,
                              Wanted &wanted)
{
    const ByteSearch &piece = wanted.pattern->LongestPiece();
    const std::size_t length = piece.Needle().size();
    std::size_t begin = 0; // of the row's text
    std::size_t next = length == 0 ? 0 : piece.Find(texts);
    for (std::size_t row = block.firstRow; row < block.lastRow && next != ByteSearch::kNone;
         ++row) {
        const std::size_t end = column.ends[row];
        if (next >= end && length != 0) {
            begin = end;
            continue;
        }
        const bool isInside = length == 0 || next + length <= end;
        if (isInside && (wanted.pattern->IsContains() ||
                         wanted.pattern->MatchesUpper(texts.substr(begin, end - begin))))
            wanted.found.Set(row);
        // A piece that begins in this text and ends in the next one is not a match; the search
        // continues in the next text.
        if (length != 0)
            next = piece.Find(texts, end);
        begin = end;
    }
}

RowBits FoldedTexts::Evaluate(const LikeNode &node, const std::vector<Wanted> &wanted) const
{
    if (node.kind == LikeNode::Kind::Term)
        return wanted[node.term].found;
    RowBits result = Evaluate(node.parts.front(), wanted);
    for (std::size_t i = 1; i < node.parts.size(); ++i) {
        const RowBits part = Evaluate(node.parts[i], wanted);
        if (node.kind == LikeNode::Kind::All)
            result.And(part);
        else
            result.Or(part);
    }
    return result;
}

} // namespace catalogue
