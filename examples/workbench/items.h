// Numbers of the program's items, for sources and resource script alike.
#pragma once

#define IDS_TITLE 1
#define IDS_ATTACHMENTS 2
#define IDS_NAME 3
#define IDS_KIND 4
#define IDS_SIZE 5
#define IDS_DATE 6
#define IDS_KINDS 7
#define IDS_COLORS 8
#define IDS_NEW_KIND 9
#define IDS_ADD 10
#define IDS_CANCEL 11
// A kind of attachment in a document is the number of its text behind this one.
#define IDS_FIRST_KIND 20
#define IDS_LAST_KIND 24
