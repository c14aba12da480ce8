#include "dqlib/resources/dialogs.h"

namespace dq {
namespace {

constexpr DialogRow kDialogs[] = {
    {2712, R"(caption "Object Type Information"
size 380 112
text -1 "&Type:" 8 10 60 14
combo 2754 "" 72 8 200 160 droplist
text -1 "&Owner:" 8 34 60 14
edit 2756 "" 72 32 200 18 limit=30
text -1 "&Name:" 8 58 60 14
edit 2757 "" 72 56 200 18 limit=30
button 3019 "&Detach" 72 82 84 24 hidden
defbutton 1 "OK" 288 8 84 24
button 2 "Cancel" 288 38 84 24
button 9 "&Help" 288 68 84 24
)"},
    {44510, R"(caption "Options"
size 560 360
text -1 "&Page:" 8 8 130 14
class "TabStrip" 2900 "" 8 24 130 290
text 2901 "" 146 8 406 306 hidden
defbutton 1 "OK" 280 326 84 24
button 2 "Cancel" 372 326 84 24
button 9 "&Help" 464 326 84 24
)"},
    {44530, R"(caption "Date/Time Format Builder"
size 460 414
text -1 "&Predefined formats:" 8 10 200 14
combo 44531 "" 8 28 310 160 droplist
defbutton 1 "OK" 338 8 114 24
button 2 "Cancel" 338 38 114 24
button 44552 "Cu&stomize" 338 68 114 24
button 9 "&Help" 338 98 114 24
group 44553 "Customize" 8 130 444 276
text -1 "&Day:" 20 152 44 14
combo 44532 "" 66 150 70 160 droplist
text -1 "followed by:" 140 152 76 14
combo 44539 "" 218 150 48 160 droplist
text -1 "&Month:" 20 178 44 14
combo 44533 "" 66 176 70 160 droplist
text -1 "followed by:" 140 178 76 14
combo 44540 "" 218 176 48 160 droplist
text -1 "&Year:" 20 204 44 14
combo 44534 "" 66 202 70 160 droplist
text -1 "followed by:" 140 204 76 14
combo 44541 "" 218 202 48 160 droplist
text -1 "H&our:" 284 152 64 14
combo 44535 "" 350 150 90 160 droplist
text -1 "Mi&nute:" 284 178 64 14
combo 44536 "" 350 176 90 160 droplist
text -1 "Se&cond:" 284 204 64 14
combo 44537 "" 350 202 90 160 droplist
text -1 "&AM/PM:" 284 230 64 14
combo 44538 "" 350 228 90 160 droplist
group -1 "Date order" 20 256 246 90
radio 44542 "Day Month Year" 28 274 116 14 group
radio 44543 "Day Year Month" 146 274 116 14
radio 44544 "Month Day Year" 28 298 116 14
radio 44545 "Month Year Day" 146 298 116 14
radio 44546 "Year Month Day" 28 322 116 14
radio 44547 "Year Day Month" 146 322 116 14
group -1 "Date and time order" 284 256 156 90
radio 44548 "Date Time" 292 274 116 14 group
radio 44549 "Time Date" 292 298 116 14
text -1 "Format:" 20 356 54 14 group
edit 44550 "" 76 354 364 18 readonly
text -1 "Example:" 20 382 54 14
edit 44551 "" 76 380 364 18 readonly
)"},
    {44710, R"(caption "Printing"
size 330 100
text 44711 "" 12 14 306 14
text 44712 "" 12 36 306 14
button 2 "Cancel" 123 64 84 24
)"},
    {45344, R"(caption "Rename Tab"
size 300 72
text -1 "&Name:" 8 12 50 14
edit 45345 "" 60 10 232 18
defbutton 1 "OK" 116 40 84 24
button 2 "Cancel" 208 40 84 24
)"},
    {45380, R"(caption "Messages"
size 520 240
text 45381 "" 8 8 408 224 hidden
defbutton 2 "Close" 428 8 84 24
button 45382 "&Display" 428 38 84 24
)"},
    {45385, R"(caption "Progress"
size 320 96
text 45386 "" 8 10 304 16
progress 45387 "" 8 32 304 18
button 2 "Cancel" 118 62 84 24
)"},
};

}  // namespace

std::span<const DialogRow> DialogTable() { return kDialogs; }

}  // namespace dq
