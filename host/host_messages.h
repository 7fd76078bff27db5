// The host's own sentences for people, kept in one table so that they can move to a language folder.
#pragma once

#include "base/string.h"

#include <initializer_list>

enum class HostText
{
    // Reading XML. %1 and further: what the line of the table says.
    XmlMalformed,
    XmlTooLarge,
    XmlTooDeep,
    XmlTooLong,
    XmlTooManyPieces,
    XmlTooManyAttributes,
    XmlDtd,
    XmlUnknownElement,
    XmlUnknownAttribute,
    XmlMissingAttribute,
    XmlRepeatedAttribute,
    XmlRepeatedElement,
    XmlTextOutside,
    XmlWrongRoot,
    XmlMissingElement,
    XmlNewerVersion,
    XmlTooMany,
    ValueNotNumber,
    ValueNotChoice,
    ValueNotPage,
    ValueNotGuid,
    ValueNotHash,
    ValueNotRelative,
    ValueNotFileName,
    ValueNotFolderName,
    ValueHoldsControl,
    ValueNotPlatform,
    ValueNotLocale,
    ValueEmpty,
    ValueTooLong,
    ValueRepeated,
    ValueBadEscape,
    SharedPackageFolder,
    ProductListedTwice,
    NotReadAgain,
    ReadsDifferently,
    FileAndLine,
    FileOnly,
    // Opening media
    MediaMissing,
    MediaNotRecognised,
    MediaImageGone,
    MediaPackageMissing,
    MediaSourceMissing,
    CabinetMisnamed,
    MediaPackageBroken,
    PackageNameInvalid,
    PackageCodeInvalid,
    PackageVersionInvalid,
    PackageCodeDiffers,
    PackageVersionDiffers,
    ShortcutTemplateInvalid,
    ShortcutTemplateTooLong,
    MediaFileUnreadable,
    WorkFolderFailed,
    WorkCopyFailed,
    ReasonWithRoom,
    TableNotMade,
    // Deployments
    BaseGone,
    BaseDamaged,
    BaseOtherSetup,
    BaseImageGone,
    DeploymentUnreadable,
    NoDeploymentToCompare,
    // What stands in a new deployment's place
    TargetIsFile,
    TargetShortName,
    TargetIsLink,
    TargetNoDeployment,
    TargetUnreadable,
    TargetOtherSetup,
    TargetUnasked,
    LocationInsideDeployment,
    LocationInsideMedia,
    BaseChanged,
    PathsUnresolved,
    PatchLost,
    NoProductsForPlatform,
    AdditionsUnchecked,
    // Log
    LogOpened,
    LogMode,
    LogLoaded,
    LogProperty,
    LogBuildEnd,
    Count
};

// The sentence with %1, %2, ... replaced. A replaced text is not looked at again.
[[nodiscard]] CString HostSentence(HostText id, std::initializer_list<CString> arguments = {});

// What a platform is called in sentences: "64-bit" or "32-bit".
[[nodiscard]] CString PlatformText(int platform);
