// Ids of the test pages beside those of the product.
#ifndef ROLLOUT_TAB_PAGE_IDS_H
#define ROLLOUT_TAB_PAGE_IDS_H

#define IDD_TEST_TAB 9001
#define IDD_TEST_TAB_LARGE 9002
#define IDC_TEST_EDIT 9100
#define IDC_TEST_CHECK 9101
#define IDC_TEST_CHOICE1 9102
#define IDC_TEST_CHOICE2 9103
#define IDC_TEST_COMBO 9104
#define IDC_TEST_LAST 9105

#define IDS_TEST_QUESTION 9200
#define IDS_TEST_REFUSAL 9201

#endif
