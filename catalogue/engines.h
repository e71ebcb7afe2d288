// catalogue/engines.h - the database engines. The connection string names the one to use; another
// engine is one more entry in Providers().
#pragma once

#include "catalogue/provider.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue
{

// An engine: the word after "Provider=" that chooses it, and how it resolves a connection string.
struct Provider {
    std::string name;
    std::function<Opener(const std::string &connectionString)> resolve;
};

// The known engines. A test may add one and must remove it again.
std::vector<Provider> &Providers();

// How to open the database that the string names. The string is parsed here, once for any number of
// connections.
// Errors: ProviderFailure; kNoProvider when no engine has that name.
Opener ResolveConnection(const std::string &connectionString);

// The value of `key` in a connection string, which has parts "key=value" with ";" between them
// (letter case of the key ignored); empty when it has none.
std::string ConnectionPart(std::string_view connectionString, std::string_view key);

} // namespace catalogue
