// Ids of the test pages beside those of the product.
#ifndef ROLLOUT_TEST_IDS_H
#define ROLLOUT_TEST_IDS_H

#define IDD_TEST_WIZARD 9001
#define IDD_TEST_TAB 9002
#define IDD_TEST_BARE 9003
#define IDC_TEST_EDIT 9100
#define IDS_TEST_LONG 9200

#endif
