#include "tests/host/additions_build.h"

#include "builder/build_names.h"

#include <windows.h>

#include <msi.h>

CString ProgramFolder()
{
    wchar_t text[MAX_PATH] = L"";
    GetEnvironmentVariableW(L"ProgramW6432", text, ARRAYSIZE(text));
    return text + CString(L"\\ZoltTest");
}

AdditionsBuild::AdditionsBuild(const ProductOptions& options)
    : build(options), added(build.plan.databases[0].hDatabase, 1)
{
    MakeFolders(sources.Path());
}

AdditionsBuild::~AdditionsBuild()
{
    if (MsiQueryProductStateW(PRODUCT_CODE) == INSTALLSTATE_DEFAULT) {
        Uninstall();
    }
}

CString AdditionsBuild::Source(const CString& name, const std::string& bytes) const
{
    const CString path = sources / name;
    MakeFolders(FolderAbove(path));
    WriteBytes(path, bytes);
    return path;
}

void AdditionsBuild::BuildIt()
{
    const BuildResult result = build.Build();
    warnings = result.warnings;
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
}

void AdditionsBuild::Install()
{
    const CString log = sources / L"install.log";
    ASSERT_EQ(RunProgram(L"msiexec /i \"" + build.Database() + L"\" /qn /norestart /L*V \"" + log + L"\""),
              0u)
        << ReadBytes(log);
}

unsigned long AdditionsBuild::Uninstall()
{
    return RunProgram(CString(L"msiexec /x ") + PRODUCT_CODE + L" /qn /norestart");
}
