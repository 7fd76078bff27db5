// Starting programs on a platform that now and then fails to start one.
#pragma once

#include <windows.h>

#include <cstdio>

// What the command interpreter ends with when it could not start a program.
constexpr unsigned long INTERPRETER_STARTED_NOTHING = 9009;

// Wine fails to start a process about once in some ten thousand times, with ERROR_INTERNAL_ERROR; a script then ends with
// 9009 before anything was installed. Such a start is tried once more, and said. A script that names a program which isn't
// there fails the second time too.
template <class Run>
unsigned long RunOnceMoreWhenNotStarted(Run run)
{
    unsigned long code = run();
    if (code == INTERPRETER_STARTED_NOTHING || code == ERROR_INTERNAL_ERROR) {
        std::printf("The platform started no process (%lu); tried once more.\n", code);
        code = run();
    }
    return code;
}
