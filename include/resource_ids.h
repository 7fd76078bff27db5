// Ids of the resource library's dialogs, controls, strings and icons. The pages and the resource scripts include
// it, so it holds nothing but names for numbers.
#ifndef ROLLOUT_RESOURCE_IDS_H
#define ROLLOUT_RESOURCE_IDS_H

// Dialogs
#define IDD_CANCEL 378
#define IDD_BEGIN_DEPLOYMENT 392
#define IDD_PRODUCT_CONTACT 393
#define IDD_DEPLOYMENT_COMPLETE 403
#define IDD_DEPLOYMENT_FAILED 441

// Icons
#define IDI_SETUP 647

// Frame of every page. Button ids are navigation results.
#define IDC_NEXT 1
#define IDC_CANCEL 2
#define IDC_BACK 1001
#define IDC_RESET 1278
#define IDC_PREVIOUS_TAB 1013
#define IDC_NEXT_TAB 1014
#define IDC_PAGE_COUNTER 1276
#define IDC_LINK1 1062
#define IDC_LINK2 1063
#define IDC_BANNER 1064
#define IDC_SIDE_PANE 1032
#define IDC_FOOTER 1033
#define IDC_STEP_LABEL 1162
#define IDC_SEPARATOR 1288
#define IDC_PANEL 1161
#define IDC_HIDDEN_AT_START 1031

// Cancel question
#define IDC_CANCEL_QUESTION 1280

// Begin deployment
#define IDC_MODE_HEADING 1247
#define IDC_MODE_CREATE 1242
#define IDC_MODE_CREATE_FROM 1243
#define IDC_MODE_MODIFY 1244
#define IDC_LOCATION_HEADING_EXISTING 1248
#define IDC_LOCATION_HEADING_NEW 1253
#define IDC_LOCATION 1147
#define IDC_LOCATION_BROWSE 1011
#define IDC_NAME_HEADING 1249
#define IDC_NAME 1021
#define IDC_DEPLOYMENTS_HEADING 1251
#define IDC_DEPLOYMENTS 1048
#define IDC_PLATFORM_HEADING 1250
#define IDC_PLATFORM_X86 1245
#define IDC_PLATFORM_X64 1246
#define IDC_ANCHOR_LOCATION_PLAIN 1255
#define IDC_ANCHOR_NAME_HEADING_PLAIN 1256
#define IDC_ANCHOR_NAME_PLAIN 1257
#define IDC_ANCHOR_BROWSE_PLAIN 1258
#define IDC_ANCHOR_NAME_HEADING_CREATE 1259
#define IDC_ANCHOR_NAME_CREATE 1260
#define IDC_ANCHOR_NAME_HEADING_CREATE_FROM 1262
#define IDC_ANCHOR_NAME_CREATE_FROM 1263

// Outcome pages
#define IDC_RESULT_LINE1 1209
#define IDC_RESULT_LINE2 1210
#define IDC_RESULT_LABEL 1216
#define IDC_FAILURE_REASON 1211

// Strings
#define IDS_OTHER_PRODUCTS_DEPLOYMENT 26
#define IDS_LOCATION_MISSING 27
#define IDS_PATH_TOO_LONG 40
#define IDS_PLATFORM_NOT_ALLOWED 120 // %s: name of the deployment
#define IDS_BANNER_PREFIX 233        // HTML in front of every banner
#define IDS_PDF_NO_VIEWER_TITLE 240
#define IDS_PDF_NO_VIEWER 241
#define IDS_PAGE_COUNTER 244    // [%INDEX], [%TOTAL]
#define IDS_CANCEL_TEMPLATE 259 // %1, %2, %3: all three the picked question
#define IDS_ERROR_TITLE 282
#define IDS_CONFIRM_FOLDER 307
#define IDS_NAME_INVALID 311
#define IDS_COMPLETE_LINE1 329
#define IDS_FAILURE 330 // [Reason], [LogPath]
#define IDS_LOCATION_NOT_NETWORK 372
#define IDS_LOCATION_UNUSABLE 373 // %s: location
#define IDS_CANCEL_OTHER 379
#define IDS_CANCEL_INSTALL 418
#define IDS_CANCEL_MAINTAIN 419
#define IDS_CANCEL_DEPLOYMENT 420
#define IDS_COMPLETE_LINE2 430
#define IDS_COMPLETE_TEXT 507          // HTML
#define IDS_REPLACE_DEPLOYMENT 521     // %s: name
#define IDS_LOCATION_ACCESS_DENIED 524 // %s: location
#define IDS_BROWSE_LOCATION 609
#define IDS_STEP 631               // %s: the host's step argument
#define IDS_EXIT_CODE_FIRST 0xF000 // failure texts: exit code | 0xF000

#endif
