#include "web_filters.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>

#include "peer_address.h"

namespace kiohost {
namespace {

bool Names(const std::string& host) {
  return NamesRouter(host, {"192.168.1.1", "fe80::1", ""}, {"router", "localhost"});
}

TEST(WebFiltersTest, RouterIsNamedByItsAddressesAndNames) {
  for (const char* const host :
       {"192.168.1.1", "192.168.1.1:80", "192.168.1.1:", "[fe80::1]", "[fe80::1]:8080",
        "[FE80:0:0::1]:8080", "router", "router:", "Router:8080", "localhost", "LOCALHOST:1"}) {
    EXPECT_TRUE(Names(host)) << host;
  }
}

TEST(WebFiltersTest, NothingElseNamesTheRouter) {
  for (const char* const host :
       {"", ":80", "evil.example", "192.168.1.2", "192.168.1.1.evil.example", "192.168.1.1:80x",
        "192.168.1.1:80:80", "router.evil.example", "evilrouter", "router@evil:80", "[fe80::2]",
        "fe80::1", "[fe80::1", "192.168.1.1, router", "192.168.1.1:123456", "0x7f.1", "3232235777",
        " router"}) {
    EXPECT_FALSE(Names(host)) << host;
  }
}

TEST(WebFiltersTest, ContentTypesOfTheInterfaceAreTaken) {
  for (const char* const type :
       {"application/xml", "text/xml; charset=utf-8", "text/plain", "TEXT/PLAIN ;x",
        "application/x-www-form-urlencoded", "application/octet-stream", "application/json"}) {
    EXPECT_TRUE(IsContentTypeTaken(type)) << type;
  }
  for (const char* const type : {"", "multipart/form-data; boundary=x", "text/html", "text/plainer",
                                 "text", ";text/plain"}) {
    EXPECT_FALSE(IsContentTypeTaken(type)) << type;
  }
}

TEST(PeerAddressTest, IPv4HasOneText) {
  sockaddr_in v4 = {};
  v4.sin_family = AF_INET;
  inet_pton(AF_INET, "192.168.1.20", &v4.sin_addr);
  EXPECT_EQ(AddressText(reinterpret_cast<const sockaddr*>(&v4)), "192.168.1.20");
  sockaddr_in6 v6 = {};
  v6.sin6_family = AF_INET6;
  inet_pton(AF_INET6, "::ffff:192.168.1.20", &v6.sin6_addr);
  EXPECT_EQ(AddressText(reinterpret_cast<const sockaddr*>(&v6)), "192.168.1.20");
}

TEST(PeerAddressTest, IPv6AndOthers) {
  sockaddr_in6 v6 = {};
  v6.sin6_family = AF_INET6;
  v6.sin6_scope_id = 3;
  inet_pton(AF_INET6, "fe80::1", &v6.sin6_addr);
  EXPECT_EQ(AddressText(reinterpret_cast<const sockaddr*>(&v6)), "fe80::1");
  sockaddr other = {};
  other.sa_family = AF_UNIX;
  EXPECT_EQ(AddressText(&other), "");
  EXPECT_EQ(AddressText(static_cast<const sockaddr*>(nullptr)), "");
  EXPECT_EQ(AddressText("[::1]"), "::1");
  EXPECT_EQ(AddressText("router"), "");
}

}  // namespace
}  // namespace kiohost
