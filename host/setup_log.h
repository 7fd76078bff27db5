// The setup's log: a line a time stamp, UTF-8, readable while it is written.
#pragma once

#include "base/string.h"

class CSetupLog
{
public:
    void Open(const CString& file) { m_file = file; }
    const CString& GetFile() const { return m_file; }
    // A log that can't be written stops nothing: the lines are then lost on purpose.
    void Append(const CString& line) const;

private:
    CString m_file;
};
