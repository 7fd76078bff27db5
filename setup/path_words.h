// Which word each path has in an answers file, and where the page has it: below which headings of its tree, by their labels.
// In the order of the tree.
#pragma once

#include "include/resource_ids.h"
#include "setup/answer_table.h"

struct PathWord
{
    const wchar_t* word = nullptr;
    unsigned int parent = 0; // strings of the resource library; NO_PARENT: the heading is on top
    unsigned int heading = 0;
    AnswerKind kind = AnswerKind::Value; // or List
};

constexpr unsigned int NO_PARENT = 0;

inline constexpr PathWord PATH_WORDS[] = {
    {L"support_path", NO_PARENT, IDS_SUPPORT_PATH, AnswerKind::List},
    {L"menu_file", IDS_MENU_FILES, IDS_MENU_FILE, AnswerKind::Value},
    {L"enterprise_menu_file", IDS_MENU_FILES, IDS_ENTERPRISE_MENU_FILE, AnswerKind::Value},
    {L"custom_dictionary", NO_PARENT, IDS_CUSTOM_DICTIONARY, AnswerKind::Value},
    {L"alt_font", NO_PARENT, IDS_ALT_FONT, AnswerKind::Value},
    {L"font_map_file", NO_PARENT, IDS_FONT_MAP_FILE, AnswerKind::Value},
    {L"printer_config_dir", IDS_PRINTER_FOLDERS, IDS_PRINTER_CONFIG, AnswerKind::Value},
    {L"printer_desc_dir", IDS_PRINTER_FOLDERS, IDS_PRINTER_DESC, AnswerKind::Value},
    {L"printer_style_sheet_dir", IDS_PRINTER_FOLDERS, IDS_PRINTER_STYLE_SHEET, AnswerKind::Value},
    {L"save_file_path", NO_PARENT, IDS_SAVE_FILE, AnswerKind::Value},
    {L"color_book_location", NO_PARENT, IDS_COLOR_BOOK, AnswerKind::List},
    {L"database_work_space_path", NO_PARENT, IDS_DATABASE_WORKSPACE, AnswerKind::Value},
    {L"template_path", IDS_TEMPLATES, IDS_TEMPLATE_FOLDER, AnswerKind::Value},
    {L"sheet_set_template_path", IDS_TEMPLATES, IDS_SHEET_SET_TEMPLATE, AnswerKind::Value},
    {L"qnew_template", IDS_TEMPLATES, IDS_QNEW_TEMPLATE, AnswerKind::Value},
    {L"alternative_page_set_ups_template", IDS_TEMPLATES, IDS_PAGE_SETUPS_TEMPLATE, AnswerKind::Value},
    {L"tool_palette_folder", NO_PARENT, IDS_TOOL_PALETTE, AnswerKind::List},
    {L"log_file_path", NO_PARENT, IDS_LOG_FILE, AnswerKind::Value},
    {L"plot_log_path", NO_PARENT, IDS_PLOT_LOG, AnswerKind::Value},
    {L"temp_directory", NO_PARENT, IDS_TEMP, AnswerKind::Value},
    {L"xref_temp_dir", NO_PARENT, IDS_XREF_TEMP, AnswerKind::Value},
    {L"texmaps", NO_PARENT, IDS_TEXMAPS, AnswerKind::List},
    {L"web_grab_dir", NO_PARENT, IDS_WEB_GRAB, AnswerKind::Value},
    {L"actions_recording_file_path", IDS_ACTIONS, IDS_ACTIONS_RECORDING, AnswerKind::Value},
    {L"additional_actions_file_location", IDS_ACTIONS, IDS_ADDITIONAL_ACTIONS, AnswerKind::Value},
    {L"dgn_mapping_path", NO_PARENT, IDS_DGN_MAPPING, AnswerKind::Value},
};
