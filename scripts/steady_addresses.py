"""Starts the programs of this process at steady addresses, which Wine needs to start every time.

Wine maps one page of each process at 0x7FFE0000. Since version 6.9 Linux puts the heap of a program that is linked to a
fixed address, as Wine's loader is, anywhere within the gigabyte above it; about once in some thousand starts it covers that
page, and the loader exits with 1 without a word. CreateProcess then answers ERROR_INTERNAL_ERROR.
"""

import ctypes
import os
import sys

ADDR_NO_RANDOMIZE = 0x0040000
READ_ONLY = 0xFFFFFFFF


def keep_addresses_steady():
    """For all that this process starts from now on, and what that starts. False, with a warning, where the system refuses."""
    library = ctypes.CDLL(None, use_errno=True)
    library.personality.argtypes = [ctypes.c_ulong]
    present = library.personality(READ_ONLY)
    if present >= 0 and library.personality(present | ADDR_NO_RANDOMIZE) >= 0:
        return True
    print("Addresses can't be kept steady (%s): Wine may fail to start a program about once in 5,000 starts."
          % os.strerror(ctypes.get_errno()), file=sys.stderr, flush=True)
    return False
