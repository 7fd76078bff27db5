#include "patches/aside.h"

#include "base/handle.h"
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
    if (WaitWithMessages(thread.get()) != WaitEnd::Signaled) {
        ::WaitForSingleObject(thread.get(), INFINITE); // it works with what the caller owns
    }
}
