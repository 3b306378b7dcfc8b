#include "platform/curl/FtpAddress.h"

#include "support/Tsv.h"

namespace tessaloom::testing {
namespace {

TEST(FtpAddress, IsReadAsPeopleWriteIt) {
    for (const TsvRow& row : ReadTsv(TEST_DATA "/vectors/ftp_addresses.tsv")) {
        const auto address = FtpAddress::Parse(row[0]);
        EXPECT_EQ(address ? address->Url(row[1]) : "", row[2]) << row[0];
    }
}

}  // namespace
}  // namespace tessaloom::testing
