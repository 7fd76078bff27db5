// Any bytes as Changes.json and as a command of a deployment: no crash; a script whose settings could be put back has the
// same ones afterwards, and no other byte of it has changed its place.
#include "builder/changes_codes.h"
#include "builder/command_settings.h"

#include <cstdlib>

namespace {

void Require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::vector<DatabaseCodes> databases;
    if (ReadDatabaseCodes(bytes.data(), bytes.size(), databases)) {
        for (const DatabaseCodes& database : databases) {
            Require(!database.strTarget.IsEmpty() && !database.strPackageCode.IsEmpty());
        }
    }
    const WorkstationCommands built = {L"\\\\server\\logs", true, L"/qb-!"};
    std::string restored;
    std::vector<SettingChange> changes;
    if (RestoreSettings(bytes, built, restored, changes)) {
        std::string again;
        Require(RestoreSettings(restored, built, again, changes) && changes.empty() && again == restored);
    }
    return 0;
}
