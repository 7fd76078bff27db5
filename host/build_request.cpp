#include "host/build_request.h"

#include "base/files.h"
#include "base/path_text.h"
#include "builder/build_failure.h"
#include "builder/deployment_builder.h"
#include "builder/deployment_place.h"
#include "builder/package_sources.h"
#include "builder/patch_check.h"
#include "builder/shown_text.h"
#include "host/host_messages.h"
#include "host/patch_plan.h"
#include "host/read_again.h"
#include "include/version.h"

#include <algorithm>

namespace {

constexpr unsigned int INSTALL_WITH_PROGRESS = 3; // the settings page's second mode; the first is silent

CString InImage(const CString& relative)
{
    return CString(IMAGE_FOLDER) + L"\\" + relative;
}

bool IsBelow(const CString& path, const CString& folder)
{
    return path.Left(folder.GetLength()).CompareNoCase(folder) == 0;
}

// The description of the image: what the media says, less what isn't in the image.
SetupDescription DescribeImage(const Media& media, int platform)
{
    SetupDescription image = media.description;
    const auto otherPlatform = [&](const auto& package) { return package.platform != platform; };
    std::erase_if(image.platforms,
                  [&](const PlatformDescription& described) { return described.id != platform; });
    for (ProductDescription& product : image.products) {
        std::erase_if(product.packages, otherPlatform);
        for (ProductDescription& pack : product.languagePacks) {
            std::erase_if(pack.packages, otherPlatform);
        }
        std::erase_if(product.languagePacks,
                      [](const ProductDescription& pack) { return pack.packages.empty(); });
    }
    std::erase_if(image.products, [](const ProductDescription& product) { return product.packages.empty(); });
    return image;
}

void SetMergedVersion(std::vector<ProductDescription>& products, const BuildDatabase& database)
{
    for (ProductDescription& product : products) {
        for (PackageDescription& package : product.packages) {
            if (package.strProductCode.CompareNoCase(database.strProductCode) == 0) {
                package.strVersion = database.strMergedVersion;
            }
        }
        SetMergedVersion(product.languagePacks, database);
    }
}

class CPlanMaker
{
public:
    CPlanMaker(CHostSetupManager& manager, const CString& replacedStamp)
        : m_manager(manager), m_media(manager.GetMedia())
    {
        m_plan.strReplacedStamp = replacedStamp;
    }

    BuildPlan Make(const CString& answers)
    {
        m_stored = m_manager.DescribeDeployment();
        m_plan.strLocation = FolderPath(m_manager.m_strDeploymentLocation);
        m_plan.strName = m_manager.m_strDeploymentName;
        m_plan.strBuiltBy = L"the deployment wizard " ROLLOUT_VERSION_TEXT;
        m_plan.strMediaName = m_media.description.strName;
        m_plan.commands = CommandsOf(m_stored);
        for (const std::unique_ptr<CHostProduct>& product : m_manager.GetProductObjects()) {
            AddProduct(*product);
            for (const std::unique_ptr<CHostProduct>& pack : product->GetPackObjects()) {
                AddProduct(*pack);
            }
        }
        if (!m_media.description.strResourceFolder.IsEmpty()) {
            AddFolder(m_media.description.strResourceFolder + L"\\");
        }
        m_image = DescribeImage(m_media, m_manager.m_platform);
        for (const BuildDatabase& database : m_plan.databases) {
            if (!database.strMergedVersion.IsEmpty()) {
                SetMergedVersion(m_image.products, database);
            }
        }
        m_plan.texts.push_back({InImage(SETUP_FILE), WriteSetupDescription(m_image)});
        m_plan.texts.push_back({DEPLOYMENT_FILE, WriteDeploymentFile(m_stored)});
        if (!answers.IsEmpty()) {
            m_plan.texts.push_back({ANSWERS_FILE, answers, true}); // people read it in Notepad
        }
        return std::move(m_plan);
    }

    // After Make: the deployment must be one that the wizard can list and modify.
    OperationError CheckTexts() const
    {
        const XmlFault deployment = CheckReadsAgain(m_stored);
        const XmlFault fault = deployment ? deployment : CheckReadsAgain(m_image);
        return fault ? OperationError{ERROR_INVALID_DATA, fault.message} : OperationError();
    }

private:
    void AddProduct(CHostProduct& product)
    {
        const CString folder = FolderOfFile(product.GetRelativeFile());
        BuildDatabase database;
        database.strOriginal = product.GetOriginalFile();
        database.strWorkingCopy = product.GetWorkFile();
        database.hDatabase = product.GetMsiHandle();
        database.strTarget = InImage(product.GetRelativeFile());
        database.strProductName = product.m_strName;
        database.strProductCode = product.m_strProductCode;
        database.strProductVersion = product.GetPackage().strVersion;
        database.strMaker = m_media.description.strMaker;
        AddPatches(product, database);
        m_plan.databases.push_back(std::move(database));
        if (folder.IsEmpty()) {
            AddLooseFiles(product);
        } else {
            AddFolder(folder);
        }
    }

