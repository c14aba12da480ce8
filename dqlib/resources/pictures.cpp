#include "dqlib/resources/pictures.h"

namespace dq {
namespace {

constexpr PictureRow kPictures[] = {
    {IDB_CHECK_MARKS,
     "40 19 s 2 000000 M 5.5 9.5 L 8.5 12.5 14.5 6 s 2 FFFFFF M 25.5 9.5 L 28.5 12.5 34.5 "
     "6"},
    {IDB_NETWORK,
     "16 16 s 1 5A6470 M 3.5 8 L 12.5 8 M 8 5.5 L 8 8 M 3.5 8 L 3.5 10 M 12.5 8 L 12.5 10 "
     "f 3C4A5C R 5.5 0.5 5 4 f 8CC0EC R 6.3 1.3 3.4 2.4 f 3C4A5C R 7.5 4.5 1 1 R 6.5 5.5 3 "
     "0.8 f 3C4A5C R 1 9.5 5 4 f 8CC0EC R 1.8 10.3 3.4 2.4 f 3C4A5C R 3 13.5 1 1 R 2 14.5 "
     "3 0.8 f 3C4A5C R 10 9.5 5 4 f 8CC0EC R 10.8 10.3 3.4 2.4 f 3C4A5C R 12 13.5 1 1 R 11 "
     "14.5 3 0.8"},
    {IDB_NETWORK_GROUP,
     "16 16 f 3C4A5C R 1 2 5 4 f 8CC0EC R 1.8 2.8 3.4 2.4 f 3C4A5C R 3 6 1 1 R 2 7 3 0.8 f "
     "3C4A5C R 10 2 5 4 f 8CC0EC R 10.8 2.8 3.4 2.4 f 3C4A5C R 12 6 1 1 R 11 7 3 0.8 f "
     "3C4A5C R 5.5 9 5 4 f 8CC0EC R 6.3 9.8 3.4 2.4 f 3C4A5C R 7.5 13 1 1 R 6.5 14 3 0.8 s "
     "1 5A6470 M 6 4 L 10 4"},
    {IDB_MACHINE,
     "16 16 f 3C4A5C R 1.5 2 13 9 f 8CC0EC R 3 3.5 10 6 f 3C4A5C R 6.5 11 3 2 R 4 13 8 1.5"},
    {IDB_CHECK_CLEAR, "16 16 f FFFFFF R 2 2 12 12 s 1 5A6470 R 2.5 2.5 11 11"},
    {IDB_CHECK_MIXED, "16 16 f FFFFFF R 2 2 12 12 s 1 5A6470 R 2.5 2.5 11 11 f 7A8694 R 5 5 6 6"},
    {IDB_CHECK_SET,
     "16 16 f FFFFFF R 2 2 12 12 s 1 5A6470 R 2.5 2.5 11 11 s 2 1E6FBF M 5 8 L 7.2 10.4 "
     "11.2 5.4"},
    {IDB_LEAF,
     "16 16 f FFFFFF M 3 1.5 L 10 1.5 13 4.5 13 14.5 3 14.5 Z f C8D4E0 M 10 1.5 L 10 4.5 "
     "13 4.5 Z s 1 5A6470 M 3.5 1.5 L 10 1.5 12.5 4.5 12.5 14.5 3.5 14.5 Z s 1 8A96A4 M "
     "5.5 7 L 10.5 7 M 5.5 9.5 L 10.5 9.5 M 5.5 12 L 9 12"},
    {IDB_FOLDER_CLOSED,
     "16 16 f C99A2E M 1 3 L 6 3 7.5 4.5 15 4.5 15 13.5 1 13.5 Z f F2C95C R 1.8 5.5 12.4 "
     "7.2"},
    {IDB_FOLDER_OPEN,
     "16 16 f C99A2E M 1 3 L 6 3 7.5 4.5 13.5 4.5 13.5 7 4.5 7 1 13.5 Z f F2C95C M 4.5 7 L "
     "15.5 7 12.5 13.5 1.2 13.5 Z"},
    {IDB_PROGRAM_INFO,
     "16 16 f 2466B8 O 8 8 6.8 6.8 f FFFFFF O 8 4.6 1.292 1.292 R 6.98 6.98 2.04 4.76"},
    {IDB_PROGRAM_WARNING,
     "16 16 f E8A200 M 8 1.5 L 15.14 14.08 0.86 14.08 Z f 3A2A00 O 8 12.04 1.156 1.156 M "
     "6.844 5.58 L 9.156 5.58 8.68 10 7.32 10 Z"},
    {IDB_PROGRAM_ERROR,
     "16 16 f C8281E O 8 8 6.8 6.8 s 2.04 FFFFFF M 5.28 5.28 L 10.72 10.72 M 5.28 10.72 L "
     "10.72 5.28"},
    {IDB_DBMS_INFO,
     "16 16 f B8860B O 5 3.5 4 2 f D9A520 M 1 3.5 C 1 6 9 6 9 3.5 L 9 9.5 C 9 12 1 12 1 "
     "9.5 Z f F3CF6B O 5 3.5 4 1.8 s 0.8 7A5A08 O 5 3.5 4 1.8 M 1 3.5 L 1 9.5 C 1 12 9 12 "
     "9 9.5 L 9 3.5 f 2466B8 O 11.2 11 4.4 4.4 f FFFFFF O 11.2 8.8 0.836 0.836 R 10.54 "
     "10.34 1.32 3.08"},
    {IDB_DBMS_WARNING,
     "16 16 f B8860B O 5 3.5 4 2 f D9A520 M 1 3.5 C 1 6 9 6 9 3.5 L 9 9.5 C 9 12 1 12 1 "
     "9.5 Z f F3CF6B O 5 3.5 4 1.8 s 0.8 7A5A08 O 5 3.5 4 1.8 M 1 3.5 L 1 9.5 C 1 12 9 12 "
     "9 9.5 L 9 3.5 f E8A200 M 11 6.5 L 15.725 14.825 6.275 14.825 Z f 3A2A00 O 11 13.475 "
     "0.765 0.765 M 10.235 9.2 L 11.765 9.2 11.45 12.125 10.55 12.125 Z"},
    {IDB_DBMS_ERROR,
     "16 16 f B8860B O 5 3.5 4 2 f D9A520 M 1 3.5 C 1 6 9 6 9 3.5 L 9 9.5 C 9 12 1 12 1 "
     "9.5 Z f F3CF6B O 5 3.5 4 1.8 s 0.8 7A5A08 O 5 3.5 4 1.8 M 1 3.5 L 1 9.5 C 1 12 9 12 "
     "9 9.5 L 9 3.5 f C8281E O 11.2 11 4.4 4.4 s 1.32 FFFFFF M 9.44 9.24 L 12.96 12.76 M "
     "9.44 12.76 L 12.96 9.24"},
    {IDB_TASK_START, "16 16 f 2E9E4F O 8 8 6.8 6.8 f FFFFFF M 6 4.5 L 12 8 6 11.5 Z"},
    {IDB_TASK_END, "16 16 f 56616E O 8 8 6.8 6.8 f FFFFFF R 5.3 5.3 5.4 5.4"},
};

}  // namespace

std::span<const PictureRow> PictureTable() { return kPictures; }

}  // namespace dq
