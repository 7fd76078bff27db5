// Ids of the program's own resources; the resource script includes it too.
#ifndef ROLLOUT_SETUP_RESOURCE_H
#define ROLLOUT_SETUP_RESOURCE_H

#define IDI_PROGRAM 1

#define IDD_BUILD 100
#define IDD_CONFIGURE 101
#define IDD_CONFIGURE_NO_PAGE 102
#define IDD_REVIEW 103

#define IDC_BUILD_STEP 1001
#define IDC_BUILD_FILE 1002
#define IDC_BUILD_BAR 1003
#define IDC_BUILD_AMOUNT 1004
#define IDC_BUILD_TIME_LEFT 1005

// Configure dialog. Its Next, Cancel and Back have the ids of the pages' buttons, which are navigation results.
#define IDC_CONFIGURE_NEXT 1
#define IDC_CONFIGURE_CANCEL 2
#define IDC_CONFIGURE_BACK 1001
#define IDC_CONFIGURE_TABS 1010
#define IDC_CONFIGURE_VIEW 1012
#define IDC_CONFIGURE_REASON 1015

// Review. Build and Cancel are IDOK and IDCANCEL.
#define IDC_REVIEW_HEADING 1020
#define IDC_REVIEW_TREE 1021
#define IDC_REVIEW_PAGE 1022
#define IDC_REVIEW_COPY 1023
#define IDC_REVIEW_BACK 1024
#define IDC_REVIEW_LINE_LABEL 1025
#define IDC_REVIEW_LINE 1026

// Build window. %1, %2: texts that are filled in
#define IDS_BUILD_TITLE 200       // %1: name of the deployment
#define IDS_BUILD_TITLE_SHARE 201 // %1: per cent, %2: name of the deployment
#define IDS_BUILD_STARTING 202
#define IDS_BUILD_AMOUNT 203 // %1: bytes done, %2: of all
#define IDS_BUILD_CANCELLING 204
#define IDS_BUILD_CANCEL_QUESTION 205
#define IDS_BUILD_SECONDS_LEFT 206 // %1: number
#define IDS_BUILD_MINUTE_LEFT 207
#define IDS_BUILD_MINUTES_LEFT 208 // %1: number
#define IDS_BUILD_HOURS_LEFT 209   // %1: number
#define IDS_BUILD_SHUTDOWN_REASON 210
#define IDS_DECIMAL_POINT 211
#define IDS_BUILD_BROKE_OFF 212     // %1: the fault
#define IDS_BUILD_WARNINGS 213      // %1: the warnings, each behind an empty line
#define IDS_BUILD_MORE_WARNINGS 214 // %1: number
#define IDS_ADDITIONS_BLOCK 215     // %1: what is wrong
#define IDS_ADDITIONS_NOTE 216      // %1: what to note
#define IDS_ADDITION_NOT_STORED 217

