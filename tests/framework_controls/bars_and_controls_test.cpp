// Image lists, progress bars, buttons with pictures, hot keys, and dates and times.

#include "tests/support/doubles.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// A strip of one row: each letter is a pixel of that number.
BitmapDescription Strip(std::string_view letters, LONG height = 1) {
  BitmapDescription strip{.size = {static_cast<LONG>(letters.size()) / height, height},
                          .pixels = {}};
  for (const char letter : letters) strip.pixels.push_back(static_cast<COLORREF>(letter));
  return strip;
}

/// The pictures, with '.' for what is transparent.
std::string Pictures(const CImageList& list) {
  std::string text;
  for (int at = 0; at < list.GetImageCount(); ++at) {
    for (const COLORREF pixel : list.GetImage(at).pixels) {
      text += pixel == kNoPixel ? '.' : static_cast<char>(pixel);
    }
    text += ' ';
  }
  return text;
}

TEST(ImageList, CutsStripsIntoPicturesAndDrawsThem) {
  CImageList list, other;
  EXPECT_FALSE(list.Create({0, 1}) || list.Create({1, -1}) || list.Create({1 << 20, 1 << 20}));
  const BitmapDescription strip = Strip("abcdeXX"), small = Strip("q"), square = Strip("1234", 2);
  EXPECT_TRUE(list.Add(&strip) == -1 && !list.Remove(-1)) << "it has no size yet";
  ASSERT_TRUE(list.Create({2, 1}));
  EXPECT_TRUE(list.GetStrip() == nullptr && list.Add(nullptr) == -1 && list.Add(&small) == -1);
  EXPECT_TRUE(list.Add(&strip, 'c') == 0 && list.Add(&square) == 3);
  EXPECT_EQ(Pictures(list), "ab .d eX 12 ");
  EXPECT_TRUE(list.Replace(1, &square, '2') && !list.Replace(4, &square) && list.Remove(0));
  EXPECT_EQ(Pictures(list), "1. eX 12 ");
  EXPECT_TRUE(list.Add(list.GetStrip()) == 3 && !list.Remove(4) && list.Add(list, 0) == 4);
  ASSERT_TRUE(other.Create({3, 2}));
  EXPECT_TRUE(other.Add(list, 1) == 0 && list.Add(other, 1) == -1 && other.Add(&strip) == -1);
  EXPECT_EQ(Pictures(list) + Pictures(other), "1. eX 12 1. 1. eX.... ");
  RecordingDC dc;
  EXPECT_TRUE(list.Draw(dc, 1, {5, 6}) && !list.Draw(dc, 5, {}) && !list.Draw(dc, -1, {}));
  EXPECT_EQ(dc.Text().substr(0, 23), "picture 5,6 7,7 of 2x1 ");
  EXPECT_TRUE(list.Remove(-1) && list.GetImageCount() == 0);
  ResourceModule module;
  module.AddResource(RESOURCE_BITMAP, 5, WriteDib(strip));
  const CDynLinkLibrary link(&module);
  EXPECT_TRUE(list.Create(5, 3, 'd') && !list.Create(6, 3, 0) && !list.Create(5, 8, 0));
  EXPECT_EQ(Pictures(list), "abc .eX ");
  EXPECT_TRUE(list.GetImageSize() == (CSize{3, 1}) && list.GetImageRect(1) == (CRect{0, 1, 3, 2}));
}

TEST(ImageList, KeepsTheShapesOfItsPictures) {
  // A bar across two pictures, and a square on the second one.
  ResourceModule module;
  ASSERT_TRUE(AddPicture(module, 5, "4 2 f 610000 R 1 0 2 1 f 620000 R 3 1 1 1"));
  const CDynLinkLibrary link(&module);
  CImageList list, plain, moved;
  ASSERT_TRUE(list.Create(5, 2, kPictureMask) && plain.Create(5, 2, 0) && moved.Create({2, 2}));
  const auto rendered = [](const CImageList& of) {
    std::string text;
    for (int at = 0; at < of.GetImageCount(); ++at) {
      const auto shapes = of.GetImage(at).shapes;
      if (shapes == nullptr) text += '-';
      if (shapes == nullptr) continue;
      for (const COLORREF color : shapes->Render({4, 2})->pixels) {
        text += color == kNoPixel ? '.' : static_cast<char>(color);
      }
      text += ' ';
    }
    return text;
  };
  EXPECT_EQ(rendered(list) + rendered(plain), "..aa.... aa....bb --");
  EXPECT_TRUE(moved.Add(list, 1) == 0 && moved.Add(plain, 1) == 1 && moved.Add(moved, 0) == 2);
  EXPECT_EQ(rendered(moved), "aa....bb -aa....bb ");
  const BitmapDescription square = Strip("1234", 2);
  EXPECT_TRUE(moved.Replace(0, &square) && moved.Remove(1) && list.Remove(-1));
  EXPECT_EQ(rendered(moved) + rendered(list), "-aa....bb ");
}

