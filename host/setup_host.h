// What WizCore.dll offers to the program that runs the wizard: media, the objects that the pages need, and the
// build. The pages never see this file.
#pragma once

#include "base/string.h"
#include "builder/addition_finding.h"
#include "builder/build_result.h"
#include "builder/build_review.h"
#include "include/installer_calls.h"
#include "include/lang_mgr.h"
#include "include/page_context.h"
#include "include/setup_manager.h"

#include <vector>

struct HostOptions
{
    // A folder with Setup.xml, a deployment's folder or image, or one .msi; full path.
    CString strMedia;
    // Folder of the program, ending in a backslash: Languages\<locale>\ lies below.
    CString strProgramFolder;
    // Locale of the wizard's texts; empty: the user's, else "en-US".
    CString strLanguage;
    // A fresh folder for working copies is made in it, and removed at the end; empty: %TEMP%.
    CString strWorkFolder;
    // The setup's log, which stays; empty: RolloutSetup-<8 hex digits>.log beside the fresh folder.
    CString strLogFile;
};

struct FlowPage
{
    CString strName;     // export of the page library
    CString strHelpFile; // HTML of the side pane
};

// What stands where the deployment will lie.
struct TargetVerdict
{
    enum class State
    {
        // Nothing.
        Free,
        // The deployment that is modified, or one that somebody was asked about.
        MayBeReplaced,
        // A deployment of this product that nobody was asked about: to be asked with what follows.
        NeedsAnswer,
        // Anything else; `message` says what, and what to do.
        Refused,
    };
    State state = State::Free;
    CString message;
    // Refused: because of the location, not of the name.
    bool bLocationRefused = false;
    // Full path, without closing backslash.
    CString strFolder;
    // Name and version.
    CString strProduct;
    FILETIME builtAt = {};
    // Files that were added to it or changed in it since it was built, by relative paths. They are kept beside the new
    // deployment; so is all of it when it has no manifest that names them.
    std::vector<CString> ownFiles;
    bool bKeptWhole = false;
    // The host's own mark of it.
    CString strStamp;
};

// Owns everything: media, databases, products, managers. All calls on one thread but Build, which may run on
// another while the first only pumps messages.
class CSetupHost
{
public:
    virtual ~CSetupHost() = default; // closes the databases, removes its work folder

    virtual CSetupManager& GetSetupManager() = 0;
    virtual const std::vector<FlowPage>& GetFlow() = 0;
    // True when the media wants the pages that exist as tabs to stand together in one dialog.
    virtual bool OffersConfigure() = 0;
    // The products of the deployment, opened if they aren't; empty when that fails, which the log reports. Both the
    // vector and what it points to change with the begin page.
    virtual const std::vector<CProduct*>& GetProducts() = 0;
    // How often they have been opened: with another number their databases hold nothing of what pages stored before.
    virtual int CountProductOpenings() = 0;

    // Fills the record for a page that is to be shown next: product, database, help file, Back. Hooks are the caller's to
    // add. The first form is for a page that belongs to no product, and gives it the first one; the second has the step
    // label name the product where there are several.
    virtual PageContext MakePageContext(const FlowPage& page, bool canGoBack) = 0;
    virtual PageContext MakePageContext(const FlowPage& page, bool canGoBack, CProduct* product) = 0;

    // Asks the product's database whether it still answers.
    virtual OperationError CheckDatabase(CProduct& product) = 0;

    // What a build would refuse of the product's additions, or leave out, as the database and the sources are now; what
    // refuses comes first.
    virtual std::vector<AdditionFinding> CheckAdditions(CProduct& product, SourceLook look) = 0;

    // Judges the place that the begin page has chosen, on the disk as it is now. To be called after that page, and again
    // before the build: another wizard may have built there meanwhile. Reads the whole deployment when it has to be asked
    // about.
    virtual TargetVerdict JudgeTarget() = 0;
    // Somebody was shown the verdict's deployment and wants it replaced. Counts as long as it stays as it is.
    virtual void AllowReplacing(const TargetVerdict& verdict) = 0;
    // It isn't to be replaced, and the first page is shown again.
    virtual void DeclineReplacing() = 0;
    // Why the begin page's choice could not be entered, once; empty when it was. The host has closed the page then; the
    // program shows the reason and the first page again.
    virtual CString ReadModeFailure() = 0;

    // False while a page asks whether to cancel, and after the answer Yes. Who else would end the run puts that off while a
    // page has its own end in hand. May be asked from any thread.
    virtual bool IsCancellingEnabled() = 0;

    // Folder of the deployment that is built upon or modified, as the begin page has chosen it (before that page, the one
    // that the media are the image of): full path, without closing backslash unless a root. Empty for a new one.
    virtual CString GetBaseFolder() = 0;
    // Folder of the media that the host was opened on (that of Setup.xml, or that of a single .msi): full path, without
    // closing backslash unless a root. Stays the same whatever base is chosen.
    virtual CString GetMediaFolder() = 0;

    // Content of the file ANSWERS_FILE (builder/deployment_place.h) in the deployment's folder, with lines ending in CR LF;
    // empty: no such file. Counts for every build and check until it is set again; not to be called while Build runs.
    virtual void SetAnswersText(const CString& text) = 0;

    // Builds the deployment that the pages described and stores the result lines, the exit code and the stage behind
    // a build in the manager.
    virtual BuildResult Build(IBuildProgress& progress) = 0;

    // What a build would refuse before it copies anything, and what it would do: from the decisions that it carries out.
    // Builds nothing. A refused one has the warnings up to then and nothing else; so has a canceled one (1602). May
    // run where Build may.
    virtual OperationError ReviewBuild(IBuildProgress& progress, BuildReview& review) = 0;
    // The same for who wants the warnings alone, which are added.
    OperationError CheckBuild(std::vector<CString>& warnings)
    {
        CUnwatchedProgress progress;
        BuildReview review;
        const OperationError error = ReviewBuild(progress, review);
        warnings.insert(warnings.end(), review.warnings.begin(), review.warnings.end());
        return error;
    }

    virtual void AppendLog(const CString& line) = 0;
};

// Opens media. Null on failure, with `error` filled. The caller deletes the object.
extern "C" WIZCORE_API CSetupHost* OpenSetupHost(const HostOptions& options, OperationError& error);