// Program
#define IDS_PROGRAM_TITLE 300
#define IDS_CHOOSE_MEDIA 301
#define IDS_MEDIA_NOT_GIVEN 302    // %1: folder that was looked for
#define IDS_LIBRARY_MISSING 303    // %1: path, %2: why
#define IDS_LIBRARY_FOREIGN 304    // %1: path, %2: export
#define IDS_NO_PAGES 305           // %1: path of the page library
#define IDS_BAD_COMMAND_LINE 306   // %1: complaint
#define IDS_ANSWERS_UNREADABLE 307 // %1: why
#define IDS_PICTURES_FAILED 308    // %1: path, %2: why
#define IDS_OUT_OF_MEMORY 309
#define IDS_SEE_LOG 310         // %1: what failed, %2: log
#define IDS_RUN_BROKE_OFF 311   // %1: fault, %2: place in the code, %3: last step
#define IDS_RUN_ENDED_EARLY 312 // %1: the process's code, %2: last step
#define IDS_RUN_QUIET 313       // %1: seconds, %2: last step
#define IDS_RUN_NOT_STARTED 314 // %1: program, %2: why
#define IDS_RUN_INTERRUPTED 319 // %1: last step
#define IDS_RUN_STARTING 315
#define IDS_LOG_FAILED 316 // %1: path, %2: why
#define IDS_SESSION_END_WAITS 317
#define IDS_FAILURE_PANE 318      // HTML. %1: what failed and what to do, %2: log, %3: answers
#define IDS_RECORD_FAILED 325     // %1: path, %2: why
#define IDS_FAILURE_ANSWERS 326   // HTML. %1: path
#define IDS_RECORD_IS_ANSWERS 327 // %1: path
#define IDS_ANSWERS_IN_USE 328
#define IDS_RECORD_IS_LOG 329        // %1: path
#define IDS_RECORD_IN_DEPLOYMENT 330 // %1: path, %2: folder of the deployment
#define IDS_KEPT_FAILED 331          // %1: path, %2: why
#define IDS_ANSWERS_NO_FILE 332      // %1: path, %2: why
// Commands on deployments
#define IDS_REPORT_FAILED 340        // %1: path, %2: why
#define IDS_REPORT_IS_LOG 341        // %1: path
#define IDS_OUTPUT_IN_DEPLOYMENT 342 // %1: option, %2: path, %3: folder of the deployment
// The deployment that is modified or built upon
#define IDS_CHECK_TITLE 343       // %1: name of the deployment
#define IDS_CHECK_TITLE_SHARE 344 // %1: per cent, %2: name of the deployment
#define IDS_CHECK_CANCELLING 345
#define IDS_CHECK_CANCEL_QUESTION 346
#define IDS_CHECK_SHUTDOWN_REASON 347
#define IDS_BASE_DIFFERS 348      // %1: what was found, in numbers, %2: names
#define IDS_BASE_UNDETERMINED 349 // %1: why, %2: names
// Two deployments compared
#define IDS_COMPARE_DIFFERENT 350          // %1: number
#define IDS_COMPARE_FAILED 351             // %1: why
#define IDS_COMPARE_ANSWERS_UNREADABLE 352 // %1: path, %2: why
// --plan
#define IDS_PLAN_FAILED 360        // %1: path, %2: why
#define IDS_PLAN_IS_OTHER 361      // %1: path
#define IDS_PLAN_IN_DEPLOYMENT 362 // %1: path, %2: folder of the deployment
#define IDS_PLAN_WRITTEN 363       // %1: path
// What stands in the new deployment's place
#define IDS_REPLACE_UNLISTED 320  // %1: folder, %2: product, %3: date
#define IDS_REPLACE_OWN_FILES 321 // %1: names
#define IDS_REPLACE_KEPT_WHOLE 322
#define IDS_REPLACE_MORE_FILES 323 // %1: number
#define IDS_REPLACE_QUESTION 324

// Configure dialog
#define IDS_CONFIGURE_CANCEL_QUESTION 401
#define IDS_CONFIGURE_NO_PAGE 402          // %1: name of the page
#define IDS_CONFIGURE_NO_DATABASE 403      // %1: product, %2: why
#define IDS_CONFIGURE_NO_DATABASE_SAVE 404 // %1: product, %2: why
#define IDS_CONFIGURE_NO_WINDOW 405        // %1: why
#define IDS_CONFIGURE_NO_PRODUCT 406       // %1: name of the page

// Review
#define IDS_REVIEW_TITLE 420 // %1: name of the deployment
#define IDS_REVIEW_HEADING 421
#define IDS_REVIEW_CHECK_HEADING 422
#define IDS_REVIEW_REFUSED 423
#define IDS_REVIEW_BUILD 424
#define IDS_REVIEW_FINISH 425
#define IDS_REVIEW_NOT_COPIED 426
#define IDS_REVIEW_CANCEL_QUESTION 427
#define IDS_REVIEW_NO_WINDOW 428
// While it is found out what would be built
#define IDS_DECIDING_TITLE 430       // %1: name of the deployment
#define IDS_DECIDING_TITLE_SHARE 431 // %1: per cent, %2: name of the deployment
#define IDS_DECIDING_CANCELLING 432
#define IDS_DECIDING_CANCEL_QUESTION 433
#define IDS_DECIDING_SHUTDOWN_REASON 434

#endif
