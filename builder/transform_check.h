// Whether the tables of a transform can be changes of a database: asked before the installer applies it, which trusts what it
// reads. No window header.
//
// A transform holds a stream for each table that it changes. A row of it begins with a mask of 16 bits: 0 for a row that goes, of
// which the keys follow; with bit 0 set for a whole row, whose number of columns stands in the high byte; otherwise a bit
// for each column that follows the keys. A text is a number in the transform's own pool of texts.
#pragma once

#include "installer/table_snapshot.h"

#include <map>
#include <vector>

using StreamBytes = std::vector<unsigned char>;
// By name of table, those of the pool of texts included.
using TransformStreams = std::map<CString, StreamBytes>;

// The name of a table from that of its stream, in which two letters share a unit; empty for a stream of another kind.
[[nodiscard]] CString TableOfStream(const CString& streamName);

// Why they can't be changes of that database, to follow after "it"; empty when they can.
[[nodiscard]] CString FindTransformFault(const DatabaseSnapshot& database, const TransformStreams& streams);
