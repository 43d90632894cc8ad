/* Calls of the text utilities and the validators. */
#include <kioapp/text.h>
#include <kioapp/validate.h>

#include "calls.h"
#include "expect.h"
#include "testing/memory_store.h"

void CheckTextCalls(void) {
  char buffer[256] = "";
  EXPECT_TEXT(strChgKeyword(buffer, "a$k$k", "$k", "12"), "a1212");

  ClearStore();
  SetNode("/runtime/zentrolinks/lanip", "192.168.1.1");
  SetNode("/zentrolinks/rsshttpport", "80");
  char address[256] = "http://$lanip:$rssport/";
  EXPECT_TEXT(strChgRssKeywords(address), "http://192.168.1.1:80/");

  EXPECT_INT(strnWildcardCmp("abcd", "a?cX", 3), 0);
  EXPECT_INT(strnWildcardCmp("abcd", "a?cX", 4), 'd' - 'X');
  EXPECT_INT(strWildcardCmp("abcd", "ab*"), 0);
  EXPECT_INT(strWildcardCmp("abcd", "b*"), 'a' - 'b');

  EXPECT_TEXT(strncpy_HtmlDecode(buffer, "%41+b", 32), "A b");
  EXPECT_TEXT(strncpy_HtmlEncode(buffer, "a/b", 32), "a%2Fb");
  EXPECT_TEXT(strncpy_XmlDecode(buffer, "&lt;a&gt;&amp;", 32), "<a>&");
  EXPECT_TEXT(strncpy_XmlEncode(buffer, "<a>&", 32), "&lt;a&gt;&amp;");

  char dashes[] = "--a-b--";
  char blanks[] = " \tgo\t ";
  EXPECT_TEXT(strip_chars(dashes, "-"), "a-b");
  EXPECT_INT(trim(blanks) == blanks, 1);
  EXPECT_TEXT(blanks, "go");
  EXPECT_TEXT(trimTo(buffer, "  to "), "to");
}

void CheckValidatorCalls(void) {
  EXPECT_INT(is_in_range(3, 1, 3), 1);
  EXPECT_INT(is_in_range(4, 1, 3), 0);
  EXPECT_INT(is_Valid_IP("10.0.0.1"), 1);
  EXPECT_INT(is_Valid_IP("127.0.0.1"), 0);
  EXPECT_INT(is_Valid_Netmask("255.255.254.0"), 1);
  EXPECT_INT(is_Valid_Netmask("255.0.255.0"), 0);
  EXPECT_INT(is_Valid_IP_CheckMask("255.255.255.0", "10.0.0.1", "10.0.0.2"), 1);
  EXPECT_INT(is_Valid_IP_CheckMask("255.255.255.0", "10.0.0.1", "10.0.1.2"), 0);
  EXPECT_INT(is_Valid_WpaPskKey("12345678"), 1);
  EXPECT_INT(is_Valid_WpaPskKey("1234567"), 0);
  EXPECT_INT(is_Valid_WepKey("abcde", 5), 1);
  EXPECT_INT(is_Valid_WepKey("abcdef", 5), 0);
  EXPECT_INT(validate_RssData("guest", "0,32,1"), 0);
  EXPECT_INT(validate_RssData("", 0), 3);
  EXPECT_INT(validate_RssData("guest", "0,4,1"), 10);
  EXPECT_INT(validate_RssData("a b", "0,63,1,0,1,0-9,a-z,A-Z"), 11);
  EXPECT_INT(validate_RssData("15", "1,14,1"), 20);
  EXPECT_INT(validate_RssData("0", "1,14,1"), 21);
}
