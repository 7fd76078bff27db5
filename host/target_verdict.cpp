#include "host/target_verdict.h"

#include "base/files.h"
#include "base/path_text.h"
#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/deployment_place.h"
#include "builder/own_files.h"
#include "host/host_messages.h"
#include "host/media.h"

#include <algorithm>

namespace {

TargetVerdict Refuse(const CString& message, bool byLocation = false)
{
    TargetVerdict verdict;
    verdict.state = TargetVerdict::State::Refused;
    verdict.message = message;
    verdict.bLocationRefused = byLocation;
    return verdict;
}

// A deployment of this product that nobody was asked about.
TargetVerdict Ask(const CString& folder, const DeploymentFile& file, const CString& stamp)
{
    TargetVerdict verdict;
    verdict.state = TargetVerdict::State::NeedsAnswer;
    verdict.strFolder = folder;
    verdict.strProduct = file.strProductName + L" " + file.strProductVersion;
    verdict.strStamp = stamp;
    verdict.builtAt = InformationOf(JoinFolder(folder, DEPLOYMENT_FILE)).ftLastWriteTime;
    const FolderJudgement judgement = FindOwnFiles(folder, {}, [] {});
    verdict.bKeptWhole = !judgement.hasManifest;
    verdict.ownFiles = judgement.Own();
    return verdict;
}

TargetVerdict JudgeDeployment(const TargetQuestion& question, const CString& folder)
{
    const FolderEntry entry = EntryOnDisk(folder);
    if (entry.IsLink()) {
        return Refuse(HostSentence(HostText::TargetIsLink, {folder}));
    }
    if (!entry.strName.IsEmpty() && entry.strName.CompareNoCase(question.strName) != 0) {
        return Refuse(HostSentence(HostText::TargetShortName, {question.strName, entry.strName}));
    }
    const CString stamp = StampOfDeployment(folder);
    if (stamp.IsEmpty()) {
        return Refuse(HostSentence(HostText::TargetNoDeployment, {folder}));
    }
    DeploymentFile file;
    if (const OperationError error = ReadDeploymentFile(JoinFolder(folder, DEPLOYMENT_FILE), file)) {
        return Refuse(HostSentence(HostText::TargetUnreadable, {folder, error.message}));
    }
    if (file.strSetupCode.CompareNoCase(question.strSetupCode) != 0) {
        return Refuse(HostSentence(HostText::TargetOtherSetup, {folder, file.strProductName}));
    }
    const std::vector<CString>& replaceable = question.replaceable;
    if (std::find(replaceable.begin(), replaceable.end(), stamp) == replaceable.end()) {
        return Ask(folder, file, stamp);
    }
    TargetVerdict verdict;
    verdict.state = TargetVerdict::State::MayBeReplaced;
    verdict.strFolder = folder;
    verdict.strStamp = stamp;
    return verdict;
}

TargetVerdict Judge(const TargetQuestion& question)
{
    const CString refused = RefusedName(question.strName);
    if (!refused.IsEmpty()) {
        return Refuse(refused + L" " + RemedyOf(BUILD_INVALID_NAME));
    }
    const CString around = DeploymentAround(FolderPath(question.strLocation));
    if (!around.IsEmpty()) {
        return Refuse(HostSentence(HostText::LocationInsideDeployment, {question.strLocation, around}), true);
    }
    // Nobody reaches a folder by the usual paths that a build would make by one that isn't normal.
    const CString location = FolderPath(question.strLocation);
    if (!question.strMediaRoot.IsEmpty() && IsSameOrBelow(location, question.strMediaRoot)) {
        return Refuse(
            HostSentence(HostText::LocationInsideMedia, {question.strLocation, question.strMediaRoot}), true);
    }
    const CString folder = JoinFolder(WithoutClosingBackslash(location), question.strName);
    switch (KindOfPath(folder)) {
    case PathKind::Nothing:
        return {};
    case PathKind::File:
        return Refuse(HostSentence(HostText::TargetIsFile, {folder}));
    case PathKind::Folder:
        break;
    }
    return JudgeDeployment(question, folder);
}

} // namespace

TargetVerdict JudgeTargetFolder(const TargetQuestion& question)
{
    try {
        return Judge(question);
    } catch (const BuildFailure& failure) {
        return Refuse(failure.message, true);
    }
}
