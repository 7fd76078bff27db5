// Takes the columns of a fetched record one after the other, for the row classes.
#pragma once

#include "base/string.h"
#include "include/setup_enums.h"

// The record holds the columns of the mask alone. Each call stands for the next field of the row; a field whose bit isn't
// in the mask is left as it is. Texts are taken only while all went well, so that the columns behind a text that couldn't
// be read don't move; numbers always.
class CRecordReader
{
public:
    CRecordReader(InstallerHandle record, unsigned int mask) : m_record(record), m_mask(mask) {}

    // False when the field was left out, by the mask or after a failure.
    bool ReadText(CString& field);
    // A null number makes the result false, another one makes it true whatever came before.
    void ReadNumber(int& field);
    // A number that is null as a rule: it doesn't touch the result.
    void ReadOptionalNumber(int& field);
    [[nodiscard]] bool GetResult() const { return m_result; }

private:
    bool IsNextWanted();

    InstallerHandle m_record;
    unsigned int m_mask;
    unsigned int m_bit = 1;
    unsigned int m_column = 1;
    bool m_result = true;
};
