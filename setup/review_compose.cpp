#include "setup/review_compose.h"

#include "base/number_text.h"
#include "setup/review_answers.h"
#include "setup/review_lines.h"

namespace {

constexpr std::uint64_t MEGABYTE = 1 << 20;

CString Megabytes(std::uint64_t bytes)
{
    return NumberText(static_cast<long long>((bytes + MEGABYTE - 1) / MEGABYTE)) + L" MB";
}

// "3 added, 2 changed"; empty for none.
CString RowsInWords(const TableReview& rows)
{
    CString words;
    const auto add = [&words](std::size_t count, const wchar_t* what) {
        if (count > 0) {
            words += (words.IsEmpty() ? CString() : CString(L", ")) +
                     NumberText(static_cast<long long>(count)) + L" " + what;
        }
    };
    add(rows.added, L"added");
    add(rows.changed, L"changed");
    add(rows.removed, L"removed");
    return words;
}

TableReview SumOf(const std::vector<TableReview>& tables)
{
    TableReview sum;
    for (const TableReview& table : tables) {
        sum.added += table.added;
        sum.changed += table.changed;
        sum.removed += table.removed;
    }
    return sum;
}

ReviewNode HeadOf(const DatabaseReview& database)
{
    ReviewNode node = ReviewLine(database.strTarget + L" (" + database.strProductName + L")");
    node.strProductCode = database.strProductCode;
    return node;
}

ReviewNode Changed(ReviewNode node)
{
    node.bChanged = true;
    return node;
}

ReviewNode Warned(ReviewNode node)
{
    node.bWarning = true;
    return node;
}

ReviewNode ReviewDatabaseRows(const DatabaseReview& database)
{
    ReviewNode node = HeadOf(database);
    if (!database.bWritten) {
        node.children.push_back(ReviewLine(L"Not changed: the file is copied byte for byte."));
        return node;
    }
    const CString sum = RowsInWords(SumOf(database.tables));
    ReviewNode rows = Changed(ReviewLine(L"Rows: " + (sum.IsEmpty() ? CString(L"as they are") : sum)));
    AppendLines(rows.children, database.tables, [](const TableReview& table) {
        return Changed(ReviewLine(table.strTable + L": " + RowsInWords(table)));
    });
    node.children.push_back(std::move(rows));
    node.children.push_back(
        Changed(ReviewLine(L"A new package code in place of " + database.strPackageCode)));
    if (database.bSignatureLost) {
        node.children.push_back(Changed(ReviewLine(L"The maker's digital signature is removed.")));
    }
    return node;
}

ReviewNode ReviewFiles(const DatabaseReview& database)
{
    const std::size_t count = database.addedFiles.size();
    const CString place = database.cabinets == 0
                              ? CString(L"copied as they are")
                              : L"packed into " + CountInWords(database.cabinets, L"cabinet", L"cabinets");
    ReviewNode node = ReviewLine(CountInWords(count, L"file", L"files") + L", " +
                                 BytesInWords(database.addedBytes) + L", " + place);
    AppendLines(node.children, database.addedFiles, [](const ReviewedFile& file) {
        return ReviewLine(file.strPath + L", " + BytesInWords(file.size));
    });
    return node;
}

ReviewNode ReviewNames(std::size_t count, const wchar_t* one, const wchar_t* many,
                       const std::vector<CString>& names)
{
    ReviewNode node = ReviewLine(CountInWords(count, one, many));
    AppendLines(node.children, names, ReviewLine);
    return node;
}

ReviewNode ReviewDatabaseAdditions(const DatabaseReview& database)
{
    ReviewNode node = HeadOf(database);
    if (!database.addedFiles.empty()) {
        node.children.push_back(Changed(ReviewFiles(database)));
    }
    if (!database.addedFolders.empty()) {
        node.children.push_back(
            Changed(ReviewNames(database.addedFolders.size(), L"folder", L"folders", database.addedFolders)));
    }
    if (!database.addedDrives.empty()) {
        node.children.push_back(
            Changed(ReviewNames(database.addedDrives.size(), L"drive", L"drives", database.addedDrives)));
    }
    return node;
}

void AppendPatches(ReviewNode& node, const std::vector<ReviewedPatch>& patches, const wchar_t* what)
{
    AppendLines(node.children, patches, [what](const ReviewedPatch& patch) {
        return Changed(ReviewLine(patch.strName +
                                  (patch.strTarget.IsEmpty() ? CString() : L" (" + patch.strTarget + L")") +
                                  L": " + what));
    });
}

ReviewNode ReviewDatabasePatches(const DatabaseReview& database)
{
    ReviewNode node = HeadOf(database);
    AppendPatches(node, database.appended, L"installed along with the product");
    AppendPatches(node, database.merged, L"merged into the package and its files");
    AppendPatches(node, database.mergedBefore, L"merged by an earlier build");
    return node;
}

// Those of the databases for which something is to be said, under a heading.
template <class Review>
ReviewNode ReviewAll(const CString& heading, const CString& none, const BuildReview& build, Review review)
{
    ReviewNode node = ReviewLine(heading);
    for (const DatabaseReview& database : build.databases) {
        ReviewNode part = review(database);
        if (!part.children.empty()) {
            node.children.push_back(std::move(part));
        }
    }
    if (node.children.empty()) {
        node.children.push_back(ReviewLine(none));
    }
    return node;
}

ReviewNode ReviewAmounts(const BuildReview& build)
{
    ReviewNode node = ReviewLine(L"What is copied, and where to");
    const auto add = [&node](const CString& text) { node.children.push_back(ReviewLine(text)); };
    add(L"The deployment: \"" + build.strTarget + L"\"");
    if (build.bReplaces) {
        node.children.push_back(
            Warned(ReviewLine(L"It replaces the deployment that stands there. Files that were added to that "
                              L"one or changed in it are kept beside it.")));
    }
    add(L"Copied as they are: " + CountInWords(build.filesCopied, L"file", L"files") + L", " +
        BytesInWords(build.bytesCopied));
    add(L"In all, with databases, cabinets, commands and notes: " +
        CountInWords(build.filesInAll, L"file", L"files"));
    add(L"Space needed: " + Megabytes(build.bytesNeeded) + L"; free: " +
        NumberText(static_cast<long long>(build.bytesFree / MEGABYTE)) + L" MB");
    add(L"Estimated time: " + DurationInWords(EstimateSeconds(build)) + L"; a slow disk or share needs more");
    return node;
}

ReviewNode ReviewWarnings(const BuildReview& build)
{
    if (build.warnings.empty()) {
        return ReviewLine(L"Warnings: none");
    }
    ReviewNode node =
        Warned(ReviewLine(L"Warnings: " + NumberText(static_cast<long long>(build.warnings.size()))));
    for (const CString& warning : build.warnings) {
        node.children.push_back(Warned(ReviewLine(warning)));
    }
    return node;
}

} // namespace