    void AddPatches(CHostProduct& product, BuildDatabase& database)
    {
        for (StoredProduct& stored : m_stored.products) {
            if (stored.strProductCode == product.GetPackage().strProductCode) {
                PlanPatches(product, m_media.strRoot, m_plan, database, stored);
            }
        }
    }

    // A package that stands at the media's root may share its folder with anything: only what it names goes along.
    void AddLooseFiles(CHostProduct& product)
    {
        for (const CString& file : FindPackageFiles(product.GetMsiHandle(), m_media.strRoot)) {
            const CString target = InImage(file);
            const bool known =
                std::any_of(m_plan.files.begin(), m_plan.files.end(), [&](const BuildFile& added) {
                    return added.strTarget.CompareNoCase(target) == 0;
                });
            if (!known) {
                m_plan.files.push_back({m_media.strRoot + file, target});
            }
        }
    }

    // A folder below one that is already there goes with it.
    void AddFolder(const CString& relative)
    {
        const CString target = InImage(relative);
        for (const BuildFolder& folder : m_plan.folders) {
            if (IsBelow(target, folder.strTarget)) {
                return;
            }
        }
        std::erase_if(m_plan.folders,
                      [&](const BuildFolder& folder) { return IsBelow(folder.strTarget, target); });
        m_plan.folders.push_back({m_media.strRoot + relative, target});
    }

    CHostSetupManager& m_manager;
    const Media& m_media;
    DeploymentFile m_stored;
    SetupDescription m_image;
    BuildPlan m_plan;
};

// What was there when the media were opened can be gone by now, and a folder is copied as it is found: without a
// cabinet it would be built without a complaint and fail on every workstation.
OperationError CheckSources(const std::vector<std::unique_ptr<CHostProduct>>& products)
{
    for (const std::unique_ptr<CHostProduct>& product : products) {
        if (OperationError error = CheckPackageSources(product->GetMsiHandle(), product->GetOriginalFile())) {
            return error;
        }
        if (OperationError error = CheckSources(product->GetPackObjects())) {
            return error;
        }
    }
    return {};
}

// Texts that can't be read again are the fault of a patch that has no code or content to write, if there is such a one.
OperationError PreferPatchFault(const BuildPlan& plan, const OperationError& textFault)
{
    try {
        if (textFault) {
            RequirePatchesApply(plan, [] {});
        }
        return textFault;
    } catch (const BuildFailure& failure) {
        return {failure.code, ShownText(failure.message)}; // as the builder does
    }
}

// The plan, or why there can be none.
OperationError DecidePlan(CHostSetupManager& manager, const CString& answers, BuildPlan& plan)
{
    if (OperationError error = manager.EnsureProducts()) {
        return error;
    }
    const TargetVerdict verdict = manager.JudgeTarget();
    if (verdict.state == TargetVerdict::State::Refused) {
        return {ERROR_ALREADY_EXISTS, verdict.message};
    }
    if (verdict.state == TargetVerdict::State::NeedsAnswer) {
        return {ERROR_ALREADY_EXISTS, HostSentence(HostText::TargetUnasked, {verdict.strFolder})};
    }
    if (OperationError error = CheckSources(manager.GetProductObjects())) {
        return error;
    }
    CPlanMaker maker(manager, verdict.strStamp);
    plan = maker.Make(answers);
    return PreferPatchFault(plan, maker.CheckTexts());
}

} // namespace

WorkstationCommands CommandsOf(const DeploymentFile& file)
{
    WorkstationCommands commands;
    commands.strLogFolder = file.bNetworkLog ? file.strNetworkLogFolder : CString();
    commands.bKeepLocalLog = file.bSettingsOption;
    commands.strDisplay = file.installMode == INSTALL_WITH_PROGRESS ? L"/qb-!" : L"/qn";
    return commands;
}

BuildResult BuildFromManager(CHostSetupManager& manager, const CString& answers, IBuildProgress& progress)
{
    manager.UseFoldersOf(nullptr);
    BuildPlan plan;
    if (OperationError error = DecidePlan(manager, answers, plan)) {
        return {error, CString(), {}};
    }
    BuildResult result = BuildDeployment(plan, progress);
    if (!result.error) {
        manager.SetResultLines(manager.m_strDeploymentName, result.strDeploymentFolder);
    }
    return result;
}

OperationError ReviewFromManager(CHostSetupManager& manager, const CString& answers, IBuildProgress& progress,
                                 BuildReview& review)
{
    BuildPlan plan;
    const OperationError error = DecidePlan(manager, answers, plan);
    return error ? error : ReviewBuild(plan, progress, review);
}
