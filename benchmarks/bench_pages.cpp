#include "benchmarks/bench_pages.h"

#include "include/page_table.h"

BenchPages FindBenchPages(const BenchOptions& options)
{
    static CPageLibrary library;
    const CString complaint = library.Load(options.strProgramFolder);
    if (!complaint.IsEmpty()) {
        throw CannotMeasure{complaint};
    }
    BenchPages pages;
    for (const PageRow& row : PAGE_TABLE) {
        const BenchPage page = {WizardExport(row), library.Find(WizardExport(row)), row.wizardTemplate};
        const BenchTabPage tab = {TabExport(row), library.FindTab(TabExport(row)), row.tabTemplate};
        if (row.IsWritten() && (!page.show || (row.bTab && !tab.create))) {
            throw CannotMeasure{CString(L"The page library lacks a shape of ") + row.stem};
        }
        if (row.IsWritten()) {
            pages.wizard.push_back(page);
        }
        if (row.IsWritten() && row.bTab) {
            pages.tabs.push_back(tab);
        }
    }
    return pages;
}
