#include "msi/record_reader.h"

#include "installer/handle.h"
#include "msi/msi_property.h"

bool CRecordReader::IsNextWanted()
{
    const bool wanted = (m_mask & m_bit) != 0;
    m_bit <<= 1;
    return wanted;
}

bool CRecordReader::ReadText(CString& field)
{
    if (!IsNextWanted() || !m_result) {
        return false;
    }
    m_result = ReadRecordText(m_record, m_column++, field);
    return true;
}

void CRecordReader::ReadNumber(int& field)
{
    if (IsNextWanted()) {
        field = MsiRecordGetInteger(m_record, m_column++);
        m_result = field != static_cast<int>(MSI_NULL_INTEGER);
    }
}

void CRecordReader::ReadOptionalNumber(int& field)
{
    if (IsNextWanted()) {
        field = MsiRecordGetInteger(m_record, m_column++);
    }
}
