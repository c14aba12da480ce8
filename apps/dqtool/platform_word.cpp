#include "apps/dqtool/platform_word.h"

#include "siblings/options/option_value.h"

namespace dqtool {

dq::DBMS TakePlatform(Words& words) {
  if (words.empty()) throw WrongUsage("--platform needs a P");
  const auto platform = dq::PlatformOfWord(words[0]);
  if (!platform) throw WrongUsage("no platform " + words[0]);
  words = words.subspan(1);
  return *platform;
}

}  // namespace dqtool
