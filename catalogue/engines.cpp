#include "catalogue/engines.h"

#include "catalogue/sqlite/sqliteprovider.h"
#include "runtime/text.h"

namespace catalogue
{

std::vector<Provider> &Providers()
{
    static std::vector<Provider> providers = {{"Microsoft.Jet.OLEDB.4.0", ResolveCatalogueFile}};
    return providers;
}

Opener ResolveConnection(const std::string &connectionString)
{
    const std::string name = ConnectionPart(connectionString, "Provider");
    for (const auto &provider : Providers())
        if (runtime::EqualAscii(provider.name, name))
            return provider.resolve(connectionString);
    throw ProviderFailure(kNoProvider,
                          "Provider cannot be found. It may not be properly installed.");
}

std::string ConnectionPart(std::string_view connectionString, std::string_view key)
{
    for (std::size_t at = 0; at <= connectionString.size();) {
        const auto end = std::min(connectionString.find(';', at), connectionString.size());
        const auto part = connectionString.substr(at, end - at);
        const auto equals = part.find('=');
        if (equals != std::string_view::npos && runtime::EqualAscii(part.substr(0, equals), key))
            return std::string(part.substr(equals + 1));
        at = end + 1;
    }
    return {};
}

} // namespace catalogue
