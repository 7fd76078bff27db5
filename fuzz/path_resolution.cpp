// Lines "flags key=text" as rows, up to an empty line; then the value. What the resolver makes of it in both directions is
// what the model makes of it.
#include "paths/path_resolution.h"
#include "fuzz/path_model.h"
#include "fuzz/wide_input.h"

#include <memory>

namespace {

void Require(bool claim)
{
    if (!claim) {
        __builtin_trap();
    }
}

// What a database can't hold in a text ends it.
CString UpToZero(const CString& text)
{
    return CString(text.GetString());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CString rest = WideInput(data, size);
    DirectoryMap map;
    PathModel::Rows rows;
    for (CString line = UpToZero(FirstLine(CString(rest), rest)); !line.IsEmpty();
         line = UpToZero(FirstLine(CString(rest), rest))) {
        const int equals = line.Find(L'=', 1);
        if (equals < 0) {
            continue;
        }
        const TarnDirectoryMapColumns row = {line.Mid(1, equals - 1), line.Mid(equals + 1), line[0]};
        map[row.Directory_] = std::make_unique<TarnDirectoryMapColumns>(row);
        rows.push_back({PathModel::From(row.Directory_), PathModel::From(row.LocalString), row.Flags});
    }
    const CPathResolver resolver(std::move(map));
    const CString value = UpToZero(rest);
    const PathModel::Text text = PathModel::From(value);

    const CString decoded = resolver.DecodePathList(value);
    Require(PathModel::From(decoded) == PathModel::Decode(rows, text));
    for (const CString& shown : {value, decoded}) {
        CString encoded = shown;
        resolver.EncodePathList(encoded);
        Require(PathModel::From(encoded) == PathModel::Encode(rows, PathModel::From(shown)));
    }
    CString key = L"left over", behind = L"left over";
    const bool isAnchored = resolver.SplitDirectoryPrefix(key, behind, value);
    const PathModel::Split split = PathModel::SplitPrefix(rows, text);
    Require(isAnchored == split.isAnchored && PathModel::From(key) == split.key &&
            PathModel::From(behind) == split.rest);
    return 0;
}
