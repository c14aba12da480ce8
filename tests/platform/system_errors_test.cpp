#include "dqlib/platform/system_errors.h"

#include <fcntl.h>

#include "dqlib/platform/posix/system_services.h"
#include "tests/support/testing.h"

namespace dq::platform {
namespace {

using posix::ErrorFromErrno;

TEST(SystemErrors, TextIsTheSystemsOwnWithLineEndOrNone) {
  for (const int number : {ENOENT, EACCES, EPIPE, 0}) {
    const std::string expected = std::string(std::strerror(number)) + "\r\n";
    EXPECT_EQ(System().system_errors->Describe(static_cast<DWORD>(number)), expected) << number;
  }
  for (const DWORD code : {4095u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(System().system_errors->Describe(code), std::nullopt) << code;
  }
}

TEST(SystemErrors, LastErrorIsThatOfTheThreadAndSurvivesAskingForTexts) {
  ASSERT_EQ(open("/no/such/file", O_RDONLY), -1);
  System().system_errors->Describe(EACCES);
  System().system_errors->Describe(4095);
  std::thread([] {
    errno = 0;
    EXPECT_EQ(System().system_errors->LastError(), 0u);
  }).join();
  EXPECT_EQ(System().system_errors->LastError(), static_cast<DWORD>(ENOENT));
}

TEST(ErrorFromErrno, KindFollowsWhatCallersDoAboutIt) {
  for (const auto& [number, kind] :
       test::Rows<int, ErrorKind>{{0, ErrorKind::kNone},
                                  {ENOENT, ErrorKind::kNotFound},
                                  {EWOULDBLOCK, ErrorKind::kBusy},
                                  {EOPNOTSUPP, ErrorKind::kUnsupported},
                                  {EIO, ErrorKind::kOther}}) {
    EXPECT_EQ(ErrorFromErrno(number).kind, kind) << number;
    EXPECT_EQ(ErrorFromErrno(number).code, static_cast<DWORD>(number));
  }
}

TEST(Network, LastErrorIsWhatTheThreadRecorded) {
  std::thread([] {
    posix::RecordNetworkError({5, "refused", "LAN"});
    const Result<NetworkError> error = System().network->LastError();
    EXPECT_EQ(error.value.code, 5u);
    EXPECT_EQ(error.value.description, "refused");
    EXPECT_EQ(error.value.provider, "LAN");
  }).join();
  EXPECT_EQ(System().network->LastError().error.kind, ErrorKind::kNotFound);
}

}  // namespace
}  // namespace dq::platform
