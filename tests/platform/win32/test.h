#pragma once
// Numbers of the resources that the tests of the Windows calls use. A comment after a number says why it is there.
#define DIALOG_EXTENDED 100
#define DIALOG_STANDARD 101
#define DIALOG_UNKNOWN_CLASS 102
#define DIALOG_SHOWN 103 // WS_VISIBLE
#define DIALOG_CHILD 104

#define ID_CHECK 201
#define ID_THREE_STATES 202
#define ID_MANUAL_CHECK 203
#define ID_SORTED_COMBO 204
#define ID_LIST_COMBO 205
#define ID_EDIT 206
#define ID_MULTILINE_EDIT 207
#define ID_LIST 208
#define ID_GROUP 209
#define ID_LABEL 210
