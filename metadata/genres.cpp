#include "metadata/genres.h"

#include "runtime/numbers.h"
#include "runtime/text.h"

#include <cmath>

namespace metadata
{

const std::array<std::string_view, 126> kGenreNames = {
    "Blues",
    "Classic Rock",
    "Country",
    "Dance",
    "Disco",
    "Funk",
    "Grunge",
    "Hip-Hop",
    "Jazz",
    "Metal",
    "New Age",
    "Oldies",
    "Other",
    "Pop",
    "R&B",
    "Rap",
    "Reggae",
    "Rock",
    "Techno",
    "Industrial",
    "Alternative",
    "Ska",
    "Death Metal",
    "Pranks",
    "Soundtrack",
    "Euro-Techno",
    "Ambient",
    "Trip-Hop",
    "Vocal",
    "Jazz+Funk",
    "Fusion",
    "Trance",
    "Classical",
    "Instrumental",
    "Acid",
    "House",
    "Game",
    "Sound Clip",
    "Gospel",
    "Noise",
    "AlternRock",
    "Bass",
    "Soul",
    "Punk",
    "Space",
    "Meditative",
    "Instrumental Pop",
    "Instrumental Rock",
    "Ethnic",
    "Gothic",
    "Darkwave",
    "Techno-Indistrial",
    "Electronic",
    "Pop-Folk",
    "Eurodance",
    "Dream",
    "Southern Rock",
    "Comedy",
    "Cult",
    "Gansta",
    "Top 40",
    "Christian Rap",
    "Pop/Funk",
    "Jungle",
    "Native American",
    "Cabaret",
    "New Wave",
    "Psychaledic",
    "Rave",
    "Showtunes",
    "Trailer",
    "Lo-Fi",
    "Tribal",
    "Acid Punk",
    "Acid Jazz",
    "Polka",
    "Retro",
    "Musical",
    "Rock & Roll",
    "Hard Rock",
    "Folk",
    "Folk-Rock",
    "National Folk",
    "Swing",
    "Fast Fusion",
    "Bebop",
    "Latin",
    "Revival",
    "Celtic",
    "Bluegrass",
    "Avantgarde",
    "Gothic Rock",
    "Progressive Rock",
    "Psychadelic Rock",
    "Symphonic Rock",
    "Slow Rock",
    "Big Band",
    "Chorus",
    "Easy Listening",
    "Acoustic",
    "Humour",
    "Speech",
    "Chanson",
    "Opera",
    "Chamber Music",
    "Sonata",
    "Symphony",
    "Booty Bass",
    "Primus",
    "Porn Groove",
    "Satire",
    "Slow Jam",
    "Club",
    "Tango",
    "Samba",
    "Folklore",
    "Ballad",
    "Power Ballad",
    "Rhythmic Soul",
    "Freestyle",
    "Duet",
    "Punk Rock",
    "Drum Solo",
    "A Capella",
    "Euro-House",
    "Dance Hall",
};

const std::string_view kOtherGenreNames =
    " |Blues|Classic Rock|Country|Dance|Disco|Funk|Grunge|Hip-Hop|Jazz|Metal|New Age|Oldies|Other|"
    "Pop|R&B|Rap|Reggae|Rock|Techno|Industrial|Alternative|Ska|Death Metal|Pranks|Soundtrack|"
    "Euro-Techno|Ambient|Trip Hop|Vocal|Jazz+Funk|Fusion|Trance|Classical|Instrumental|Acid|House|"
    "Game|Sound Clip|Gospel|Noise|Alt. Rock|Bass|Soul|Punk|Space|Meditative|Instrumental Pop|"
    "Instrumental Rock|Ethnic|Gothic|Darkwave|Techno-Industrial|Electronic|Pop-Folk|Eurodance|"
    "Dream|Southern Rock|Comedy|Cult|Gangsta Rap|Top 40|Christian Rap|Pop/Punk|Jungle|"
    "Native American|Cabaret|New Wave|Phychedelic|Rave|Showtunes|Trailer|Lo-Fi|Tribal|Acid Punk|"
    "Acid Jazz|Polka|Retro|Musical|Rock & Roll|Hard Rock|Folk|Folk/Rock|National Folk|Swing|"
    "Fast-Fusion|Bebob|Latin|Revival|Celtic|Blue Grass|Avantegarde|Gothic Rock|Progressive Rock|"
    "Psychedelic Rock|Symphonic Rock|Slow Rock|Big Band|Chorus|Easy Listening|Acoustic|Humour|"
    "Speech|Chanson|Opera|Chamber Music|Sonata|Symphony|Booty Bass|Primus|Porn Groove|Satire|"
    "Slow Jam|Club|Tango|Samba|Folklore|Ballad|power Ballad|Rhythmic Soul|Freestyle|Duet|"
    "Punk Rock|Drum Solo|A Cappella|Euro-House|Dance Hall|Goa|Drum & Bass|Club-House|Hardcore|"
    "Terror|indie|Brit Pop|Negerpunk|Polsk Punk|Beat|Christian Gangsta Rap|Heavy Metal|"
    "Black Metal|Crossover|Comteporary Christian|Christian Rock|Merengue|Salsa|Trash Metal|Anime|"
    "JPop|Synth Pop";

namespace
{

bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

} // namespace

std::string GenreName(std::string_view value)
{
    const auto number = runtime::ParseNumber(value);
    if (!number)
        return std::string(value);
    if (*number == 0 && IsLetter(value.front()))
        return std::string(value); // cannot happen: a number does not begin with a letter
    if (*number == 0 && value != "0")
        return std::string(kGenreNames[0]);
    return GenreName(*number);
}

std::string GenreName(double value)
{
    if (value == 0)
        return "255"; // not "Blues": number 0 shows as no genre
    const bool named = value >= 1 && value < kGenreNames.size() && value == std::floor(value);
    return named ? std::string(kGenreNames[static_cast<std::size_t>(value)]) : std::string();
}

std::int16_t GenreNumber(std::string_view name)
{
    const std::string wanted = runtime::UpperAscii(name);
    for (std::size_t number = 0; number < kGenreNames.size(); ++number)
        if (runtime::UpperAscii(GenreName(static_cast<double>(number))) == wanted)
            return static_cast<std::int16_t>(number);
    return 255;
}

} // namespace metadata
