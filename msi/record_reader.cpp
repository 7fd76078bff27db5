#include "msi/record_reader.h"

#include "installer/handle.h"
#include "msi/msi_property.h"

bool RecordReader::IsNextWanted()
{
    const bool wanted = (m_mask & m_bit) != 0;
    m_bit <<= 1;
    return wanted;
}

bool RecordReader::TakeText(CString& field)
{
    if (!IsNextWanted() || !m_result) {
        return false;
    }
    m_result = ReadRecordText(m_record, m_column++, field);
    return true;
}

void RecordReader::TakeNumber(int& field)
{
    if (IsNextWanted()) {
        field = MsiRecordGetInteger(m_record, m_column++);
        m_result = field != static_cast<int>(MSI_NULL_INTEGER);
    }
}

void RecordReader::TakeOptionalNumber(int& field)
{
    if (IsNextWanted()) {
        field = MsiRecordGetInteger(m_record, m_column++);
    }
}
