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
};

}  // namespace

std::span<const DialogRow> DialogTable() { return kDialogs; }

}  // namespace dq
