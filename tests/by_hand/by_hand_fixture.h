// What a person does with the wizard, step by step: looks until something stands in front, strikes keys, answers boxes.
// A step that can't be done within its deadline throws StepFailed with the texts of all windows that were there, which
// fails the test; the program is ended then.
#pragma once

#include "tests/by_hand/hand.h"
#include "tests/by_hand/wizard_run.h"
#include "tests/support/test_folder.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

enum class Shown
{
    FirstPage,
    SettingsPage,
    WorkstationsPage,
    PathsPage,
    FilesPage,
    NoticesPage,
    ServicePackPage,
    ResourcesPage,
    ContactPage,
    CompletePage,
    FailedPage,
    CancelQuestion, // whether to leave the setup
    BuildWindow,
    Review,
    ConfigureDialog,
    FolderPicker,
    Box, // a message box
    Other,
};

struct StepFailed : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

class ByHandTest : public testing::Test
{
protected:
    ByHandTest();

    // What a test works with, each without closing backslash: the sample's media, a copy of them that may be changed, the
    // folder for deployments, and an empty line without media.
    [[nodiscard]] static CString SampleMedia();
    [[nodiscard]] CString CopyOfMedia() const;
    [[nodiscard]] const CString& GetLocation() const { return m_location; }
    [[nodiscard]] CString Deployment(const wchar_t* name) const { return m_location + L"\\" + name; }
    [[nodiscard]] CString InFolder(const wchar_t* name) const { return m_folder / name; }

    void Start(const CString& media, const CString& furtherWords = CString());
    void StartWithoutMedia();
    // The text of a yes-or-no box on the first page that a local location brings up.
    [[nodiscard]] static CString LocalLocationQuestion();
    // That of the pages before the build.
    [[nodiscard]] static CString CancelQuestion();

    // The window, once it stands in front and has the focus.
    HWND WaitFor(Shown shown);
    void WaitUntil(const CString& what, const std::function<bool()>& condition);
    void WaitForFocus(HWND window, int control);
    // The control that has the focus; null for none.
    [[nodiscard]] HWND GetFocused(HWND window) const;

    // Types into the field that has the focus.
    void Type(HWND window, int control, const CString& text);
    // The first page of media that are no deployment, up to what comes behind it.
    void EnterFirstPage(const wchar_t* name);
    void ConfirmLocalLocation();
    // The same with its boxes answered, and on to the build.
    void WalkFromFirstPageToBuild(const wchar_t* name);
    // Of the sample's walk, up to the build.
    [[nodiscard]] static const std::vector<Shown>& PagesBehindFirst();
    // From the second page on by Enter alone: until the review is up, and on until the build begins.
    HWND WalkToReview();
    void WalkToBuild();
    // The box in front, by a key. It is noted; the next box is another one.
    CString AnswerBox(WORD key, std::initializer_list<WORD> modifiers = {});
    // The question whether to leave the setup, noted too.
    void AnswerCancelQuestion(WORD key);
    void WaitUntilGone(HWND window);
    // The close box in the window's caption, by the mouse.
    void CloseByBox(HWND window);

    // A deployment that was there before, made without a person.
    void BuildByAnswers(const CString& location, const wchar_t* name);
    // A run without a person that has to succeed. `words`: its command line.
    void RunByAnswers(const CString& words);

    // Waits for the end; whatever still asks a watching person something fails the step.
    unsigned int WaitForEnd(bool watched = true);
    // <folder> for the test's folder, <media> for the sample's media.
    [[nodiscard]] CString WithoutOwnPaths(CString text) const;
    // The log with <folder> for the test's folder, <media> for the sample's media and <work> for the program's own folder.
    [[nodiscard]] CString ReadLog() const;
    [[nodiscard]] const std::vector<CString>& GetBoxes() const { return m_boxes; }
    [[nodiscard]] CWizardRun& GetRun() { return *m_run; }
    // Names of what lies in a folder, sorted.
    [[nodiscard]] static std::vector<CString> ListFolder(const CString& folder);
    [[nodiscard]] std::vector<CString> ListLocation() const { return ListFolder(m_location); }

    // Lines of the log. `platform`: 2 or 3, as the host numbers them.
    using Lines = std::vector<CString>;
    [[nodiscard]] Lines LogOfOpening() const;
    [[nodiscard]] Lines LogOfMode(const wchar_t* name, int platform = 3) const;
    // From the first page to the deployment that stands.
    [[nodiscard]] Lines LogOfBuild(const wchar_t* name, int platform = 3) const;
    [[nodiscard]] static Lines LogOfCanceledPage();
    [[nodiscard]] static CString LogOfCancel();
    [[nodiscard]] static Lines Join(std::initializer_list<Lines> parts);

    // With all lines of the log, all boxes that came, and nothing on the console.
    void ExpectEnd(unsigned int exitCode, const Lines& log, const Lines& boxes);

private:
    [[noreturn]] void Fail(const CString& step, const CString& why) const;
    HWND FrontWindow(const CString& step) const;

    CTestFolder m_folder;
    CString m_location;
    CString m_media;
    std::unique_ptr<CWizardRun> m_run;
    std::vector<CString> m_boxes;
};

[[nodiscard]] Shown WhatIs(HWND window);
// A text of Setup.exe itself, with its holes filled.
[[nodiscard]] CString ProgramText(unsigned int id, std::initializer_list<CString> arguments = {});