TEST(Progress, TellsWhatIsSeenOfIt) {
  CProgressCtrl bar;
  bar.CreateWnd({.class_name = "Progress", .place = {0, 0, 50, 10}, .id = 1});
  RecordingObserver told;
  // What is done with it, the position then, the part that is filled, and what is told.
  for (const auto& [act, position, filled, changes] :
       Rows<std::function<void()>, int, int, const char*>{
           {[&] { EXPECT_EQ(bar.SetPos(10), 0); }, 10, 5, "1 content "},
           {[&] { EXPECT_EQ(bar.SetPos(11), 10); }, 11, 5, ""},
           {[&] { EXPECT_EQ(bar.StepIt(), 11); }, 21, 10, "1 content "},
           {[&] { EXPECT_TRUE(bar.SetStep(79) == 10 && bar.StepIt() == 21); }, 100, 50,
            "1 content "},
           {[&] { bar.StepIt(); }, 79, 39, "1 content "},
           {[&] { bar.OffsetPos(1 << 30); }, 100, 50, "1 content "},
           {[&] { bar.OffsetPos(-(1 << 30)); }, 0, 0, "1 content "},
           {[&] { bar.SetRange(1 << 30, -(1 << 30)); }, 0, 25, "1 content "},
           {[&] { bar.SetStep(-(1 << 30) - 1), bar.StepIt(); }, (1 << 30) - 1, 49, "1 content "},
           {[&] { bar.SetRange(7, 7), bar.StepIt(); }, 7, 0, "1 content "}}) {
    act();
    EXPECT_TRUE(bar.GetPos() == position && bar.GetFilledWidth() == filled) << bar.GetPos();
    EXPECT_EQ(told.Take(), changes) << position;
  }
}

TEST(BitmapButton, ShowsPicturesAndKeepsItsText) {
  ResourceModule module;
  for (const WORD id : std::initializer_list<WORD>{5, 6, 9}) {
    module.AddResource(RESOURCE_BITMAP, id, WriteDib(Strip(std::string(id * 2U, 'x'), 2)));
  }
  const CDynLinkLibrary link(&module);
  CDialog dialog;
  ASSERT_TRUE(dialog.CreateIndirect(
      *ReadDialogTemplate("size 9 9\ncheck 9 \"S&ave\" 0 0 40 20\n"
                          "class \"BitmapButton\" 3 \"Go\" 1 2 9 9 picture=6\n"),
      nullptr));
  CBitmapButton own, taken;
  EXPECT_FALSE(own.AutoLoad(8, &dialog)) << "there is no such button";
  EXPECT_TRUE(own.AutoLoad(9, &dialog) && own.GetBitmap()->size == (CSize{9, 2}));
  EXPECT_TRUE(own.GetWindowText() == "S&ave" && own.GetKind() == ButtonKind::kCheck);
  EXPECT_FALSE(own.ShowsText());
  own.MoveWindow(0, 0, 9 + 4 * 7 + 12, 20);
  EXPECT_TRUE(own.ShowsText() && taken.SubclassDlgItem(3, &dialog));
  EXPECT_TRUE(taken.LoadBitmaps(6, 5, 0, 9) && !taken.LoadBitmaps(5, 7));
  std::string widths;
  for (const auto look : {CBitmapButton::kUp, CBitmapButton::kDown, CBitmapButton::kFocused,
                          CBitmapButton::kDisabled}) {
    widths += std::to_string(taken.GetBitmap(look)->size.cx) + " ";
  }
  EXPECT_EQ(widths, "6 5 6 9 ");
  taken.SizeToContent();
  EXPECT_EQ(taken.GetPlace(), (CRect{1, 2, 15, 12}));
  EXPECT_FALSE(own.IsEmbossed());
  for (CBitmapButton* each : {&own, &taken}) each->EnableWindow(false);
  EXPECT_TRUE(own.IsEmbossed() && !taken.IsEmbossed());
}

