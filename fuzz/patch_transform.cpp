// The streams of a transform, each behind its number of bytes (two), in the order of the names below: whatever they hold, they
// are judged without a crash, and the same way twice.
#include "builder/transform_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const wchar_t* const names[] = {L"_StringPool", L"_StringData", L"_Tables",
                                           L"_Columns",    L"Property",    L"More"};
    TransformStreams streams;
    for (const wchar_t* name : names) {
        if (size < 2) {
            break;
        }
        const std::size_t wanted = static_cast<std::size_t>(data[0] | data[1] << 8);
        const std::size_t length = wanted < size - 2 ? wanted : size - 2;
        streams[name] = StreamBytes(data + 2, data + 2 + length);
        data += 2 + length;
        size -= 2 + length;
    }
    DatabaseSnapshot database;
    database[L"Property"] = {{L"Property", L"Value", L"Number"}, {L"s72", L"l0", L"I4"}, 1, {}};
    if (!(FindTransformFault(database, streams) == FindTransformFault(database, streams))) {
        __builtin_trap();
    }
    return 0;
}
