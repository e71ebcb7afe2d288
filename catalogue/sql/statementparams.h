// catalogue/sql/statementparams.h - puts parameters into a statement, as data. No state.
#pragma once

#include "catalogue/params.h"
#include "catalogue/provider.h"

#include <string>
#include <string_view>

namespace catalogue
{

// `words` with the parameters in the places of `marker`: each takes the first marker that remains,
// from left to right. A value that holds the marker therefore takes the later values into itself:
// their bare text becomes part of its text, whatever it holds. The texts in apostrophes in
// `words` are data as well, and no marker is looked for in them.
// A value without a marker is left out, as is every value where the marker is empty. A marker
// without a value stays, which makes the statement fail, or is the empty text where the marker says
// so. The work grows with the length of the texts only.
Statement SubstituteParams(std::string_view words, const Params &params, const Marker &marker);

// The statement as a person reads it: each value written as a literal. A literal of more than 200
// characters keeps its beginning and its end, and says how many characters are left out.
std::string ReadableText(const Statement &statement);

// The kind that the upper-cased text has; see ADOclass::TipoConsulta.
StatementKind KindOf(std::string_view statement);

// `value` as a literal of `type`; see ADOclass::AddDato.
std::string LiteralOf(const Value &value, DatoType type, int width = 0);

// The parameters as a stored query takes them: an array with at least two elements as it is;
// one element, one value or none as one value.
std::vector<Value> StoredValues(const Params &params);

} // namespace catalogue
