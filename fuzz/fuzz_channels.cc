// A channel held against the list of a radio, and the look at the channels in use, as plain models
// judge them. The input is a line with the channel, a line with the list, and lines with a
// configured channel, a blank and the channel in use, for the two radios in turn.
#include <strings.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "device.h"
#include "input.h"
#include "kioapp/kioapp.h"

namespace {

constexpr std::array<const char*, 2> kBands = {"2.4", "5"};

std::string Trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  return begin == std::string::npos ? ""
                                    : text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
}

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return text;
}

bool IsListed(const std::string& channel, const std::string& list) {
  constexpr std::size_t kListSize = 128;
  if (channel.empty() || std::strtol(channel.c_str(), nullptr, 10) < 0) {
    return false;
  }
  const std::string listed = ("," + Trimmed(list) + ",").substr(0, kListSize);
  return Lower(listed).find(Lower("," + channel.substr(0, 3) + ",")) != std::string::npos;
}

// The channel that is remembered of a radio; the library keeps its own from input to input as well.
class Radio {
 public:
  bool HasMoved(int configured, int in_use) {
    if (configured < 0 || in_use < 1) {
      return false;
    }
    const int effective = configured != 0 ? configured : in_use;
    if (remembered_ == -1 || configured != 0) {
      remembered_ = configured;
    }
    const bool has_moved = effective != remembered_;
    remembered_ = effective;
    return has_moved;
  }

 private:
  int remembered_ = -1;
};

std::array<Radio, 2> g_radios;

void CheckList(const std::string& channel, const std::string& list) {
  char(&known)[sizeof(rssXmlData.wlan[0].channelList)] = rssXmlData.wlan[0].channelList;
  std::snprintf(known, sizeof(known), "%s", list.c_str());
  const std::string kept = known;
  const kio::fuzz::GuardedText value(channel);
  const bool accepted = validate_RssVar("rss_Wl2_Channel", value.get()) == 0;
  if (accepted != IsListed(channel, kept)) {
    kio::fuzz::Report("a channel is judged otherwise");
  }
}

void CheckUse(const std::array<std::array<int, 2>, 2>& channels) {
  bool has_moved = false;
  for (std::size_t i = 0; i < 2; ++i) {
    const std::string radio = std::string("/lan/wireless") + kBands[i] + ":1/channel";
    kio::fuzz::ChangeNode(radio + "=" + std::to_string(channels[i][0]));
    kio::fuzz::ChangeNode(radio + "using=" + std::to_string(channels[i][1]));
    has_moved = g_radios[i].HasMoved(channels[i][0], channels[i][1]) || has_moved;
  }
  if ((checkWlanChannelUsing() == 1) != has_moved) {
    kio::fuzz::Report("a move of a channel is seen otherwise");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kLongestValue = 100;
  constexpr int kMostMoves = 4;
  static bool is_first = true;
  if (is_first) {
    kio::fuzz::ResetDevice(size);
    is_first = false;
  }
  kio::fuzz::Input input(data, size);
  const std::string channel = input.Line().substr(0, kLongestValue);
  CheckList(channel, input.Line());
  for (int i = 0; i < kMostMoves && input.front() != '\0'; ++i) {
    std::array<std::array<int, 2>, 2> channels = {};
    for (auto& radio : channels) {
      const std::string line = input.Line();
      char* end = nullptr;
      radio[0] = static_cast<int>(std::strtol(line.c_str(), &end, 10));
      radio[1] = static_cast<int>(std::strtol(end, nullptr, 10));
    }
    CheckUse(channels);
  }
  return 0;
}
