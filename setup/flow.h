// What comes after what: pages, the build, the outcome. Knows names and results alone.
#pragma once

#include "base/string.h"
#include "setup/exit_codes.h"

#include <vector>

enum class FlowAct
{
    ShowPage,
    Configure, // the dialog in which all tab pages of the flow stand together
    Review,    // what has been chosen and what it will do, before it is done
    Build,
    Finish,
};

struct FlowMove
{
    FlowAct act = FlowAct::Finish;
    // ShowPage: index in the flow. Configure: of the page whose tab is opened first. Review: of the page that was visited from it; -1
    // for none.
    int nPage = -1;
    // ShowPage: index of the product that the page is shown for; -1: it belongs to none. Configure: of the product whose tab is
    // opened first; -1 for the first one's. Review: of the visited page's product.
    int nProduct = -1;
    unsigned int exitCode = 0; // Finish
};

// A page of the flow that exists in the page library.
struct FlowStep
{
    CString strPage;         // its export
    bool bHasTab = false;    // the library has it as a tab page too
    bool bOfProduct = false; // shown once for each product
};

class CWizardFlow
{
public:
    // `pages`: in the media's order, outcome pages among them. With `builds` false the run ends where the build would
    // begin.
    CWizardFlow(std::vector<FlowStep> pages, bool builds);

    // How many products the deployment has; 1 until it is called. Pages of products that stand side by side are walked
    // product by product. May change with every page; behind one whose product is gone, the walk begins anew.
    void UseProducts(int count);

    // With true, the pages that exist as tabs are no longer shown one by one: the configure dialog comes once, where
    // the first of them stands. May change with every page, as only the begin page decides what is to be done.
    void OfferConfigure(bool offered) { m_bConfigure = offered; }

    // With true, the review stands behind the last choosing page. Not without a person to read it.
    void OfferReview(bool offered) { m_bReview = offered; }

    // False when there is nothing to choose, so that a build could only be wrong.
    [[nodiscard]] bool HasChoosingPage() const { return !m_walk.empty(); }

    [[nodiscard]] FlowMove Start();
    // `result`: what the page or dialog shown last came back with (NavigationResult).
    [[nodiscard]] FlowMove AfterPage(int result);
    // `result`: how the review was left (NavigationResult): Next builds, or ends a run that doesn't; Back leads to the last
    // choosing page.
    [[nodiscard]] FlowMove AfterReview(int result);
    // From the review to one of the pages, and from there by Next to the review again. `page`: an export; `product`: as in
    // FlowMove. A page that the walk doesn't have leads back to the review.
    [[nodiscard]] FlowMove VisitPage(const CString& page, int product);
    // What the visited page changed concerns the pages behind it: Next goes through them.
    void EndVisit() { m_bVisit = false; }
    // Back to the first page, whatever was shown: the choice made there doesn't hold.
    [[nodiscard]] FlowMove StartAgain();
    // `exitCode`: 0, 1602 or whatever the build failed with.
    [[nodiscard]] FlowMove AfterBuild(unsigned int exitCode);

    // Back is off on the first page, and after the build, which can't be taken back; on a visited page too, as some pages
    // store what was entered when they are left by Back and some don't.
    [[nodiscard]] bool CanGoBack() const { return !m_bBuilt && !m_bVisit && m_position > 0; }

private:
    // A page before the build, for one product or for none.
    struct Stop
    {
        int page; // in m_pages
        int product;
        bool operator==(const Stop&) const = default;
    };

    [[nodiscard]] std::vector<Stop> MakeWalk(int products) const;
    [[nodiscard]] FlowMove ShowReview();
    // Behind the last choosing page.
    [[nodiscard]] FlowMove EndOfWalk();
    // Behind everything that a person is asked.
    [[nodiscard]] FlowMove EndOfChoosing() const;
    [[nodiscard]] FlowMove Show(std::size_t position);
    [[nodiscard]] bool IsTab(std::size_t position) const;
    [[nodiscard]] bool IsFirstTab(std::size_t position) const;
    // Shown by the configure dialog that stands elsewhere in the flow.
    [[nodiscard]] bool IsPassedOver(std::size_t position) const;

    std::vector<FlowStep> m_pages;
    std::vector<Stop> m_walk;
    std::size_t m_position = 0; // in m_walk
    bool m_bBeginsAnew = false; // the page that is shown is of a product that is gone
    bool m_bBuilds;
    bool m_bConfigure = false;
    bool m_bReview = false;
    bool m_bVisit = false; // the page that is shown was come to from the review
    bool m_bBuilt = false;
    unsigned int m_exitCode = SETUP_DONE; // of the build
};
