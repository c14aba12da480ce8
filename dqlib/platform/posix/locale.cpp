#include "dqlib/platform/locale.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <langinfo.h>
#include <locale.h>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>

#include "dqlib/platform/posix/date_pictures.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

using Items = std::unordered_map<DWORD, std::string>;

struct FreeLocale {
  void operator()(locale_t locale) const { freelocale(locale); }
};
using LocaleHandle = std::unique_ptr<std::remove_pointer_t<locale_t>, FreeLocale>;

struct UsItem {
  DWORD item;
  const char* text;
};

constexpr UsItem kUsEnglish[] = {
    {LOCALE_SLIST, ","},
    {LOCALE_SDECIMAL, "."},
    {LOCALE_STHOUSAND, ","},
    {LOCALE_SGROUPING, "3;0"},
    {LOCALE_IDIGITS, "2"},
    {LOCALE_ILZERO, "1"},
    {LOCALE_SDATE, "/"},
    {LOCALE_STIME, ":"},
    {LOCALE_SSHORTDATE, "M/d/yyyy"},
    {LOCALE_SLONGDATE, "dddd, MMMM dd, yyyy"},
    {LOCALE_IDATE, "0"},
    {LOCALE_ITIME, "0"},
    {LOCALE_S1159, "AM"},
    {LOCALE_S2359, "PM"},
    {LOCALE_SNEGATIVESIGN, "-"},
    {LOCALE_STIMEFORMAT, "h:mm:ss tt"},
    {LOCALE_IPAPERSIZE, "1"},
    {LOCALE_INEGNUMBER, "1"},
};

struct Name {
  /// Of the full name and of the short one in the system's locales.
  nl_item full;
  nl_item abbreviated;
  const char* us_full;
  const char* us_abbreviated;
};

constexpr Name kDays[] = {
    {DAY_2, ABDAY_2, "Monday", "Mon"},    {DAY_3, ABDAY_3, "Tuesday", "Tue"},
    {DAY_4, ABDAY_4, "Wednesday", "Wed"}, {DAY_5, ABDAY_5, "Thursday", "Thu"},
    {DAY_6, ABDAY_6, "Friday", "Fri"},    {DAY_7, ABDAY_7, "Saturday", "Sat"},
    {DAY_1, ABDAY_1, "Sunday", "Sun"},
};

// The alternative names are those of a month that stands alone, as in a list of months.
constexpr Name kMonths[] = {
    {ALTMON_1, ABMON_1, "January", "Jan"},    {ALTMON_2, ABMON_2, "February", "Feb"},
    {ALTMON_3, ABMON_3, "March", "Mar"},      {ALTMON_4, ABMON_4, "April", "Apr"},
    {ALTMON_5, ABMON_5, "May", "May"},        {ALTMON_6, ABMON_6, "June", "Jun"},
    {ALTMON_7, ABMON_7, "July", "Jul"},       {ALTMON_8, ABMON_8, "August", "Aug"},
    {ALTMON_9, ABMON_9, "September", "Sep"},  {ALTMON_10, ABMON_10, "October", "Oct"},
    {ALTMON_11, ABMON_11, "November", "Nov"}, {ALTMON_12, ABMON_12, "December", "Dec"},
};

Items UsEnglish() {
  Items items;
  for (const UsItem& row : kUsEnglish) items[row.item] = row.text;
  DWORD number = 0;
  for (const Name& day : kDays) {
    items[LOCALE_SDAYNAME1 + number] = day.us_full;
    items[LOCALE_SABBREVDAYNAME1 + number++] = day.us_abbreviated;
  }
  number = 0;
  for (const Name& month : kMonths) {
    items[LOCALE_SMONTHNAME1 + number] = month.us_full;
    items[LOCALE_SABBREVMONTHNAME1 + number++] = month.us_abbreviated;
  }
  return items;
}

/// The locale's name for a category, by the rules of POSIX.
std::string NameOf(const char* category) {
  for (const char* variable : {"LC_ALL", category, "LANG"}) {
    const char* name = std::getenv(variable);
    if (name != nullptr && *name != '\0') return name;
  }
  return "C";
}

/// Language and territory of a locale, without what its name says besides.
std::string_view TerritoryOf(std::string_view name) {
  return name.substr(0, name.find_first_of(".@"));
}

/// The locale that the environment names for a category; null where US English stands for it, or
/// for one that isn't installed.
LocaleHandle OpenForeign(const char* category, int mask) {
  const std::string name = NameOf(category);
  const std::string_view territory = TerritoryOf(name);
  if (territory == "C" || territory == "POSIX" || territory == "en_US") return nullptr;
  return LocaleHandle(newlocale(mask, name.c_str(), nullptr));
}

std::string Text(nl_item item, locale_t locale) { return nl_langinfo_l(item, locale); }

/// "3;0" from the system's list of group sizes, whose last one goes on for ever unless `CHAR_MAX`
/// stands behind it.
std::string Grouping(std::string sizes) {
  const std::size_t end = std::min(sizes.find(CHAR_MAX), sizes.size());
  const bool goes_on = end == sizes.size();
  sizes.resize(end);
  if (sizes.empty()) return "0";
  // That the last size is given again says no more than that it goes on.
  while (goes_on && sizes.size() > 1 && sizes.ends_with(sizes[sizes.size() - 2])) sizes.pop_back();
  std::string text;
  for (const char size : sizes) text += std::to_string(static_cast<int>(size)) + ';';
  if (goes_on) {
    text += '0';
  } else {
    text.pop_back();
  }
  return text;
}

