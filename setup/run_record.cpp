#include "setup/run_record.h"

#include "setup/run_end_rules.h"

#include <algorithm>

namespace {

RunRecord* g_record = nullptr;

CString RecordName(DWORD processId)
{
    CString name;
    name.Format(L"Local\\RolloutSetup-%08X", processId);
    return name;
}

template <int Size>
void CopyText(wchar_t (&target)[Size], const CString& text)
{
    const int length = std::min(text.GetLength(), Size - 1); // the last zero is never overwritten
    std::copy_n(text.GetString(), length, target);
    target[length] = 0;
}

} // namespace

bool CRunRecord::Create(DWORD processId)
{
    m_mapping.reset(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(RunRecord),
                                       RecordName(processId)));
    return Map(m_mapping.get());
}

bool CRunRecord::OpenOwn()
{
    m_mapping.reset(OpenFileMappingW(FILE_MAP_WRITE, FALSE, RecordName(GetCurrentProcessId())));
    return Map(m_mapping.get());
}

bool CRunRecord::Map(HANDLE mapping)
{
    m_view.reset(mapping ? MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, sizeof(RunRecord)) : nullptr);
    return m_view.get() != nullptr;
}

void UseRunRecord(RunRecord* record)
{
    g_record = record;
}

RunRecord* GetRunRecord()
{
    return g_record;
}

void NoteSignOfLife() noexcept
{
    if (g_record) {
        InterlockedIncrement64(&g_record->signsOfLife);
    }
}

void NoteRunStep(const CString& line)
{
    static CRunSteps steps;
    NoteSignOfLife();
    steps.Add(line);
    if (g_record) {
        CopyText(g_record->step, steps.Text());
    }
}

void NoteRunLog(const CString& path)
{
    if (g_record) {
        CopyText(g_record->log, path);
    }
}

void NoteRunEnd(unsigned int exitCode) noexcept
{
    if (g_record) {
        g_record->exitCode = exitCode;
        InterlockedExchange(&g_record->ended, 1);
    }
}
