#include "setup/answers_input.h"

#include "base/handle.h"
#include "base/path_text.h"
#include "base/system_text.h"
#include "setup/paths.h"
#include "setup/resource.h"
#include "setup/texts.h"

#include <string>

namespace {

// One byte above the limit is enough for the parser to see that the file is too large.
bool ReadUpToLimit(const CString& path, std::string& bytes)
{
    const CFileOwner file(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        return false;
    }
    bytes.resize(LONGEST_ANSWERS_FILE + 1);
    std::size_t length = 0;
    for (DWORD got = 1; got > 0 && length < bytes.size(); length += got) {
        if (!ReadFile(file.get(), bytes.data() + length, static_cast<DWORD>(bytes.size() - length), &got,
                      nullptr)) {
            return false;
        }
    }
    bytes.resize(length);
    return true;
}

CString WhyUnreadable(DWORD code)
{
    return code == ERROR_SHARING_VIOLATION ? SetupText(IDS_ANSWERS_IN_USE)
                                           : SetupText(IDS_ANSWERS_UNREADABLE, {SystemErrorText(code)});
}

} // namespace

bool ReadAnswers(const CommandLine& line, const CString& currentFolder, CAnswers& answers,
                 AnswersError& error)
{
    AnswerSources sources;
    sources.line = line;
    sources.strCurrentFolder = currentFolder;
    sources.strFile = line.strAnswers;
    sources.strFileFolder = FolderAbove(line.strAnswers);
    if (!line.strAnswers.IsEmpty()) {
        std::string bytes;
        if (!ReadUpToLimit(line.strAnswers, bytes)) {
            error = {line.strAnswers, 0, CString(), WhyUnreadable(GetLastError())};
            return false;
        }
        if (!ParseAnswersFile(bytes.data(), bytes.size(), sources.file, error)) {
            error.strSource = line.strAnswers;
            return false;
        }
    }
    return JoinAnswers(sources, answers, error);
}
