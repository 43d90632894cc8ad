#include "scenarios.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "firmware/image_file.h"
#include "kioapp/kioapp.h"
#include "machine.h"
#include "testing/memory_store.h"

namespace kio::proof {
namespace {

constexpr const char* kIp = "10.1.1.2";

void Answer(const std::string& text) { Machine::Get().Note("answer", text); }
void Answer(long number) { Answer(std::to_string(number)); }

std::string SampleText(const std::string& name) {
  const std::ifstream file(KIO_SAMPLE_DOCUMENTS "/" + name, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  if (text.str().empty()) {
    std::abort();
  }
  return text.str();
}

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
  const std::size_t at = text.find(what);
  if (at == std::string::npos) {
    std::abort();
  }
  return text.replace(at, what.size(), by);
}

// Answers with the result of the status document.
void AnswerStatus() {
  const std::string& document = Machine::Get().files["/tmp/rsscheckfw.xml"];
  const std::size_t begin = document.find("<result>");
  Answer(begin == std::string::npos ? document
                                    : document.substr(begin, document.find("</result>") - begin));
}

// The document of the scenario, read before any call can fail.
std::string g_document;

void StoreDevice() {
  StoreFactoryDevice();
  SetNode("/zentrolinks/tempdirecory", "/tmp");
  SetNode("/zentrolinks/scriptdirecory", "/scripts");
}

void Parse() {
  Answer(do_RssXml_Parser(g_document.data()));
  Answer(rssXmlData.setResult);
  Answer(rssXmlData.setMsg);
  Answer(rssXmlData.exeWaitSec);
}

void PrepareSmall() {
  StoreDevice();
  g_document = SampleText("small.xml");
}

void PrepareFull() {
  StoreDevice();
  g_document = SampleText("full.xml");
}

void PrepareRefused() {
  StoreDevice();
  g_document = Replaced(SampleText("small.xml"), "<Channel>44<", "<Channel>wide<");
}

void PrepareIncomplete() {
  StoreDevice();
  g_document = Replaced(SampleText("small.xml"), "<EncryptionType>AUTO</EncryptionType>", "");
}

// Fewer access rules than the device has: the rest is deleted.
void PrepareInUse() {
  StoreDeviceInUse();
  SetNode("/zentrolinks/tempdirecory", "/tmp");
  g_document = SampleText("small.xml");
}

void Clone() {
  Answer(do_RssXml_Parser_for_ApCloning(g_document.data()));
  Answer(do_RssXml_Commit_for_ApCloning(1));
}

void PrepareCommit() {
  PrepareFull();
  do_RssXml_Parser(g_document.data());
  Machine::Get().trace.clear();
}

void Commit() {
  Answer(do_RssXml_Commit());
  rssXmlData.exeflag = 0;
  rssXmlData.pre_exeflag = KIOAPP_SYNC_DEVICE;
  Answer(do_RssVar_Commit());
}

void PrepareBatch() {
  StoreDevice();
  g_document = "rss_DeviceName=Attic&rss_Wl2_WirelessName=Loft&rss_Act_ApplyAllRssVars=";
}

void Batch() {
  init_RssVar();
  std::array<char, KIOAPP_VAR_SIZE> message{};
  Answer(do_RssVar_Parser(g_document.data(), '&', message.data(), 1));
  Answer(message.data());
}

void UseVariables() {
  init_RssVar();
  std::array<char, KIOAPP_VAR_SIZE> value{};
  for (const char* const name : {"rss_DeviceName", "rss_Wl5_Channel", "rss_Upl_ConnType",
                                 "rss_Wl2_WirelessBSSID", "rss_nothing"}) {
    Answer(get_RssVar(name, value.data(), 0));
    Answer(value.data());
    Answer(get_RssVar(name, value.data(), 1));
    Answer(value.data());
    Answer(getRssVar(name));
  }
  std::string name = "Attic";
  name.reserve(KIOAPP_VAR_SIZE);
  Answer(set_RssVar("rss_DeviceName", name.data()));
  std::string channel = "99999";
  channel.reserve(KIOAPP_VAR_SIZE);
  Answer(set_RssVar("rss_Wl2_Channel", channel.data()));
  Answer(validate_RssVar("rss_Wl2_Channel", channel.data()));
}

void CommitLater() {
  init_RssVar();
  std::array<char, KIOAPP_VAR_SIZE> value{};
  for (const char* const action :
       {"rss_Act_VerifyAllRssVars", "rss_Act_ApplyAllRssVars", "rss_Act_CommitRssVars"}) {
    Answer(set_RssVar(action, value.data()));
  }
}

void PrepareUpgrade() {
  StoreDevice();
  SetNode("/fwupgradeinfo/devicemac", "00:1A:2B:3C:4D:5E");
  SetNode("/fwupgradeinfo/currfwfilename", "AB12_FW1.0.2.bin");
  Machine& machine = Machine::Get();
  machine.server[std::string(get_FwServerWebSite()) + "/AB12/AB12.xml"] =
      "<root><specVersion><major>1</major><minor>0</minor></specVersion><FirmwareList><Firmware>"
      "<MacList><MAC>*</MAC></MacList><FwURL>/fw/AB12_FW1.0.8_0312.bin</FwURL>"
      "<NotesURL>/fw/AB12_FW1.0.8_0312.txt</NotesURL></Firmware></FirmwareList></root>";
  machine.processes = "root 1 grep wget -O /tmp/up";
}

void Search() {
  do_FwUpgradeAction(KIOAPP_FW_INIT);
  do_FwUpgradeAction(KIOAPP_FW_SEARCH);
  AnswerStatus();
}

void PrepareDownload() {
  PrepareUpgrade();
  Search();
  Machine::Get().trace.clear();
}

void Upgrade() {
  for (const int action : {KIOAPP_FW_DOWNLOAD, KIOAPP_FW_REPORT, KIOAPP_FW_UPGRADE,
                           KIOAPP_FW_SEARCH, KIOAPP_FW_INIT}) {
    do_FwUpgradeAction(action);
    AnswerStatus();
  }
}

void PrepareImages() {
  std::string image = test::MakeImage(test::SomeBytes(20000));
  Machine::Get().files["/good"] = image;
  image.back() = static_cast<char>(image.back() ^ 1);
  Machine::Get().files["/bad"] = image;
}

void CheckImages() {
  for (const char* const path : {"/good", "/bad", "/none"}) {
    const unsigned size = getFileSize(path);
    Answer(static_cast<long>(size));
    std::array<char, 128> message{};
    Answer(check(path, 0, size == 0xFFFFFFFF ? 100 : size, message.data()));
    Answer(message.data());
  }
}

void PrepareFlash() {
  Machine::Get().files["/proc/mtd"] =
      "dev:    size   erasesize  name\nmtd0: 00030000 00010000 \"Bootloader\"\n"
      "mtd1: 007b0000 00010000 \"Kernel\"\n";
  Machine::Get().files["/proc/version"] = "Linux version 2.6.36 (gcc \"4\")\n";
}

void UseFlash() {
  Answer(getMTDPartSize("\"Kernel\""));
  Answer(getMTDPartSize("\"None\""));
  Machine::Get().files.erase("/proc/mtd");
  Answer(getMTDPartSize("\"Kernel\""));
  Answer(mtd_write_bootloader("/tmp/boot.bin", 16, 1024));
  Answer(mtd_write_firmware());
  Answer(write_flash_kernel_version());
}

void PrepareLogin() {
  StoreDevice();
  SetNode("/sys/user:1/password", "pw");
}

void Login() {
  const std::string key = generate_StarterKey(kIp);
  Answer(key);
  Answer(generate_BKey(kIp));
  Answer(starter_auth_check(("kioAppKey=:" + key).c_str(), kIp, ""));
  Answer(starter_auth_check("kioAppKey=:0123456789abcdef0123456789abcdef", "10.1.1.3", ""));
  Answer(check_StarterAuthIP(kIp, ""));
  Answer(check_StarterAuthIP("10.1.1.4", ""));
  Answer(
      clientAuthListAdd(&clientauthinfo, "10.1.1.5", "admin", "pw", nullptr, KIOAPP_MATCH_SESSION));
  printList(clientauthinfo);
  Answer(clientAuthListDel(&clientauthinfo, kIp, nullptr, KIOAPP_MATCH_ADDRESS));
}

void RemoveClients() { clientAuthListDel(&clientauthinfo, nullptr, nullptr, 0); }

void PrepareLog() {
  StoreDevice();
  daemon_log_file_size_k = 1;
  Machine::Get().files[kLogFile] = std::string(900, 'x');
  // The library then asks the store for the directory.
  daemon_log_path[0] = '\0';
  SetNode("/zentrolinks/tempdirecory", "/log");
}

void Log() {
  for (int i = 0; i < 8; ++i) {
    logPrintf(3, "message %d with some words to fill the file with, until it is full\n", i);
  }
  logPrintf(0, "an open line, ");
  logPrintf(0, "continued\n");
  Answer(sys_uptime_sec_str());
}

std::array<KioTimer*, 3> g_timers;

void UseTimers() {
  g_timers[0] = create_timer(5, nullptr, 1, 2, 3);
  g_timers[1] = create_timer(
      0, [](std::uintptr_t arg) { Answer(static_cast<long>(arg)); }, 7, 0, 0);
  g_timers[2] = create_timer(9, nullptr, 0, 0, 0);
  for (KioTimer* const timer : g_timers) {
    add_timer(timer);
  }
}

// The library keeps only what it was given.
void FreeTimers() {
  for (KioTimer* const timer : g_timers) {
    std::free(timer);
  }
}

void PrepareStations() {
  StoreDevice();
  SetNode("/runtime/easyroaming/deauthsta/ifname", "wl0");
  SetNode("/runtime/easyroaming/deauthsta/mac", "02:00:5E:00:00:01");
  Machine::Get().interfaces_up = {"wl0", "wl1"};
}

void UseStations() {
  Answer(exe_ExternalCall(KIOAPP_SYNC_UPDATE_STA_RSSI | KIOAPP_SYNC_DEAUTH_STA));
  Answer(exe_ExternalCall(KIOAPP_SYNC_UPDATE_STA_RSSI));
}

constexpr Scenario kScenarios[] = {
    {"exchange accepted", 7, PrepareSmall, Parse, "1; 0; ; 25; "},
    {"exchange accepted, all settings", 4, PrepareFull, Parse, "1; 0; ; 45; "},
    {"exchange that deletes rules", 4, PrepareInUse, Parse, "1; 0; ; 25; "},
    {"exchange refused", 5, PrepareRefused, Parse, "0; 3; Device/Wireless5/Channel; 0; "},
    {"exchange with an element missing", 5, PrepareIncomplete, Parse,
     "0; 2; Device/Wireless5/EncryptionType; 0; "},
    {"cloning", 4, PrepareSmall, Clone, "1; 0; "},
    {"commit", 7, PrepareCommit, Commit, "0; 0; "},
    {"batch", 4, PrepareBatch, Batch, "0; ; "},
    {"variables", 5, StoreDevice, UseVariables,
     "0; Home router; 0; /sys/friendlyname; Home router; 0; 36; 0; /lan/wireless5:1/Channel; 36; "
     "0; DHCP; 0; /uplink/ConnType; DHCP; 0; 02:00:5E:10:24:01; 0; "
     "/lan/wireless2.4:1/WirelessBSSID; 02:00:5E:10:24:01; 2; ; 2; ; **ERROR**; 0; 2; 2; "},
    {"deferred commit", 4, StoreDevice, CommitLater, "0; 0; 0; "},
    {"firmware search", 7, PrepareUpgrade, Search, "<result>2; "},
    {"download and upgrade", 7, PrepareDownload, Upgrade,
     "<result>3; <result>4; <result>5; <result>5; <result>0; "},
    {"image check", 7, PrepareImages, CheckImages,
     "20064; 1; ; 20064; 0; *** Warning: \"/bad\" has corrupted data!\n; 4294967295; 0; Can't stat "
     "/none: Bad file descriptor\n; "},
    {"flash helpers", 7, PrepareFlash, UseFlash, "8060928; 0; 0; 0; 0; 0; "},
    {"login", 7, PrepareLogin, Login,
     "ab9d8f394f3d4bbca10c02e4d482d069; ab9d8f39; 0; -1; 0; -1; 1; 1; ", RemoveClients},
    {"log rotation", 7, PrepareLog, Log, "1000; ", nullptr, true},
    {"timers", 7, StoreDevice, UseTimers, "7; ", FreeTimers},
    {"stations", 7, PrepareStations, UseStations, "0; 0; "},
};

}  // namespace

std::span<const Scenario> Scenarios() { return kScenarios; }

}  // namespace kio::proof
