#include "framing.h"

#include <gtest/gtest.h>

namespace kiohost {
namespace {

std::string Fault(const HeaderLines& headers, std::string_view version = "HTTP/1.1") {
  return FramingFault(version, headers).value_or("");
}

// A good head with more lines.
std::string FaultWith(const HeaderLines& more) {
  HeaderLines headers = {{"Host", "router"}};
  headers.insert(headers.end(), more.begin(), more.end());
  return Fault(headers);
}

TEST(FramingTest, OrdinaryHeadsAreGood) {
  EXPECT_EQ(FaultWith({}), "");
  EXPECT_EQ(FaultWith({{"Content-Length", "5"}, {"X-Any_thing", "a b"}}), "");
  EXPECT_EQ(FaultWith({{"content-length", "5"}, {"Content-Length", "5"}}), "");
  EXPECT_EQ(FaultWith({{"transfer-encoding", "Chunked"}}), "");
}

TEST(FramingTest, TheHostIsSaidOnce) {
  EXPECT_EQ(Fault({}), "the Host header is missing");
  EXPECT_EQ(Fault({}, "HTTP/1.2"), "the Host header is missing");
  EXPECT_EQ(Fault({}, "HTTP/1.0"), "");
  EXPECT_EQ(FaultWith({{"HOST", "other"}}), "there is more than one Host header");
  EXPECT_EQ(FaultWith({{"Host", "router"}}), "there is more than one Host header");
}

TEST(FramingTest, TheLengthIsSaidOnceAndInOneWay) {
  const std::string different = "there are two different Content-Length headers";
  EXPECT_EQ(FaultWith({{"Content-Length", "5"}, {"Content-Length", "6"}}), different);
  EXPECT_EQ(FaultWith({{"Content-Length", "5"}, {"X", ""}, {"content-length", "05"}}), different);
  const std::string both = "Content-Length and Transfer-Encoding exclude each other";
  EXPECT_EQ(FaultWith({{"Content-Length", "5"}, {"Transfer-Encoding", "chunked"}}), both);
  EXPECT_EQ(FaultWith({{"Transfer-Encoding", "identity"}, {"Content-Length", "5"}}), both);
}

TEST(FramingTest, ThereIsOneCoding) {
  const std::string fault = "a body is sent as it is, or chunked in HTTP/1.1";
  for (const char* coding :
       {"", "gzip", "gzip, chunked", "chunked, chunked", "xchunked", "chunked ", "identity"}) {
    EXPECT_EQ(FaultWith({{"Transfer-Encoding", coding}}), fault) << coding;
  }
  EXPECT_EQ(FaultWith({{"Transfer-Encoding", "chunked"}, {"Transfer-Encoding", "chunked"}}), fault);
  EXPECT_EQ(Fault({{"Transfer-Encoding", "chunked"}}, "HTTP/1.0"), fault);
}

TEST(FramingTest, ANameIsAToken) {
  for (const char* name : {"", "Content-Length ", "X\tY", "\xC3\xA9", "a(b)"}) {
    EXPECT_EQ(FaultWith({{name, "5"}}), "a header has no proper name") << name;
  }
}

}  // namespace
}  // namespace kiohost
