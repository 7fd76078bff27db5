#include "builder/media_numbers.h"

#include "builder/build_names.h"

#include <map>
#include <vector>

void FreeReservedNumbers(const WriteTable& media, long long lastFile)
{
    std::map<long long, std::vector<RowValues*>> ends; // the media by the number that they end with
    bool isCovered = lastFile == 0;
    for (auto& [key, row] : media.Rows()) {
        const long long end = NumberOf(media.Value(row, L"LastSequence"));
        isCovered = isCovered || end == lastFile;
        if (end > lastFile) {
            ends[end].push_back(&row);
        }
    }
    long long number = isCovered ? lastFile : lastFile - 1;
    for (const auto& [end, rows] : ends) {
        ++number;
        for (RowValues* row : rows) {
            media.Set(*row, L"LastSequence", NumberText(number));
        }
    }
}
