#include "installer/query.h"

#include "installer/record.h"

namespace {

unsigned int RunWithTexts(CQuery& query, MSIHANDLE database, const wchar_t* statement,
                          std::initializer_list<CString> texts)
{
    unsigned int result = query.Open(database, statement);
    CInstallerHandle values;
    if (result == ERROR_SUCCESS && texts.size() != 0) {
        result = MakeTextRecord(texts, values);
    }
    return result == ERROR_SUCCESS ? query.Execute(values.get()) : result;
}

} // namespace

unsigned int CQuery::Open(MSIHANDLE database, const wchar_t* statement)
{
    return MsiDatabaseOpenViewW(database, statement, m_view.put());
}

unsigned int CQuery::Execute(MSIHANDLE values)
{
    return MsiViewExecute(m_view.get(), values);
}

unsigned int CQuery::Run(MSIHANDLE database, const wchar_t* statement)
{
    const unsigned int result = Open(database, statement);
    return result == ERROR_SUCCESS ? Execute() : result;
}

unsigned int CQuery::Fetch(CInstallerHandle& row)
{
    CInstallerHandle fetched;
    const unsigned int result = MsiViewFetch(m_view.get(), fetched.put());
    if (result == ERROR_SUCCESS) {
        row = std::move(fetched);
    } else {
        row.reset();
    }
    return result;
}

unsigned int CQuery::Update(const CInstallerHandle& row)
{
    return MsiViewModify(m_view.get(), MSIMODIFY_UPDATE, row.get());
}

unsigned int CQuery::Close()
{
    return MsiViewClose(m_view.get());
}

unsigned int CQuery::ReadColumns(MSICOLINFO kind, CInstallerHandle& columns)
{
    return MsiViewGetColumnInfo(m_view.get(), kind, columns.put());
}

unsigned int RunStatement(MSIHANDLE database, const wchar_t* statement, std::initializer_list<CString> texts)
{
    CQuery query;
    return RunWithTexts(query, database, statement, texts);
}

unsigned int ForEachRow(MSIHANDLE database, const wchar_t* query, std::initializer_list<CString> texts,
                        const RowFunction& onRow)
{
    CQuery walk;
    unsigned int result = RunWithTexts(walk, database, query, texts);
    while (result == ERROR_SUCCESS) {
        CInstallerHandle row;
        result = walk.Fetch(row);
        if (result == ERROR_SUCCESS && !onRow(row.get())) {
            return ERROR_SUCCESS;
        }
    }
    return result == ERROR_NO_MORE_ITEMS ? UINT{ERROR_SUCCESS} : result;
}
