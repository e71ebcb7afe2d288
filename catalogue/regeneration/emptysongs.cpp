#include "catalogue/regeneration/emptysongs.h"

#include "catalogue/adoclass.h"
#include "catalogue/sqlite/cataloguecopy.h"

namespace catalogue
{

namespace
{

// Whether there are rows that a deletion would lose.
bool HasSongs()
{
    const auto records = Records(DataAccess->ExecuteSQL("SELECT * FROM MP3s", kDetect));
    return records != nullptr && records->IsOpen() && !records->AtEnd();
}

} // namespace

std::string EmptySongs()
{
    if (HasSongs()) {
        std::string reason = CopyCatalogue(DataAccess->DirBase + DataAccess->DataBaseName + ".mdb");
        if (!reason.empty())
            return reason;
    }
    DataAccess->ExecuteSQL("DELETE FROM MP3s", kDetect);
    return DataAccess->Succeeded ? std::string() : DataAccess->ErrorMessage;
}

} // namespace catalogue