CString CountInWords(std::size_t count, const wchar_t* one, const wchar_t* many)
{
    return NumberText(static_cast<long long>(count)) + L" " + (count == 1 ? one : many);
}

CString BytesInWords(std::uint64_t bytes)
{
    const CString exact = CountInWords(static_cast<std::size_t>(bytes), L"byte", L"bytes");
    return bytes < MEGABYTE ? exact : Megabytes(bytes) + L" (" + exact + L")";
}

ReviewDocument ComposeReview(const std::vector<RecordedPage>& pages, const BuildReview& build,
                             const OperationError& refusal)
{
    ReviewDocument review;
    if (refusal) {
        ReviewNode node = Warned(
            ReviewLine(L"This can't be built (code " + NumberText(refusal.code) + L"): " + refusal.message));
        review.push_back(std::move(node));
    } else {
        review.push_back(ReviewLine(L"This can be built. Nothing has been built yet."));
    }
    ReviewNode answers = ReviewLine(L"What was chosen");
    answers.children = ReviewAnswers(pages);
    review.push_back(std::move(answers));
    if (!refusal) {
        review.push_back(
            ReviewAll(L"What is changed in the databases", L"There are none.", build, ReviewDatabaseRows));
        review.push_back(ReviewAll(L"What is added", L"Nothing.", build, ReviewDatabaseAdditions));
        review.push_back(ReviewAll(L"What is patched", L"Nothing.", build, ReviewDatabasePatches));
        review.push_back(ReviewAmounts(build));
    }
    review.push_back(ReviewWarnings(build));
    return review;
}