/// A window with one control, which keeps what that one notifies and may end it then.
template <typename Class>
struct Holder : CWnd {
  explicit Holder(const std::string& line) {
    CreateWnd("Dialog");
    detail::MakeControls(ReadDialogTemplate("size 9 9\n" + line).value(), *this, controls);
  }
  ~Holder() override { DestroyWindow(); }
  BOOL OnCommand(WPARAM wparam, LPARAM) override { return Told(HiWord(wparam)); }
  BOOL OnNotify(WPARAM, LPARAM lparam, LRESULT*) override {
    const auto& change = *reinterpret_cast<const NMDATETIMECHANGE*>(lparam);
    EXPECT_EQ(change.nmhdr.idFrom, 7U);
    if (change.dwFlags == GDT_VALID) told += std::to_string(change.st.wDay) + " ";
    return Told(change.nmhdr.code);
  }
  BOOL Told(int code) {
    told += std::to_string(code) + " ";
    if (ends) controls.clear();
    return 1;
  }
  Class& operator*() { return dynamic_cast<Class&>(*controls.front()); }
  Class* operator->() { return &**this; }
  std::string Take() { return std::exchange(told, {}); }

  std::vector<std::unique_ptr<CWnd>> controls;
  std::string told;
  bool ends = false;
};

TEST(HotKey, TakesWhatAPersonPressesByItsRules) {
  Holder<CHotKeyCtrl> holder("hotkey 7 \"\" 0 0 1 1");
  HeldKeys layer;
  holder->SetRules(HKCOMB_NONE | HKCOMB_S | HKCOMB_SA, HOTKEYF_CONTROL);
  // The key, Shift, Ctrl and Alt, what is read then, the number, and whether it was notified.
  for (const auto& [key, held, text, number, told] :
       Rows<WPARAM, std::set<int>, const char*, DWORD, bool>{
           {'A', {VK_CONTROL}, "Ctrl+A", 0x00020041, true},
           {'A', {VK_CONTROL}, "Ctrl+A", 0x00020041, false},
           {'A', {}, "Ctrl+A", 0x00020041, false},
           {VK_F1, {VK_SHIFT}, "Ctrl+Shift+F1", 0x00030070, true},
           {VK_F10, {VK_MENU}, "Alt+F10", 0x00040079, true},
           {'0', {VK_SHIFT, VK_MENU}, "Ctrl+Shift+Alt+0", 0x00070030, true},
           {VK_TAB, {VK_SHIFT}, "Ctrl+Shift+Alt+0", 0x00070030, false},
           {VK_SHIFT, {VK_SHIFT}, "Ctrl+Shift+Alt+0", 0x00070030, false},
           {VK_DELETE, {VK_CONTROL}, "Ctrl+Del", 0x0002002E, true},
           {VK_BACK, {}, "", 0, true},
           {VK_DELETE, {}, "", 0, false},
           {0xBA, {VK_CONTROL}, "Ctrl+Key186", 0x000200BA, true}}) {
    layer.held = held;
    holder->SendMessage(held.contains(VK_MENU) ? WM_SYSKEYDOWN : WM_KEYDOWN, key);
    EXPECT_EQ(holder->GetWindowText(), text);
    EXPECT_EQ(holder->GetHotKey(), number) << text;
    EXPECT_EQ(holder.Take(), told ? "768 " : "") << text;
  }
  layer.held = {VK_CONTROL};
  holder->SendMessage(WM_KEYDOWN, VK_HOME, 1 << 24);
  EXPECT_TRUE(holder->Enter("Ctrl+Home"));
  EXPECT_EQ(holder->GetHotKey(), 0x000A0024U) << "an extended key";
  layer.held = {};
  for (const auto& [entered, text] : Cases<2>(R"(alt+num5 => Alt+Num5 ;; x => Ctrl+X
      ctrl+ctrl+x => Ctrl+X ;; meta+x => Ctrl+X ;; tab => Ctrl+X ;; KEY8 => ;; ctrl+F24 => Ctrl+F24
      key256 => Ctrl+F24 ;; => )")) {
    holder->Enter(entered);
    EXPECT_EQ(holder->GetWindowText(), text.c_str()) << entered;
  }
  // A dialog leaves it letters with Alt and Enter with Ctrl, which would do something else.
  const auto wants = [&](UINT message, WPARAM key) {
    const MSG asked{nullptr, message, key, 0};
    return (holder->SendMessage(WM_GETDLGCODE, key, reinterpret_cast<LPARAM>(&asked)) &
            DLGC_WANTALLKEYS) != 0;
  };
  EXPECT_TRUE(wants(WM_SYSCHAR, 'a') && !wants(WM_KEYDOWN, VK_RETURN));
  layer.held = {VK_CONTROL};
  EXPECT_TRUE(wants(WM_KEYDOWN, VK_RETURN) && !wants(WM_KEYDOWN, VK_TAB));
  holder.ends = true;
  EXPECT_TRUE(holder->PressKey('B', HOTKEYF_ALT) && holder.controls.empty());
}

