// No bytes crash the reader of answers files, and what it accepts is written to a text that reads back equal and
// joins with the table to the same verdict.
#include "setup/answers.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

bool Equal(const AnswersFile& left, const AnswersFile& right)
{
    if (left.sections.size() != right.sections.size()) {
        return false;
    }
    for (std::size_t index = 0; index < left.sections.size(); ++index) {
        const AnswerSection& first = left.sections[index];
        const AnswerSection& second = right.sections[index];
        if (!(first.strName == second.strName) || !(first.strProduct == second.strProduct) ||
            first.answers.size() != second.answers.size()) {
            return false;
        }
        for (std::size_t answer = 0; answer < first.answers.size(); ++answer) {
            if (!(first.answers[answer].strKey == second.answers[answer].strKey) ||
                first.answers[answer].fields != second.answers[answer].fields) {
                return false;
            }
        }
    }
    return true;
}

bool Joins(const AnswersFile& file)
{
    AnswerSources sources;
    sources.file = file;
    sources.strFile = L"C:\\answers.txt";
    sources.strFileFolder = L"C:\\";
    sources.strCurrentFolder = L"C:\\";
    CAnswers answers;
    AnswersError error;
    const bool joined = JoinAnswers(sources, answers, error);
    if (joined == !error.strReason.IsEmpty()) {
        std::abort(); // a refusal without a reason, or a reason without a refusal
    }
    return joined;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    AnswersFile file;
    AnswersError error;
    if (!ParseAnswersFile(reinterpret_cast<const char*>(data), size, file, error)) {
        if (error.strReason.IsEmpty()) {
            std::abort();
        }
        return 0;
    }
    CString text;
    AnswersFile again;
    std::string bytes;
    if (!WriteAnswersFile(file, text, error)) { // what was read holds nothing that can't be written
        std::abort();
    }
    AppendUtf8(bytes, text);
    if (!ParseAnswersFile(bytes.data(), bytes.size(), again, error) || !Equal(file, again) ||
        Joins(file) != Joins(again)) {
        std::abort();
    }
    CString textAgain;
    if (!WriteAnswersFile(again, textAgain, error) || !(textAgain == text)) {
        std::abort();
    }
    return 0;
}
