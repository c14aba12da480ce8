// The system's own resources on systems that have none: stock pointers and icons.

#pragma once

#include <map>
#include <utility>

#include "dqlib/platform/modules.h"

namespace dq::platform::posix {

/// Pointers 32512 to 32516 and 32640 to 32651, icons 32512 to 32518, each 32 by 32 pixels. The data
/// of a `RESOURCE_CURSOR` or `RESOURCE_ICON` is the hot spot's x and y, two little-endian WORDs,
/// and a device-independent bitmap of 24 bits a pixel with its 40-byte header. A group record of
/// the same name lists that one picture.
class StockResources : public Module {
 public:
  StockResources();

  const Resource* Find(WORD type, WORD name) const override;
  /// None: the system has no strings.
  std::optional<std::string_view> String(UINT id) const override;

 private:
  struct Entry {
    Resource resource;
    std::string data;
  };

  void Add(WORD type, WORD name, std::string data);

  std::map<std::pair<WORD, WORD>, Entry> entries_;
};

}  // namespace dq::platform::posix
