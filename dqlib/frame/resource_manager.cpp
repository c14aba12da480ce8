#include "dqlib/frame/resource_manager.h"

#include <array>

#include "dqlib/frame/gdi_dispenser.h"
#include "siblings/pictures/pictures.h"

namespace dq {
namespace {

/// Picture ids by picture index.
constexpr auto kPictureIds = std::to_array<UINT>({
    3000, 3021, 3027, 3028, 3029, 3026, 3032, 3036, 3034, 3042, 3045, 3047, 3055, 3064, 3072,
    3074, 3078, 3081, 3082, 3083, 3086, 3088, 3093, 3094, 3096, 3097, 3098, 3100, 3108, 3109,
    3110, 3030, 3013, 3059, 3090, 3054, 3089, 3057, 3023, 3049, 3060, 3066, 3073, 3024, 3091,
    3095, 3041, 3107, 3033, 3025, 3111, 3118, 3117, 3115, 3116, 3138, 3141, 3140, 3119, 3127,
    3128, 3129, 3130, 3133, 3132, 3131, 3135, 3136, 3134, 3137, 3144, 3145, 3146, 3148, 3062,
    3147, 3149, 3150, 3151, 3152, 3153, 3154, 3158, 3155, 3159, 3156, 3160, 3161, 3162, 3163,
    3164, 3022, 3166, 3167, 3168, 3169, 3170, 3048, 3171, 3172, 3173, 3174, 3175, 3176, 3177,
    3178, 3165, 3180, 3179, 3191, 3190, 3189, 3188, 3193, 3192, 3201, 3196, 3197, 3195, 3194,
    3202, 3200, 3199, 3205, 3206, 3207, 3208, 3210, 3209, 3218, 3220, 3221, 3222, 3204,
});
static_assert(kPictureIds.size() == 134);

/// Picture ids by alert index.
constexpr auto kAlertIds = std::to_array<UINT>({3075, 3001, 3010, 3011, 3099});

/// Font styles by font index.
constexpr auto kFontStyles = std::to_array({FONT_BOLD, FONT_UNDERLINE});

/// Which picture stands for an object type. Some types share one.
struct ObjectPicture {
  int object_type;
  int index;
};
constexpr ObjectPicture kObjectPictures[] = {
    {1, 0},     // alias
    {2, 87},    // check constraint
    {3, 1},     // cluster
    {7, 2},     // database
    {8, 3},     // no name
    {9, 4},     // database link
    {10, 5},    // no name
    {11, 6},    // user datatype
    {12, 8},    // default
    {13, 7},    // no name
    {14, 9},    // function
    {15, 10},   // group
    {16, 11},   // index
    {18, 12},   // login
    {19, 13},   // package
    {20, 13},   // package body
    {21, 14},   // procedure
    {22, 15},   // profile
    {25, 16},   // remote server
    {26, 17},   // role
    {27, 18},   // rollback segment
    {28, 19},   // rule
    {29, 63},   // no name
    {30, 20},   // segment
    {31, 21},   // sequence
    {32, 22},   // snapshot
    {80, 22},   // materialized view
    {33, 23},   // snapshot log
    {81, 23},   // materialized view log
    {34, 24},   // synonym
    {35, 25},   // table
    {36, 26},   // tablespace
    {37, 27},   // trigger
    {38, 28},   // user
    {39, 29},   // user message
    {40, 30},   // view
    {41, 32},   // buffer pool
    {42, 33},   // stogroup, nodegroup
    {43, 71},   // type, structured type
    {44, 72},   // type body
    {45, 74},   // library
    {46, 73},   // directory
    {47, 36},   // no name
    {48, 77},   // extended procedure
    {50, 89},   // foreign key
    {51, 88},   // primary key
    {52, 90},   // unique key
    {79, 127},  // linked server
    {87, 131},  // outlines
    {88, 132},  // redo log group
};

CBitmap* GetPicture(UINT id) {
  return CGDIDispenser::g_.GetResourceBitmap(id, DQRESOURCES_GetInstanceHandle());
}

}  // namespace

IMPLEMENT_DYNAMIC(CDQResourceManager, CObject)

// Both are constant at the start, so that neither is set back once the instance is made.
constinit CDQResourceManager* CDQResourceManager::s_pDQResourceManager = nullptr;
constinit CDQGlobalResourceCleaner<CDQResourceManager> CDQResourceManager::s_cleaner;

CDQResourceManager* CDQResourceManager::GetInstance() {
  if (s_pDQResourceManager == nullptr) {
    s_pDQResourceManager = new CDQResourceManager;
    s_cleaner.SetObject(s_pDQResourceManager);
  }
  return s_pDQResourceManager;
}

CBitmap* CDQResourceManager::GetBitmap(int index) {
  return GetPicture(kPictureIds[static_cast<std::size_t>(index)]);
}

int CDQResourceManager::GetObjectBitmapIndex(int object_type) const {
  for (const ObjectPicture& row : kObjectPictures) {
    if (row.object_type == object_type) return row.index;
  }
  return -1;
}

CBitmap* CDQResourceManager::GetObjectBitmap(int object_type) {
  return GetBitmap(GetObjectBitmapIndex(object_type));
}

CBitmap* CDQResourceManager::GetAlertBitmap(int index) {
  return GetPicture(kAlertIds[static_cast<std::size_t>(index)]);
}

CFont* CDQResourceManager::GetFont(int index) {
  return CGDIDispenser::g_.GetDefaultFont(kFontStyles[static_cast<std::size_t>(index)]);
}

}  // namespace dq