struct DateTimes : testing::Test {
  DateTimes() { holder->SetTime(COleDateTime(2024, 1, 31, 9, 5, 7)); }
  std::string Text() { return holder->GetWindowText().View().data(); }

  Holder<CDateTimeCtrl> holder{"datetime 7 \"\" 0 0 1 1 optional"};
};

TEST_F(DateTimes, AreLaidOutAndReadByTheirFormat) {
  // The format, the text of 2024-01-31 09:05:07, what is entered, and the text then.
  for (const auto& [format, text, entered, then] : Cases<4>(R"(
      => 1/31/2024 => 2/3/25 => 2/3/2025
      dd.MM.yy => 31.01.24 => 1. 2.30 => 01.02.30
      yyyy-MM-dd HH:mm:ss => 2024-01-31 09:05:07 => 99-2-3 23:59:58 => 1999-02-03 23:59:58
      dddd, d MMM y => Wednesday, 31 Jan 24 => fri,1february 1930 => Saturday, 1 Feb 30
      ddd d. MMMM => Wed 31. January => mon 5.AUG => Mon 5. August
      h:mm tt => 9:05 AM => 12:30 pm => 12:30 PM ;; hh.m t => 09.5 A => 12.0 a => 12.0 A
      h => 9 => 11 => 11 ;; 'o''clock' H 's => o'clock 9 s => O => o'clock 9 s
      H 'o''clock' => 9 o'clock => 23o' clock => 23 o'clock
      M/d/yyyy => 1/31/2024 => 2/30/2024 => 1/31/2024 ;; M/d/yyyy => 1/31/2024 => 3 May 2001 => 5/3/2001
      M/d/yyyy => 1/31/2024 => 1/2/2003 x => 1/31/2024 ;; h tt => 9 AM => 13 pm => 9 AM
      H:mm => 9:05 => 24:00 => 9:05 ;; H:mm => 9:05 => -1:30 => 9:05)")) {
    holder->SetTime(COleDateTime(2024, 1, 31, 9, 5, 7));
    holder->SetFormat(format.c_str());
    EXPECT_EQ(Text(), text) << format;
    EXPECT_EQ(holder->Enter(entered), then != text);
    EXPECT_EQ(Text(), then) << format << " " << entered;
  }
  COleDateTime time(1924, 1, 31, 0, 0, 0);
  holder->SetFormat("d.M.yy");
  EXPECT_TRUE(holder->SetTime(time) && holder->Enter("1.2.24") && holder->GetTime(time));
  EXPECT_EQ(time.GetYear(), 1924) << "a century that isn't shown stays";
  Holder<CDateTimeCtrl> clock{"datetime 7 \"\" 0 0 1 1 time"};
  clock->SetTime(COleDateTime(2024, 1, 31, 9, 5, 7));
  EXPECT_TRUE(!clock->Enter("3 May 2001") && clock->Enter("3 May 2001 8:00"));
}

