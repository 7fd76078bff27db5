// A database with additions as a value, for tests of what is decided about them.
#pragma once

#include "builder/change_report.h"
#include "tests/rules/user_key.h"

#include <gtest/gtest.h>

// A product with one file of its own, sequence 7, on one medium that says it ends at 9.
class SnapshotWithAdditions : public testing::Test
{
protected:
    SnapshotWithAdditions()
    {
        database[L"File"] = {{L"File", L"Component_", L"FileName", L"FileSize", L"Attributes", L"Sequence"},
                             {L"s72", L"s72", L"l255", L"i4", L"I2", L"i2"},
                             1,
                             {}};
        database[L"Component"] = {{L"Component", L"Directory_"}, {L"s72", L"s72"}, 1, {}};
        database[L"Media"] = {{L"DiskId", L"LastSequence", L"Cabinet"}, {L"i2", L"i2", L"S255"}, 1, {}};
        database[L"TarnCustomFile"] = {
            {L"Component_", L"SourceFileName", L"Flags"}, {L"s72", L"S0", L"I4"}, 1, {}};
        database[L"Feature"] = {{L"Feature", L"Directory_"}, {L"s38", L"S72"}, 1, {}};
        database[L"FeatureComponents"] = {{L"Feature_", L"Component_"}, {L"s38", L"s72"}, 2, {}};
        database[L"CreateFolder"] = {{L"Directory_", L"Component_"}, {L"s72", L"s72"}, 2, {}};
        database[L"CustomAction"] = {{L"Action"}, {L"s72"}, 1, {}};
        database[L"Directory"] = {
            {L"Directory", L"DefaultDir", L"Directory_Parent"}, {L"s72", L"l255", L"S72"}, 1, {}};
        database[L"InstallExecuteSequence"] = {{L"Action", L"Sequence"}, {L"s72", L"I2"}, 1, {}};
        Row(L"File", {L"Own", L"Own", L"own.txt", L"1", L"8192", L"7"});
        Row(L"Media", {L"3", L"9", L""});
        for (const wchar_t* folder : {L"INSTALLDIR", L"OTHER", L"TARGETDIR"}) {
            Row(L"Directory", {folder, folder, L""});
        }
    }

    void Row(const wchar_t* table, const RowValues& values)
    {
        database[table].rows[{values.front()}] = values;
    }

    void AddFile(int number, const CString& name, int sequence, const CString& folder = L"INSTALLDIR")
    {
        const CString key = UserKey(number);
        Row(L"File", {key, key, name + L"|" + name, L"5", L"0", NumberText(sequence)});
        Row(L"Component", {key, folder});
        PairRow(L"FeatureComponents", L"_UserDeploymentFile", key);
        PairRow(L"CreateFolder", folder, key);
        Row(L"TarnCustomFile", {key, L"C:\\Private\\" + name, L"0"});
    }

    void AddFolder(int number, const CString& name, const CString& parent = L"INSTALLDIR")
    {
        const CString key = UserKey(number);
        Row(L"Directory", {key, name, parent});
        Row(L"Component", {key, key});
        PairRow(L"FeatureComponents", L"_UserDeploymentFile", key);
        PairRow(L"CreateFolder", key, key);
        Row(L"TarnCustomFile", {key, name, L"2"});
    }

    void PairRow(const wchar_t* table, const CString& first, const CString& second)
    {
        database[table].rows[{first, second}] = {first, second};
    }

    // Takes away what one step of an addition has written.
    void Lose(const wchar_t* table, const CString& key)
    {
        std::erase_if(database[table].rows, [&](const auto& row) { return row.first.back() == key; });
    }

    CString Value(const wchar_t* table, const CString& key, std::size_t column) const
    {
        const auto& rows = database.at(table).rows;
        const auto row = rows.find({key});
        return row == rows.end() ? CString(L"(none)") : row->second[column];
    }

    DatabaseSnapshot database;
};
