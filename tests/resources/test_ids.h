// Numbers of test.rc.
#pragma once

#define IDS_FIRST 1
#define IDS_UMLAUTS (IDS_FIRST + 1)
#define IDS_ESCAPES 0x10
#define IDS_JOINED 100
#define IDS_LAST 65535

#define IDB_FLAG 130
#define IDI_DISC 131
#define IDC_POINTER 65535
