// Reads all that a database holds, uncommitted changes included.
#pragma once

#include "installer/handle.h"
#include "installer/table_snapshot.h"

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <set>

// Why a snapshot could not be read; thrown by the calls below.
struct SnapshotFailure
{
    unsigned int code = 0; // the service's
    CString strPart;       // what was read: "the table File"; empty for a table that is listed without a name
    bool bOfSecond = false; // of two databases
};

// Reads the next bytes of a stream; 0 behind the last.
using StreamReader = std::function<std::size_t(void* bytes, std::size_t room)>;

// What the reading asks of its caller. Both may throw.
struct SnapshotCalls
{
    // The text that stands for a stream that isn't null: a cabinet of a gigabyte needs no gigabyte of memory.
    std::function<CString(const StreamReader& read)> describeStream;
    // Called for each table and for each piece of a stream.
    std::function<void()> poll;
};

// Every table with every row, and in `_Streams` those that belong to no table.
[[nodiscard]] DatabaseSnapshot ReadDatabaseSnapshot(MSIHANDLE database, const SnapshotCalls& calls);

// Some tables alone; those that aren't there are left out.
[[nodiscard]] DatabaseSnapshot ReadTableSnapshots(MSIHANDLE database,
                                                  std::initializer_list<const wchar_t*> names,
                                                  const SnapshotCalls& calls);

// Two databases to be compared, without rows that both have: these are dropped as they are read, so that two databases of
// nearly the same rows cost little more than reading them. A few that both have may be left. Tables of `whole` keep all.
struct SnapshotPair
{
    DatabaseSnapshot first;
    DatabaseSnapshot second;
};
[[nodiscard]] SnapshotPair ReadUnequalRows(MSIHANDLE first, MSIHANDLE second, const std::set<CString>& whole,
                                           const SnapshotCalls& calls);
