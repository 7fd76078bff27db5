// Ids of the tests' dialog template; read by the resource compiler too.
#pragma once

#define IDD_TEST 100
#define IDC_NAME 200
#define IDC_COUNT 201
#define IDC_CHECK 202
#define IDC_FIRST_RADIO 203
#define IDC_SECOND_RADIO 204
#define IDC_LINK 205
#define IDC_LIST 206
