// catalogue/sql/statementparams.h - puts parameters into the text of a statement. No state.
#pragma once

#include "catalogue/adoclass.h"

#include <string>
#include <string_view>

namespace catalogue
{

// `statement` with the parameters written in as literals, each in the place of the first `marker`
// that remains; an empty marker, or one that does not remain, leaves its value out.
std::string SubstituteParams(std::string_view statement, const Params &params,
                             std::string_view marker);

// The parameters as a stored query takes them: an array with at least two elements as it stands;
// one element, one value or none as one value.
std::vector<Value> StoredValues(const Params &params);

} // namespace catalogue
