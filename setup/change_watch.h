// Whether something was entered on the wizard pages of a run, so that leaving would lose it.
#pragma once

#include "include/page_context.h"
#include "window/string.h"

#include <vector>

// Looks on by hooks of the page: what its controls hold when it has come up and when it is left forward. One object at a
// time, as a hook has no argument of its own.
class CChangeWatch
{
public:
    CChangeWatch();
    ~CChangeWatch();
    CChangeWatch(const CChangeWatch&) = delete;
    CChangeWatch& operator=(const CChangeWatch&) = delete;

    // Call it with the context before the page is shown.
    void Watch(PageContext& context);
    [[nodiscard]] bool HasChanges() const { return m_bChanged; }
    void Note(bool changed) { m_bChanged = m_bChanged || changed; }
    // What was entered is gone.
    void Forget() { m_bChanged = false; }

private:
    static int OnPageUp(PageContext* context);
    static int OnPageLeft(PageContext* context);

    static CChangeWatch* s_current;

    std::vector<CString> m_entered;
    bool m_bChanged = false;
};
