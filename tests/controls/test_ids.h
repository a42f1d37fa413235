// Numbers of the test program's texts.
#define IDS_HEADING_NAME 100
#define IDS_HEADING_SIZE 101
#define IDS_HEADING_DATE 102
