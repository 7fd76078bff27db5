#include "setup/answer_table.h"

#include "include/resource_ids.h"

namespace {

constexpr AnswerKey KEYS[] = {
    // Media that is no deployment's image shows no choice of mode: it can only create.
    {L"begin", L"mode", AnswerKind::Radio, IDC_MODE_CREATE, L"create", true},
    {L"begin", L"mode", AnswerKind::Radio, IDC_MODE_CREATE_FROM, L"create_from", false},
    {L"begin", L"mode", AnswerKind::Radio, IDC_MODE_MODIFY, L"modify", false},
    {L"begin", L"location", AnswerKind::Path, IDC_LOCATION, nullptr, false},
    {L"begin", L"base", AnswerKind::ListLine, IDC_DEPLOYMENTS, nullptr, false},
    {L"begin", L"name", AnswerKind::Text, IDC_NAME, nullptr, false},
    {L"begin", L"platform", AnswerKind::Radio, IDC_PLATFORM_X86, L"x86", false},
    {L"begin", L"platform", AnswerKind::Radio, IDC_PLATFORM_X64, L"x64", false},
    {L"settings", L"network_log", AnswerKind::Check, IDC_NETWORK_LOG, nullptr, false},
    {L"settings", L"log_folder", AnswerKind::Path, IDC_LOG_FOLDER, nullptr, false},
    {L"settings", L"keep_copy", AnswerKind::Check, IDC_SETTINGS_OPTION, nullptr, false},
    {L"settings", L"install_mode", AnswerKind::Radio, IDC_INSTALL_SILENT, L"silent", false},
    {L"settings", L"install_mode", AnswerKind::Radio, IDC_INSTALL_PROGRESS, L"progress", false},
    {L"settings", L"mc3", AnswerKind::Check, IDC_MC3, nullptr, false},
    // A box stands before what it enables.
    {L"notices", L"updates", AnswerKind::Check, IDC_UPDATES, nullptr, false},
    {L"notices", L"update_source", AnswerKind::Entry, IDC_UPDATE_SOURCE, L"maker", false},
    {L"notices", L"update_source", AnswerKind::Entry, IDC_UPDATE_SOURCE, L"local_list", false},
    {L"notices", L"update_list", AnswerKind::Path, IDC_LIST_LOCATION, nullptr, false},
    {L"notices", L"channel_notices", AnswerKind::Check, IDC_CHANNEL_NOTICES, nullptr, false},
    {L"notices", L"site_channel", AnswerKind::Check, IDC_SITE_CHANNEL, nullptr, false},
    {L"notices", L"site_feed", AnswerKind::Path, IDC_FEED_LOCATION, nullptr, false},
    {L"notices", L"site_name", AnswerKind::Text, IDC_DISPLAY_NAME, nullptr, false},
    {L"notices", L"feeds", AnswerKind::Check, IDC_FEEDS, nullptr, false},
    {L"notices", L"custom_feeds", AnswerKind::Check, IDC_CUSTOM_FEEDS, nullptr, false},
    {L"resources", L"parts_bay", AnswerKind::Check, IDC_PARTS_BAY, nullptr, false},
    {L"resources", L"member_bay", AnswerKind::Check, IDC_MEMBER_BAY, nullptr, false},
    {L"resources", L"round_trip", AnswerKind::Check, IDC_ROUND_TRIP, nullptr, false},
    {L"resources", L"send_computer_name", AnswerKind::Check, IDC_SEND_COMPUTER_NAME, nullptr, false},
    {L"resources", L"search_locations", AnswerKind::Check, IDC_SEARCH_LOCATIONS, nullptr, false},
};

constexpr AnswerBox BOXES[] = {
    {L"begin", BoxKind::Question, L"local_location", L"location", IDS_LOCATION_NOT_NETWORK},
    {L"begin", BoxKind::Question, L"confirm_folder", L"location", IDS_CONFIRM_FOLDER},
    {L"begin", BoxKind::Question, L"replace", L"name", IDS_REPLACE_DEPLOYMENT},
    {L"begin", BoxKind::Question, ROLE_REPLACE_UNLISTED, L"name", PROGRAM_BOX},
    {L"begin", BoxKind::Refusal, nullptr, L"location", IDS_OTHER_PRODUCTS_DEPLOYMENT},
    {L"begin", BoxKind::Refusal, nullptr, L"location", IDS_LOCATION_MISSING},
    {L"begin", BoxKind::Refusal, nullptr, L"location", IDS_LOCATION_UNUSABLE},
    {L"begin", BoxKind::Refusal, nullptr, L"location", IDS_LOCATION_ACCESS_DENIED},
    {L"begin", BoxKind::Refusal, nullptr, L"location", IDS_PATH_TOO_LONG},
    {L"begin", BoxKind::Refusal, nullptr, L"name", IDS_NAME_INVALID},
    {L"begin", BoxKind::Refusal, nullptr, L"platform", IDS_PLATFORM_NOT_ALLOWED},
    {L"settings", BoxKind::Question, L"doubtful_log_folder", L"log_folder", IDS_LOG_FOLDER_UNUSABLE},
    {L"settings", BoxKind::Refusal, nullptr, L"log_folder", IDS_LOG_FOLDER_NOT_NETWORK},
    {L"notices", BoxKind::Question, L"empty_list", L"update_list", IDS_LIST_EMPTY},
    {L"notices", BoxKind::Question, L"unknown_list_server", L"update_list", IDS_LIST_HOST_UNKNOWN},
    {L"notices", BoxKind::Question, L"feed_kind", L"site_feed", IDS_FEED_WRONG_KIND},
    {L"notices", BoxKind::Question, L"feed_not_found", L"site_feed", IDS_FEED_NOT_FOUND},
    {L"notices", BoxKind::Refusal, nullptr, L"update_list", IDS_LIST_WRONG_KIND},
    {L"notices", BoxKind::Refusal, nullptr, L"update_list", IDS_LIST_MISSING},
    {L"notices", BoxKind::Refusal, nullptr, L"site_feed", IDS_FEED_SERVER_TOO_LONG},
    {L"notices", BoxKind::Refusal, nullptr, L"site_feed", IDS_FEED_INVALID},
};

template <class Row, std::size_t COUNT>
TableRows<Row> RowsOf(const Row (&rows)[COUNT])
{
    return {rows, rows + COUNT};
}

} // namespace

TableRows<AnswerKey> AnswerKeys()
{
    return RowsOf(KEYS);
}

TableRows<AnswerBox> AnswerBoxes()
{
    return RowsOf(BOXES);
}
