// scope_exit: runs a step when its scope ends, whichever way it ends.
#pragma once

#include <utility>

template <class Step>
class scope_exit
{
public:
    explicit scope_exit(Step step) : m_step(std::move(step)) {}
    ~scope_exit()
    {
        if (m_armed) {
            m_step();
        }
    }
    scope_exit(const scope_exit&) = delete;
    scope_exit& operator=(const scope_exit&) = delete;

    // The step is not run.
    void release() noexcept { m_armed = false; }

private:
    Step m_step; // must not throw: it runs in a destructor
    bool m_armed = true;
};
