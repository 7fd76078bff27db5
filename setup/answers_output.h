// Writes what a run was answered with: into the deployment, to the file of --record, and beside the log of a build that
// failed.
#pragma once

#include "host/setup_host.h"
#include "setup/answers_record.h"
#include "setup/command_line.h"
#include "setup/run_log.h"

#include <vector>

class CAnswersOutput
{
public:
    // Borrows all of them. `host`: null when no media were opened, of which only WriteRecord can write then.
    CAnswersOutput(const CommandLine& line, CSetupHost* host, CRunLog& log)
        : m_line(line), m_host(host), m_log(log)
    {
    }

    // Hands the host the answers of the deployment that is built next: this run's, joined with those of the deployment that
    // it is built upon. What can't go along is a line of the log.
    void AddToDeployment(const std::vector<RecordedPage>& pages);
    // Keeps the answers of a run whose build failed beside its log, under a name that is free: the file of an earlier try may
    // be the one that this run was answered from. The file's path, empty when that isn't possible either.
    [[nodiscard]] CString KeepBesideLog(const std::vector<RecordedPage>& pages, const CString& cause);
    // Writes the file of --record, if one is wanted. The empty text, or what failed and what to do.
    [[nodiscard]] CString WriteRecord(const std::vector<RecordedPage>& pages, const RunOutcome& outcome);

private:
    [[nodiscard]] RecordForm MakeForm(const CString& folder) const;
    [[nodiscard]] std::vector<RecordedPage> JoinBase(const std::vector<RecordedPage>& pages,
                                                     RecordForm& form);
    [[nodiscard]] bool ReadBase(const CString& folder, const RecordForm& form, BaseAnswers& base,
                                CString& reason) const;
    // The empty text, or why no file can hold these answers.
    [[nodiscard]] CString Compose(const std::vector<RecordedPage>& pages, const RecordForm& form,
                                  CString& text);

    const CommandLine& m_line;
    CSetupHost* const m_host;
    CRunLog& m_log;
};