void TakeNumberItems(Items& items, locale_t locale) {
  items[LOCALE_SDECIMAL] = Text(RADIXCHAR, locale);
  items[LOCALE_STHOUSAND] = Text(THOUSEP, locale);
  items[LOCALE_SGROUPING] = Grouping(Text(GROUPING, locale));
  // The system has none; a list of numbers must not be cut at their decimal separators.
  items[LOCALE_SLIST] = items[LOCALE_SDECIMAL] == "," ? ";" : ",";
}

void TakeTimeItems(Items& items, locale_t locale) {
  const DatePatterns patterns{.date_time = Text(D_T_FMT, locale),
                              .date = Text(D_FMT, locale),
                              .time = Text(T_FMT, locale),
                              .time_12h = Text(T_FMT_AMPM, locale)};
  const std::string date = ShortDatePicture(patterns);
  const std::string time = TimePicture(patterns);
  items[LOCALE_SSHORTDATE] = date;
  items[LOCALE_SLONGDATE] = LongDatePicture(patterns);
  items[LOCALE_STIMEFORMAT] = time;
  items[LOCALE_SDATE] = PictureSeparator(date, "dMy", "/");
  items[LOCALE_STIME] = PictureSeparator(time, "Hhm", ":");
  items[LOCALE_IDATE] = DateOrder(date);
  items[LOCALE_ITIME] = HasTwentyFourHours(time) ? "1" : "0";
  items[LOCALE_S1159] = Text(AM_STR, locale);
  items[LOCALE_S2359] = Text(PM_STR, locale);
  DWORD number = 0;
  for (const Name& day : kDays) {
    items[LOCALE_SDAYNAME1 + number] = Text(day.full, locale);
    items[LOCALE_SABBREVDAYNAME1 + number++] = Text(day.abbreviated, locale);
  }
  number = 0;
  for (const Name& month : kMonths) {
    items[LOCALE_SMONTHNAME1 + number] = Text(month.full, locale);
    items[LOCALE_SABBREVMONTHNAME1 + number++] = Text(month.abbreviated, locale);
  }
}

/// A paper by its number as an item, and its size upright, in millimetres.
struct Paper {
  const char* number;
  int width;
  int height;
};

constexpr Paper kPapers[] = {{"1", 216, 279}, {"5", 216, 356}, {"8", 297, 420}, {"9", 210, 297}};

/// A4 unless the environment names a locale that has another: most of the world has it.
std::string PaperItem() {
  const std::string name = NameOf("LC_PAPER");
  if (TerritoryOf(name) == "en_US") return "1";
  const LocaleHandle locale(newlocale(LC_PAPER_MASK, name.c_str(), nullptr));
  if (locale == nullptr) return "9";
  // These items are numbers of 32 bits in the place of pointers, the rest of which is any.
  const auto number = [&](nl_item item) {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(nl_langinfo_l(item, locale.get())));
  };
  const int width = number(_NL_PAPER_WIDTH), height = number(_NL_PAPER_HEIGHT);
  for (const Paper& paper : kPapers) {
    if (width == paper.width && height == paper.height) return paper.number;
  }
  return "9";
}

/// What the environment says of numbers, times and paper; each may come from a locale of its own.
Items FromEnvironment() {
  Items items = UsEnglish();
  if (const LocaleHandle numbers = OpenForeign("LC_NUMERIC", LC_NUMERIC_MASK)) {
    TakeNumberItems(items, numbers.get());
  }
  if (const LocaleHandle times = OpenForeign("LC_TIME", LC_TIME_MASK)) {
    TakeTimeItems(items, times.get());
  }
  items[LOCALE_IPAPERSIZE] = PaperItem();
  return items;
}

class EnvironmentLocale : public Locale {
 public:
  std::optional<std::string> Item(DWORD item, DWORD locale) override {
    const Items* items = ItemsOf(locale);
    if (items == nullptr) return std::nullopt;
    const auto found = items->find(item);
    return found == items->end() ? std::nullopt : std::optional(found->second);
  }

  const CodePage& code_page() const override { return *code_page_; }

  bool SetCodePage(UINT number) override {
    const CodePage* page = CodePage::Get(number);
    if (page != nullptr) code_page_ = page;
    return page != nullptr;
  }

 private:
  const Items* ItemsOf(DWORD locale) {
    // Read at the first question rather than when the program starts, so that a host may still set
    // its environment.
    std::call_once(captured_, [this] { user_ = FromEnvironment(); });
    switch (locale) {
      case 0:
      case LOCALE_USER_DEFAULT:
      case LOCALE_SYSTEM_DEFAULT:
        return &user_;
      case LOCALE_US_ENGLISH:
        return &us_english_;
      default:
        return nullptr;
    }
  }

  std::once_flag captured_;
  Items user_;
  const Items us_english_ = UsEnglish();
  const CodePage* code_page_ = CodePage::Get(0);
};

}  // namespace

std::unique_ptr<Locale> MakeLocale() { return std::make_unique<EnvironmentLocale>(); }

Locale& SystemLocale() {
  static Locale& locale = *MakeLocale().release();
  return locale;
}

}  // namespace dq::platform::posix
