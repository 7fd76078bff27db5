#include "patches/aside.h"

#include "base/handle.h"
#include "base/scope_exit.h"
#include "window/message_wait.h"

namespace {

DWORD WINAPI Run(void* work)
{
    (*static_cast<const std::function<void()>*>(work))();
    return 0;
}

} // namespace

void RunAside(const std::function<void()>& work)
{
    const CKernelOwner thread(
        ::CreateThread(nullptr, 0, Run, const_cast<std::function<void()>*>(&work), 0, nullptr));
    if (!thread) {
        work();
        return;
    }
    // It works with what the caller owns, so nobody leaves before its end: neither a page that goes nor what a handler throws.
    const scope_exit joined([&thread] { ::WaitForSingleObject(thread.get(), INFINITE); });
    static_cast<void>(WaitWithMessages(thread.get()));
}
