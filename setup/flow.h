// What comes after what: pages, the build, the outcome. Knows names and results alone.
#pragma once

#include "setup/exit_codes.h"
#include "window/string.h"

#include <vector>

enum class FlowAct
{
    ShowPage,
    Build,
    Finish,
};

struct FlowMove
{
    FlowAct act = FlowAct::Finish;
    int nPage = -1;            // ShowPage: index in the flow
    unsigned int exitCode = 0; // Finish
};

class WizardFlow
{
public:
    // `pages`: the exports that exist, in the media's order, outcome pages among them. With `builds` false the run
    // ends where the build would begin.
    WizardFlow(std::vector<CString> pages, bool builds);

    // False when there is nothing to choose, so that a build could only be wrong.
    [[nodiscard]] bool HasChoosingPage() const { return !m_choosing.empty(); }

    [[nodiscard]] FlowMove Start();
    // `result`: what the page shown last came back with (NavigationResult).
    [[nodiscard]] FlowMove AfterPage(int result);
    // `exitCode`: 0, 1602 or whatever the build failed with.
    [[nodiscard]] FlowMove AfterBuild(unsigned int exitCode);

    // Back is off on the first page, and after the build, which can't be taken back.
    [[nodiscard]] bool CanGoBack() const { return !m_bBuilt && m_position > 0; }

private:
    [[nodiscard]] FlowMove Show(std::size_t position);

    std::vector<CString> m_pages;
    std::vector<int> m_choosing; // indexes of the pages before the build
    std::size_t m_position = 0;  // in m_choosing
    bool m_bBuilds;
    bool m_bBuilt = false;
    unsigned int m_exitCode = SETUP_DONE; // of the build
};
