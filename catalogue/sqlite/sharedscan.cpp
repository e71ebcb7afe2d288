#include "catalogue/sqlite/sharedscan.h"

#include "catalogue/provider.h"
#include "runtime/text.h"

#include <algorithm>
#include <utility>

namespace catalogue
{

SharedScan::SharedScan(std::shared_ptr<SqliteHandle> handle,
                       const std::vector<std::string> &columns)
    : m_handle(std::move(handle))
{
    for (const std::string &column : columns)
        m_wanted.order.push_back({column});
}

bool SharedScan::Read(const RowQuery &query)
{
    if (!PlaceOf(query))
        return false;
    try {
        if (m_version >= 0 && m_handle->DataVersion() == m_version)
            return true;
        const Snapshot snapshot(m_handle, [](const std::shared_ptr<SqliteHandle> &) {});
        m_version = m_handle->DataVersion();
        const auto &columns = m_handle->ColumnsOfMP3s();
        if (m_version >= 0 && LazyRecordset::CanSort(m_wanted, columns)) {
            m_found = FindRows(*m_handle, m_wanted, columns, [](sqlite3_stmt *) {});
            return true;
        }
    } catch (const ProviderFailure &) { // the statement itself will report it
    }
    GiveUp();
    return false;
}

std::optional<FoundRows> SharedScan::Take(const RowQuery &query)
{
    const auto place = PlaceOf(query);
    if (!place || m_handle->DataVersion() != m_version)
        return std::nullopt;
    FoundRows taken{m_found.rows, {}};
    taken.keys.push_back(std::move(m_found.keys[static_cast<std::size_t>(*place)]));
    m_found.keys.erase(m_found.keys.begin() + *place);
    m_wanted.order.erase(m_wanted.order.begin() + *place);
    return taken;
}

// The place of the column of `query` among those that are wanted; nothing for any other query.
std::optional<std::ptrdiff_t> SharedScan::PlaceOf(const RowQuery &query) const
{
    if (!query.condition.empty() || query.order.size() != 1 || query.order[0].descending)
        return std::nullopt;
    const auto found = std::ranges::find_if(m_wanted.order, [&](const OrderTerm &term) {
        return runtime::EqualAscii(term.column, query.order[0].column);
    });
    if (found == m_wanted.order.end())
        return std::nullopt;
    return found - m_wanted.order.begin();
}

void SharedScan::GiveUp()
{
    m_wanted.order.clear();
    m_found = {};
}

} // namespace catalogue
