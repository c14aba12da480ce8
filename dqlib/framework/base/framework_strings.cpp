#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/resource_module.h"

namespace dq {
namespace {

constexpr UINT kFirstId = 57344;
constexpr UINT kLastId = 61999;

constexpr StringRow kStrings[] = {
    {61696, "Invalid filename."},
    {61697, "Failed to open document."},
    {61712, "Please enter an integer."},
    {61714, "Please enter an integer between %1 and %2."},
    {61716, "Please enter no more than %1 characters."},
    {61718, "Please enter an integer between 0 and 255."},
    {61719, "Please enter a positive integer."},
    {61729, "%1\nThe path or the file name is not valid."},
    {61730, "There is no room left on the disk for %1."},
    {61731, "%1 can not be read.  It is protected or in use."},
    {61732, "%1 can not be written.  It is protected or in use."},
    {61733, "An error occurred while %1 was read."},
    {61734, "An error occurred while %1 was written."},
};

static_assert(IsStrictlySorted(kStrings), "strings are sorted by id, and no id stands twice");
static_assert(std::begin(kStrings)->id >= kFirstId && std::rbegin(kStrings)->id <= kLastId,
              "the framework has a block of ids of its own");

}  // namespace

const platform::Module& FrameworkModule() {
  static const ResourceModule& module = *new ResourceModule(kStrings);
  return module;
}

}  // namespace dq
