// The numbers of files, and the media that the files lie on. No window header.
#pragma once

#include "builder/named_table.h"

// A medium may end behind its last file, to keep numbers free for the product's own patches. This gives up such numbers
// behind the product's last file: the medium that the last file lies on ends there, and each one behind it, which
// holds no file, takes one number of its own, so that their order stays.
void FreeReservedNumbers(const WriteTable& media, long long lastFile);
