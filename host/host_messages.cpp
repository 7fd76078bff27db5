#include "host/host_messages.h"

#include "base/fill_text.h"
#include "include/setup_enums.h"

namespace {

struct Sentence
{
    HostText id;
    const wchar_t* text;
};

constexpr Sentence SENTENCES[] = {
    {HostText::XmlMalformed, L"The file is not well-formed XML (%1). Restore it from the original media."},
    {HostText::XmlTooLarge,
     L"The file is larger than the %1 bytes that are accepted. Restore it from the original media."},
    {HostText::XmlTooDeep,
     L"Elements stand more than %1 levels deep. Restore the file from the original media."},
    {HostText::XmlTooLong,
     L"%1 is longer than the %2 bytes that are accepted. Shorten it, or restore the file "
     L"from the original media."},
    {HostText::XmlTooManyPieces, L"The file holds more than the %1 elements and comments that are accepted. "
                                 L"Restore it from the original media."},
    {HostText::XmlTooManyAttributes, L"An element has more than the %1 attributes that are accepted. Restore "
                                     L"the file from the original media."},
    {HostText::XmlDtd,
     L"The file has a document type declaration, which is not accepted. Remove the <!DOCTYPE ...> part."},
    {HostText::XmlUnknownElement, L"Element <%1> is not known inside <%2>. Remove it or correct its name."},
    {HostText::XmlUnknownAttribute, L"Attribute \"%1\" is not known in <%2>. Remove it or correct its name."},
    {HostText::XmlMissingAttribute, L"Element <%2> lacks the attribute \"%1\". Add it."},
    {HostText::XmlRepeatedAttribute, L"Attribute \"%1\" stands twice in <%2>. Remove one."},
    {HostText::XmlRepeatedElement, L"Element <%1> stands twice. Remove one."},
    {HostText::XmlTextOutside, L"There is text inside <%1>, where only elements may stand. Remove it."},
    {HostText::XmlWrongRoot,
     L"The first element is <%1>, not <%2>. This is another kind of file; check its name."},
    {HostText::XmlMissingElement, L"Element <%2> lacks an element <%1>. Add it."},
    {HostText::XmlNewerVersion,
     L"The file has version %1, this program reads version %2. Use a newer program."},
    {HostText::XmlTooMany, L"There are more than %2 elements <%1>. Remove some."},
    {HostText::ValueNotNumber, L"\"%2\" of attribute \"%1\" is not a number from %3 to %4. Correct it."},
    {HostText::ValueNotChoice, L"\"%2\" of attribute \"%1\" is not one of: %3. Correct it."},
    {HostText::ValueNotPage,
     L"\"%2\" of attribute \"%1\" is not a wizard page that this program knows. Correct it, "
     L"or use a newer program. Known pages: %3."},
    {HostText::ValueNotGuid, L"\"%2\" of attribute \"%1\" is not a code of the form "
                             L"{12345678-1234-1234-1234-123456789ABC}. Correct it."},
    {HostText::ValueNotHash,
     L"\"%2\" of attribute \"%1\" is not a SHA-256 of 64 digits 0 to 9 and a to f. Correct it."},
    {HostText::ValueNotRelative, L"\"%2\" of attribute \"%1\" is not a path below the folder of this file. "
                                 L"Use a relative path without \"..\", \"/\" or a drive."},
    {HostText::ValueNotFileName,
     L"\"%2\" of attribute \"%1\" is not a file name. Use a name without a path."},
    {HostText::ValueNotFolderName,
     L"\"%2\" of attribute \"%1\" is not a name that a folder can have. Use a name without a path."},
    {HostText::ValueHoldsControl,
     L"\"%2\" of attribute \"%1\" holds a control character, shown here as a blank. Remove it."},
    {HostText::ValueNotPlatform, L"Platform %2 of attribute \"%1\" is not declared. Add a <Platform> element "
                                 L"for it or correct the number."},
    {HostText::ValueNotLocale,
     L"\"%2\" of attribute \"%1\" is not a language name such as \"en-US\". Correct it."},
    {HostText::ValueEmpty, L"Attribute \"%1\" is empty. Add a value."},
    {HostText::ValueTooLong, L"Attribute \"%1\" is longer than %2 characters. Shorten it."},
    {HostText::ValueRepeated, L"\"%2\" of attribute \"%1\" was used before. Each one may stand only once."},
    {HostText::ValueBadEscape,
     L"Attribute \"%1\" is marked as escaped, but holds a backslash that starts no \\uXXXX. Correct it."},
    {HostText::SharedPackageFolder,
     L"Folder \"%1\" would hold two packages, \"%2\" and \"%3\". Use a folder of its own for each product."},
    {HostText::ProductListedTwice,
     L"The package \"%1\" has the product code %2, and so has the package \"%3\" of the same platform. A "
     L"product can be listed only once. Remove one of them, or correct its productCode."},
    {HostText::NotReadAgain,
     L"Nothing was built, because the deployment's %1 could not be read again. %2 It is in: %3"},
    {HostText::ReadsDifferently, L"A value in it holds characters that get lost in the file. Change it."},
    {HostText::FileAndLine, L"%1, line %2: %3"},
    {HostText::FileOnly, L"%1: %2"},
    {HostText::MediaMissing,
     L"The media \"%1\" don't exist or can't be reached. Check the path and your permission to read it."},
    {HostText::MediaNotRecognised,
     L"\"%1\" contains neither a Setup.xml nor a Deployment.xml. Choose a media "
     L"folder, a deployment's folder or an installer package (.msi)."},
    {HostText::MediaImageGone, L"\"%1\" is a deployment whose image is damaged: the file \"%2\" is missing. "
                               L"Restore the deployment from a "
                               L"backup, or choose the media that it was created from."},
    {HostText::MediaPackageMissing,
     L"The package \"%1\", which the media describe, is missing (%2). Copy all of the media again."},
    {HostText::MediaSourceMissing,
     L"The file \"%1\", which the package \"%2\" installs from, is missing. Copy all of the media again."},
    {HostText::CabinetMisnamed, L"The package \"%1\" can't be deployed: its cabinet is called \"%2\", a name "
                                L"that the wizard keeps for added files. "
                                L"Get the package from its maker under another cabinet name."},
    {HostText::MediaPackageBroken,
     L"The package \"%1\" can't be opened (%2). It is damaged or not an installer "
     L"package; copy it from the original media again."},
    {HostText::PackageNameInvalid, L"The package \"%1\" can't be deployed under its name, which starts or "
                                   L"ends with a blank or holds a character "
                                   L"that names of files can't have. Rename the file."},
    {HostText::PackageCodeInvalid,
     L"The package \"%1\" can't be deployed: its product code \"%2\" is not a GUID in braces, such as "
     L"{12345678-1234-1234-1234-123456789ABC}. Get the package from its maker again."},
    {HostText::PackageVersionInvalid, L"The package \"%1\" can't be deployed: its version \"%2\" is not one "
                                      L"to four numbers with dots between "
                                      L"them, such as 27.0.1. Get the package from its maker again."},
    {HostText::PackageCodeDiffers, L"The package \"%1\" has the product code %2, but Setup.xml says %3. Copy "
                                   L"the package that belongs to the "
                                   L"media, or correct productCode in Setup.xml."},
    {HostText::PackageVersionDiffers, L"The package \"%1\" has the version %2, but Setup.xml says %3. Copy "
                                      L"the package that belongs to the media, "
                                      L"or correct version in Setup.xml."},
    {HostText::ShortcutTemplateInvalid, L"The package \"%1\" can't be deployed: its property %2, the "
                                        L"template of custom shortcuts, has %3 fields "
                                        L"instead of %4. Get the package from its maker again."},
    {HostText::ShortcutTemplateTooLong, L"The package \"%1\" can't be deployed: its property %2, the "
                                        L"template of custom shortcuts, has %3 characters, more than the %4 "
                                        L"that can be read. Get the package from its maker again."},
    {HostText::MediaFileUnreadable,
     L"The file \"%1\" can't be read (%2). Check that it exists and that you have permission to read it."},
    {HostText::WorkFolderFailed, L"The work folder \"%1\" can't be created (%2). Check the free space and "
                                 L"the permissions of that folder."},
    {HostText::WorkCopyFailed,
     L"The package \"%1\" can't be copied to the work folder as \"%2\" (%3). Check that the package can be "
     L"read, and that the work folder can be written to and has space; the variable TEMP says where it is."},
    {HostText::ReasonWithRoom, L"%1; it needs %2 MB, and \"%4\" has %3 MB free"},
    {HostText::TableNotMade, L"The table %1 can't be added to the working copy of \"%2\" (%3). The package "
                             L"is damaged; copy it from the original media again."},
    {HostText::BaseGone, L"The deployment \"%1\" is no longer in \"%2\". Choose another one."},
    {HostText::BaseDamaged, L"The deployment \"%1\" can't be used: %2"},
    {HostText::BaseOtherSetup,
     L"The deployment \"%1\" belongs to another product (setup code %2). Choose one of this product."},
    {HostText::BaseImageGone, L"The deployment \"%1\" lacks its image folder \"%2\". Restore the folder or "
                              L"choose another deployment."},
    {HostText::DeploymentUnreadable, L"The deployment file is skipped. %1"},
    {HostText::NoDeploymentToCompare,
     L"The folder \"%1\" contains no Deployment.xml, so it is no deployment. "
     L"Check the path, and specify the folder of a deployment."},
    {HostText::TargetIsFile, L"\"%1\" is a file. Choose another name, or move the file away."},
    {HostText::TargetShortName, L"\"%1\" is the short (8.3) name of the folder \"%2\". Choose another name."},
    {HostText::TargetIsLink,
     L"The folder \"%1\" is a link to another folder, so it isn't replaced. Choose another "
     L"name, or use the folder that it leads to."},
    {HostText::TargetNoDeployment,
     L"The folder \"%1\" contains no deployment, so it isn't replaced. Choose another "
     L"name, or move the folder away."},
    {HostText::TargetUnreadable, L"The folder \"%1\" holds a deployment file that can't be read, so it isn't "
                                 L"replaced. Choose another name, or move the folder away. (%2)"},
    {HostText::TargetOtherSetup,
     L"The folder \"%1\" holds a deployment of another product, \"%2\", so it isn't "
     L"replaced. Choose another name or location."},
    {HostText::TargetUnasked,
     L"Replacing the deployment in \"%1\" has not been confirmed. Choose another name, or "
     L"start again and confirm it."},
    {HostText::LocationInsideDeployment, L"The location \"%1\" is a deployment or lies inside one: \"%2\" "
                                         L"holds a Deployment.xml. Choose a location "
                                         L"outside of it."},
    {HostText::LocationInsideMedia,
     L"The location \"%1\" lies inside the media \"%2\". Choose a location outside of them."},
    {HostText::BaseChanged,
     L"The deployment \"%1\" has changed since the wizard read it, so that the build would mix "
     L"old and new. Choose it again to work with what it is now."},
    {HostText::PathsUnresolved, L"The installer can't resolve the folders of \"%1\" (%2). Paths are worked "
                                L"out from the package's tables instead."},
    {HostText::PatchLost,
     L"The patch \"%1\" of \"%2\", which Deployment.xml names, isn't in the image. It is left off "
     L"the list of patches."},
    {HostText::NoProductsForPlatform,
     L"The media hold no package for the %1 platform. Select the other platform."},
    {HostText::AdditionsUnchecked,
     L"The additional files of %1 can't be checked now. They are checked again when the deployment is built. "
     L"%2"},
    {HostText::LogOpened, L"Media %1, language %2, work folder %3"},
    {HostText::LogMode, L"Setup mode %1, platform %2, deployment \"%3\" in %4, based on \"%5\""},
    {HostText::LogLoaded, L"Settings of the deployment \"%1\" loaded from %2"},
    {HostText::LogProperty, L"Setup property %1 = \"%2\""},
    {HostText::LogBuildEnd, L"Build ended with code %1. %2"},
};
static_assert(sizeof SENTENCES / sizeof *SENTENCES == static_cast<int>(HostText::Count));

const wchar_t* FindSentence(HostText id)
{
    for (const Sentence& sentence : SENTENCES) {
        if (sentence.id == id) {
            return sentence.text;
        }
    }
    return L"";
}

} // namespace

CString HostSentence(HostText id, std::initializer_list<CString> arguments)
{
    return FillText(FindSentence(id), arguments);
}

CString PlatformText(int platform)
{
    return platform == Setup::PLATFORM_X64 ? L"64-bit" : L"32-bit";
}