TEST_F(DateTimes, PartsAreSteppedAndTyped) {
  // The format, keys (<>^v move and step, [] go to the ends, others are typed), and the text then,
  // with the part that is chosen in brackets.
  for (const auto& [format, keys, text] : Cases<3>(R"(
      M/d/yyyy => => (1)/31/2024 ;; M/d/yyyy => ^ => (2)/29/2024 ;; M/d/yyyy => vv => (11)/30/2024
      M/d/yyyy => >^ => 1/(1)/2024 ;; M/d/yyyy => >>v => 1/31/(2023) ;; M/d/yyyy => >>> => 1/31/(2024)
      M/d/yyyy => >< => (1)/31/2024 ;; M/d/yyyy => < => (1)/31/2024 ;; M/d/yyyy => ] => (12)/31/2024
      M/d/yyyy => >[ => 1/(1)/2024 ;; M/d/yyyy => >>] => 1/31/(9999) ;; M/d/yyyy => >>]^ => 1/31/(9999)
      M/d/yyyy => 12 => (12)/31/2024 ;; M/d/yyyy => 13 => (3)/31/2024 ;; M/d/yyyy => 05 => (5)/31/2024
      M/d/yyyy => 0>05 => 1/(5)/2024 ;; M/d/yyyy => >312 => 1/(2)/2024 ;; M/d/yyyy => x => (1)/31/2024
      M/d/yyyy => >>2 => 1/31/(2024) ;; M/d/yyyy => >>1999 => 1/31/(1999)
      M/d/yyyy => >>30< => 1/(31)/1930 ;; M/d/yyyy => >>129< => 1/(31)/2024
      MMM dd => j => (Jun) 30 ;; MMM dd => jj => (Jul) 30 ;; MMM dd => m => (Mar) 31
      MMM dd => z => (Jan) 31 ;; MMM dd => 5 => (Jan) 31 ;; dddd d => ^ => (Monday) 1
      dddd d => m => (Monday) 1 ;; h:mm tt => ^^^ => (12):05 PM ;; h:mm tt => 12 => (12):05 AM
      h:mm tt => 0 => (9):05 AM ;; h:mm tt => >v => 9:(04) AM ;; h:mm tt => >>^ => 9:05 (PM)
      h:mm tt => >>p2 => 9:05 (PM) ;; h:mm tt => >>pa => 9:05 (AM) ;; h:mm tt => >>]] => 9:05 (PM)
      H:mm:ss => v => (8):05:07 ;; H:mm:ss => 23 => (23):05:07 ;; H:mm:ss => 24 => (4):05:07
      H:mm:ss => >>60 => 9:05:(00) ;; 'text' => ^1> => text() ;; => ^ => (2)/29/2024)")) {
    holder->SetTime(COleDateTime(2024, 1, 31, 9, 5, 7));
    holder->SetFormat(format.c_str());
    static const std::map<char, WPARAM> kKeys = {{'<', VK_LEFT}, {'>', VK_RIGHT}, {'^', VK_UP},
                                                 {'v', VK_DOWN}, {'[', VK_HOME},  {']', VK_END}};
    for (const char key : keys) {
      kKeys.contains(key) ? holder->SendMessage(WM_KEYDOWN, kKeys.at(key))
                          : holder->SendMessage(WM_CHAR, static_cast<WPARAM>(key));
    }
    std::string got = Text();
    const ChangedRange part = holder->GetPart();
    got.insert(static_cast<std::size_t>(part.first + part.count), ")");
    got.insert(static_cast<std::size_t>(part.first), "(");
    if (part == ChangedRange()) got = Text() + "()";
    EXPECT_EQ(got, text) << format << " " << keys;
  }
}

