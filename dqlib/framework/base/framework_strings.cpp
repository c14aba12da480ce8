#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/resource_module.h"

namespace dq {
namespace {

constexpr UINT kFirstId = 57344;
constexpr UINT kLastId = 61999;

constexpr StringRow kStrings[] = {
    {57345, "Ready"},
    {61440, "Open"},
    {61441, "Save As"},
    {61442, "All Files (*.*)"},
    {61443, "Untitled"},
    {61450, "New"},
    {61451, "&Kind:"},
    {61696, "Invalid filename."},
    {61697, "Failed to open document."},
    {61698, "Failed to save document."},
    {61699, "Save changes to %1?"},
    {61700, "Failed to create empty document."},
    {61702, "Could not start print job."},
    {61712, "Please enter an integer."},
    {61714, "Please enter an integer between %1 and %2."},
    {61716, "Please enter no more than %1 characters."},
    {61718, "Please enter an integer between 0 and 255."},
    {61719, "Please enter a positive integer."},
    {61728, "%1 does not have the expected format."},
    {61729, "%1\nThe path or the file name is not valid."},
    {61730, "There is no room left on the disk for %1."},
    {61731, "%1 can not be read.  It is protected or in use."},
    {61732, "%1 can not be written.  It is protected or in use."},
    {61733, "An error occurred while %1 was read."},
    {61734, "An error occurred while %1 was written."},
    {61825, "There is no mail program."},
    {61827, "The mail could not be sent: %1."},
    {61840, "There was no error"},
    {61841, "The system gave no reason"},
    {61842, "The file was not found"},
    {61843, "The path is not valid"},
    {61844, "Too many files are open"},
    {61845, "Access to the file was denied"},
    {61846, "The file is not open"},
    {61847, "The current directory cannot be removed"},
    {61848, "The directory is full"},
    {61849, "The file has no such position"},
    {61850, "The device reported an error"},
    {61851, "The file is in use"},
    {61852, "A part of the file is locked"},
    {61853, "The disk is full"},
    {61854, "The file ended too soon"},
    {61860, "There was no error"},
    {61861, "The objects could not be stored or loaded"},
    {61862, "The archive is for loading only"},
    {61863, "The file ended too soon"},
    {61864, "The archive is for storing only"},
    {61865, "The file refers to an object that it does not have"},
    {61866, "The file has an object of an unexpected class"},
    {61867, "The file has an object of another version"},
    {61880, "not found"},
    {61881, "in use by another program"},
    {61882, "error %1"},
    {61883, "Invalid DateTime"},
    {61884, "The document has none of the pages that were chosen."},
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
