// catalogue/sql/statementparams.h - puts parameters into a statement, as data. No state.
#pragma once

#include "catalogue/params.h"
#include "catalogue/provider.h"

#include <string>
#include <string_view>

namespace catalogue
{

// `words` with the parameters in the places of `marker`: each takes the first marker that remains,
// from left to right. So when a value contains the marker, later values replace the markers in it:
// their text, unquoted, becomes part of its text. The texts in apostrophes in `words` are data as
// well, and markers in them are not replaced. A value for which there is no marker is not used;
// when the marker is empty, no value is used. A marker without a value stays in the statement,
// which then fails, or becomes the empty text, see LeftOver. The time is proportional to the length
// of the texts.
Statement SubstituteParams(std::string_view words, const Params &params, const Marker &marker);

// The statement as a readable text: each value is written as a literal. A literal of more than 200
// characters keeps its beginning and its end, and says how many characters are left out.
std::string ReadableText(const Statement &statement);

// The kind of the statement; see ADOclass::TipoConsulta.
StatementKind KindOf(std::string_view statement);

// `value` as a literal of `type`; see ADOclass::AddDato.
std::string LiteralOf(const Value &value, DatoType type, int width = 0);

// The parameters in the form for a stored query: an array with at least two elements is not
// changed; one element, one value or none becomes one value.
std::vector<Value> StoredValues(const Params &params);

} // namespace catalogue