TEST_F(DateTimes, HaveARangeOrNoValueAndNotifyOfWhatAPersonDoes) {
  RecordingObserver told;
  COleDateTime time, lowest, highest;
  EXPECT_TRUE(holder->SetRange(COleDateTime(2024, 1, 30, 0, 0, 0), COleDateTime(1e9)));
  EXPECT_FALSE(
      holder->SetRange(COleDateTime(2024, 1, 2, 0, 0, 0), COleDateTime(2024, 1, 1, 0, 0, 0)));
  holder->GetRange(lowest, highest);
  EXPECT_TRUE(lowest.GetDay() == 30 && highest.GetYear() == 9999);
  SYSTEMTIME system{2024, 2, 0, 3, 24, 0, 0, 0};
  EXPECT_FALSE(holder->SetTime(COleDateTime(2024, 1, 29, 23, 59, 59)) ||
               holder->SetTime(COleDateTime(1e9)) || holder->SetTime(&system));
  system.wHour = 23;
  EXPECT_TRUE(holder->SetTime(&system) && holder->GetTime(time) && time.GetHour() == 23);
  EXPECT_TRUE(holder.Take().empty() && told.Take() == "7 text ");
  EXPECT_TRUE(holder->Choose(2024, 2, 29) && !holder->Choose(2024, 1, 29) &&
              !holder->Choose(2023, 2, 29) && holder->Choose(2024, 2, 29));
  EXPECT_EQ(holder.Take() + told.Take(), "29 -759 7 text ");
  EXPECT_TRUE(holder->SelectPart(2) && !holder->SelectPart(4) && !holder->SelectPart(-1) &&
              !holder->SelectPart(9));
  EXPECT_EQ(told.Take(), "7 selection@2*2 ");
  holder->SendMessage(WM_CHAR, ' ');
  EXPECT_EQ(holder.Take() + told.Take() + Text(), "-759 7 text ");
  EXPECT_FALSE(holder->HasTime() || holder->Step(1) || holder->GetTime(time) || holder->Type('1'));
  EXPECT_TRUE(holder->GetTime(&system) == GDT_NONE && holder->Enter(""));
  EXPECT_TRUE(holder->SetRange(COleDateTime(1e9), COleDateTime(2024, 2, 28, 0, 0, 0)));
  EXPECT_TRUE(holder->Check(true) && holder->GetTime(&system) == GDT_VALID);
  EXPECT_TRUE(system.wDay == 28 && system.wHour == 0 && system.wDayOfWeek == 3);
  EXPECT_TRUE(holder->SetTime(nullptr) && holder->Choose(2024, 2, 28));
  EXPECT_EQ(holder.Take(), "28 -759 28 -759 ");
  CDataExchange save(&holder, true), show(&holder, false);
  DDX_DateTimeCtrl(&save, 7, time);
  EXPECT_TRUE(time.GetStatus() == COleDateTime::valid && time.GetDay() == 28);
  for (const COleDateTime::DateTimeStatus status : {COleDateTime::null, COleDateTime::valid}) {
    time.SetStatus(status);
    DDX_DateTimeCtrl(&show, 7, time);
    EXPECT_EQ(holder->HasTime(), status == COleDateTime::valid);
    time.SetStatus(COleDateTime::invalid);
    DDX_DateTimeCtrl(&show, 7, time);
    DDX_DateTimeCtrl(&save, 7, time);
    EXPECT_EQ(time.GetStatus(), status);
  }
  for (CTime given : {CTime(), CTime(2024, 2, 28, 0, 0, 0)}) {
    CTime moment(5);
    DDX_DateTimeCtrl(&show, 7, given);
    DDX_DateTimeCtrl(&save, 7, moment);
    EXPECT_TRUE(moment == given);
  }
  EXPECT_THROW(DDX_DateTimeCtrl(&save, 8, time), CNotSupportedException);
  holder.Take();
  holder->EnableWindow(false);
  EXPECT_FALSE(holder->Enter("1/1/2024") || holder->Check(false) || holder->MovePart(true));
  holder->EnableWindow(true);
  holder.ends = true;
  EXPECT_TRUE(holder->Step(-1) && holder.controls.empty());
  Holder<CDateTimeCtrl> clock("datetime 7 \"\" 0 0 1 1 time");
  EXPECT_FALSE(clock->SetTime(nullptr) || clock->Enter("") || clock->Check(false));
  clock->SetTime(COleDateTime(2024, 1, 31, 9, 5, 7));
  CDateTimeCtrl taker;
  EXPECT_TRUE(clock->Enter("13:30") && taker.SubclassDlgItem(7, &clock));
  EXPECT_TRUE(taker.GetWindowText() == "1:30:00 PM" && taker.GetTime(time) && time.GetDay() == 31);
}

}  // namespace
}  // namespace dq::test
