// catalogue/engines.h - the database engines that there are. One is chosen by the connection
// string's own words; another engine is one more entry in Providers().
#pragma once

#include "catalogue/provider.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue
{

// An engine: the word after "Provider=", and what it makes of a connection string.
struct Provider {
    std::string name;
    std::function<Opener(const std::string &connectionString)> resolve;
};

// The engines known; a test may put one in and takes it out again.
std::vector<Provider> &Providers();

// How the engine that the string names opens its database. The string is read here, so that many
// connections to one database cost this once.
// Errors: ProviderFailure; kNoProvider when there is no engine of that name.
Opener ResolveConnection(const std::string &connectionString);

// The value of `key` in a connection string of "key=value" parts between ";" (names without regard
// to letter case); empty when it has none.
std::string ConnectionPart(std::string_view connectionString, std::string_view key);

} // namespace catalogue
