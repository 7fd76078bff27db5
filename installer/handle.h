// The owner of a handle of the installer service: a database, view or record that this code opened itself. The
// product's database handle is the host's and never comes in here.
#pragma once

#include "base/handle.h"
#include "include/setup_enums.h"

#include <msi.h>
#include <msiquery.h>

#include <type_traits>

static_assert(std::is_same_v<InstallerHandle, MSIHANDLE>);

struct InstallerHandleKind
{
    using Handle = InstallerHandle;
    static Handle Invalid() noexcept { return 0; }
    static void Close(Handle handle) noexcept { MsiCloseHandle(handle); }
};

using CInstallerHandle = CHandleOwner<InstallerHandleKind>;
