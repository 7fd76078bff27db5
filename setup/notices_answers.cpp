#include "include/resource_ids.h"
#include "setup/page_answers.h"

namespace {

constexpr AnswerNeed UPDATES = {L"updates", L"yes"};
constexpr AnswerNeed LOCAL_LIST = {L"update_source", L"local_list"};
constexpr AnswerNeed SITE_CHANNEL = {L"site_channel", L"yes"};
constexpr AnswerNeed FEEDS = {L"feeds", L"yes"};

// A box stands before what it enables.
constexpr AnswerKey KEYS[] = {
    {.word = L"updates", .kind = AnswerKind::Check, .control = IDC_UPDATES},
    {.word = L"update_source",
     .kind = AnswerKind::Entry,
     .control = IDC_UPDATE_SOURCE,
     .choice = L"maker",
     .needs = UPDATES},
    {.word = L"update_source",
     .kind = AnswerKind::Entry,
     .control = IDC_UPDATE_SOURCE,
     .choice = L"local_list",
     .needs = UPDATES},
    {.word = L"update_list", .kind = AnswerKind::Path, .control = IDC_LIST_LOCATION, .needs = LOCAL_LIST},
    {.word = L"channel_notices", .kind = AnswerKind::Check, .control = IDC_CHANNEL_NOTICES},
    {.word = L"site_channel", .kind = AnswerKind::Check, .control = IDC_SITE_CHANNEL},
    {.word = L"site_feed", .kind = AnswerKind::Path, .control = IDC_FEED_LOCATION, .needs = SITE_CHANNEL},
    {.word = L"site_name", .kind = AnswerKind::Text, .control = IDC_DISPLAY_NAME, .needs = SITE_CHANNEL},
    {.word = L"feeds", .kind = AnswerKind::Check, .control = IDC_FEEDS},
    {.word = L"custom_feeds", .kind = AnswerKind::Check, .control = IDC_CUSTOM_FEEDS, .needs = FEEDS},
};

constexpr AnswerBox BOXES[] = {
    {BoxKind::Question, L"empty_list", L"update_list", IDS_LIST_EMPTY},
    {BoxKind::Question, L"unknown_list_server", L"update_list", IDS_LIST_HOST_UNKNOWN},
    {BoxKind::Question, L"feed_kind", L"site_feed", IDS_FEED_WRONG_KIND},
    {BoxKind::Question, L"feed_not_found", L"site_feed", IDS_FEED_NOT_FOUND},
    {BoxKind::Refusal, nullptr, L"update_list", IDS_LIST_WRONG_KIND},
    {BoxKind::Refusal, nullptr, L"update_list", IDS_LIST_MISSING},
    {BoxKind::Refusal, nullptr, L"site_feed", IDS_FEED_SERVER_TOO_LONG},
    {BoxKind::Refusal, nullptr, L"site_feed", IDS_FEED_INVALID},
};

} // namespace

constexpr PageAnswerTable NOTICES_ANSWERS = {.page = &RowOfSection(L"notices"), .keys = KEYS, .boxes = BOXES};
